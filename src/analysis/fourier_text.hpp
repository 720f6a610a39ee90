// The symbolic text of Fourier coefficients: the components of Sk(j) as sums of free
// coefficients (u, v, w, ...) with integer factors or named constants (r0, r1, ...), a common
// constant taken out of the vector, a real and an imaginary part joined, and a complex
// constant turned into an exponential.
//
// Texts are blank-padded in the manner of fixed-length fields: trailing blanks never count,
// places are 1-based, and each text is cut to the length of the field that holds it.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace velmoria {

constexpr std::size_t symb_len = 40;       // one component's expression, and aux
constexpr std::size_t cfourier_len = 256;  // a whole expression, symbas, symbasi
constexpr int max_component_signs = 6;     // signs of one component that common_fact follows

// Letters of the free coefficients, and labels of the named constants.
extern const std::array<char, 36> coef;
extern const std::array<std::string_view, 50> numer;

// Places (1-based) of the "+" and "-" of the trimmed text, in order.
std::vector<int> plus_minus_sep(std::string_view text);
// Places (1-based) where the trimmed ch starts in the trimmed text, in order.
std::vector<int> rep_char(std::string_view text, std::string_view ch);

// The vector text "(c1,c2,c3)" of the three components, with the first constant taken out in
// front ("r0.(u,-v,0)") when every term of every component holds it.  symb is packed where the
// constant was taken out.  A component with more than max_component_signs signs keeps the
// vector as it is.
std::string common_fact(std::array<std::string, 3>& symb);

// Joins the packed real part a ("Sk(1):r0.(u,v,w)") and imaginary part b ("+ir1.(u,v,w)");
// when both hold the same vector, or opposite vectors, the constants are merged in front of
// it ("Sk(1): (r0+i.r1).(u,v,w)").
std::string phase_fact(std::string_view a, std::string_view b);

// The final form of an expression: a blank after the first ":", a "." behind the first "i",
// and a complex constant (x+i.y).(vector) followed by " = (vector) . exp{2.pi.i.theta}".
// realnum holds the values of the labels numer.
std::string polish_fourier(std::string cfourier, const std::vector<float>& realnum);

// One term of a component: sign, factor and letter appended to the trimmed symb (cut to the
// field).  value is the component's value, j the 1-based number of the function.
void add_term(std::string& symb, float value, int j, const std::vector<float>& realnum);

}  // namespace velmoria

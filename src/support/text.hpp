// Fixed-length blank-padded text, and the scanners of words and numbers.
//
// Texts are std::string.  Trailing blanks never count: trim() drops them, and
// same_text() compares two texts as if the shorter were padded with blanks.  A blank is
// the character 32 only; a tab is an ordinary character.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "support/error_scope.hpp"

namespace velmoria {

VELMORIA_ERROR_PAIR_DECLARATIONS(string, String_Scope);

// Fixed-width helpers.
std::string trim(std::string_view s);                  // without trailing blanks
std::string adjustl(std::string_view s);               // shifted left, same length
std::string fixed(std::string_view s, std::size_t n);  // cut or blank-padded to n
bool same_text(std::string_view a, std::string_view b);
std::size_t len_trim(std::string_view s);
bool is_blank(std::string_view s);

std::string u_case(std::string_view text);
std::string l_case(std::string_view text);
void ucase(std::string& text);
// Without any blank, blank-padded to the trimmed length of text ("x, y" gives "x,y ").
std::string pack_string(std::string_view text);

// Cuts the first word off line1 into line2 (cut to line2_len characters, 0 for no limit).
// nlong1, nlong2: trimmed lengths of what is left in line1 and of the word.
// line1 keeps its length; a single word (or a line1 of length 1) leaves it blank.
void cutst(std::string& line1, int* nlong1 = nullptr, std::string* line2 = nullptr,
           int* nlong2 = nullptr, std::size_t line2_len = 0);

// Scans a list of numbers into vet and ivet; iv counts every number found, but only the
// first `size` are stored.
void getnum(std::string_view line, float* vet, int* ivet, int size, int& iv);
template <std::size_t N>
void getnum(std::string_view line, std::array<float, N>& vet, std::array<int, N>& ivet, int& iv) {
  getnum(line, vet.data(), ivet.data(), static_cast<int>(N), iv);
}

// Number of lines of a text, as a file of that content would count them; a line whose
// first characters, after a left shift, equal input_string (apart from case) ends the count.
int number_lines(std::string_view content, std::string_view input_string = {});

// Coefficients of the three letters of `code` in one component of an operator.
void get_num_string(std::string_view str, std::string_view code, std::array<float, 3>& v);

}  // namespace velmoria

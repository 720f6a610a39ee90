// The permutation and vector representations of a site.
//
// Operator g of the little group carries atom i to R_g x(i) + t_g, which lies on atom l of the
// site shifted by a lattice vector: R = x(l) - (R_g x(i) + t_g) returns it.  The permutation
// representation has the phase exp(-2 pi i k.R) on each moved atom; a vector on the atom
// turns by the rotation, times its determinant when the vector is axial.
#include <algorithm>
#include <cmath>

#include "analysis/site_analysis.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {

void keep_warning(const Site_Units& out, const std::string& text) {
  if (out.warnings) out.warnings->push_back(trim(adjustl(text)));
}

namespace {

constexpr double minus_two_pi = -6.283185307179586;
constexpr int atoms_per_group = 4;  // atoms on one line of the listing

// The atom l under the point xt and the lattice vector vec = x(l) - xt.  When no atom is
// there, l is the last atom and vec the difference to it; the return value is then false.
bool ret_per(const Site& site, const Vec3& xt, char lat_type, int& l, Vec3& vec) {
  for (l = 1; l <= site.mult; ++l) {
    const Vec3& x = site.x[l - 1];
    vec = {x[0] - xt[0], x[1] - xt[1], x[2] - xt[2]};
    if (lattice_trans(vec, lat_type)) return true;
  }
  l = site.mult;
  return false;
}

// The lines of operator g that list the atoms first .. last: atoms, phases, vectors.
void write_atom_group(const Site_Context& cx, const Site_Representation& rep,
                      const std::vector<char>& cphase, int g, int first, int last,
                      std::string& out) {
  std::vector<int> moved;
  std::vector<float> phases;
  std::vector<std::string> signs;
  Items vectors = make_items("      Vector:");
  for (int i = first; i <= last; ++i) {
    moved.push_back(rep.iperm(g, i));
    phases.push_back(rep.phase(g, i));
    add_item(vectors, "    ");
    add_item(vectors, rep.ret(g, i));
  }
  if (first == 1) {
    put(out, "a,i11,3i16", "       Atoms:", moved);
  } else {
    put(out, "a,i13,3i16", std::string(11, ' '), moved);
  }
  if (cx.bz) {
    // A site without atoms (an ATOM line before KVEC) still has its record, with a blank sign.
    const char first_sign = first <= static_cast<int>(cphase.size()) ? cphase[first - 1] : ' ';
    Items items = make_items("       Phase:          ", first_sign);
    for (int i = first + 1; i <= last; ++i) {
      add_item(items, std::string(15, ' '));
      add_item(items, cphase[i - 1]);
    }
    append_layout(out, "a,a1,3(a,a1)", items);
    append_layout(out, "a,4(a,3f6.1)", vectors);
  } else {
    Items items = make_items("       Phase:");
    for (float p : phases) {
      add_item(items, p);
      add_item(items, "   ");
    }
    append_layout(out, "a,4(f13.4,a)", items);
    append_layout(out, "a,4(a,3f4.1)", vectors);
  }
}

void write_operator_block(const Site_Context& cx, const Site_Representation& rep,
                          const std::vector<char>& cphase, int g, const std::string& symcod,
                          const std::string& xyzstring, std::string& out) {
  const lorsk_proc& st = cx.store;
  put(out, "a,a10,4a", " ", st.names[g - 1], ": ", cx.symm_symb[g - 1], " : ", symcod);
  const int mult = rep.mult;
  const int continuations = static_cast<int>(static_cast<float>(mult) / 4.0001f);
  write_atom_group(cx, rep, cphase, g, 1, std::min(atoms_per_group, mult), out);
  for (int b = 1; b <= continuations; ++b) {
    write_atom_group(cx, rep, cphase, g, atoms_per_group * b + 1,
                     std::min(atoms_per_group * b + atoms_per_group, mult), out);
  }
  const float charv = rep.charv[g - 1], charp = rep.charp[g - 1], charpi = rep.charpi[g - 1];
  if (cx.bz) {
    put(out, "a,a",
        cx.ipol == 0 ? "      Axial Representation: " : "      Vector Representation: ", xyzstring);
    put(out, "a,3(a,f6.1)", "     ", " Ch(V): ", charv, "  Chr(P): ", charp,
        "  Chr(T): ", charv * charp);
  } else {
    put(out, "a,a", "      Vector Representation: ", xyzstring);
    put(out, "a,5(a,f8.3)", "     ", " Ch(V): ", charv, " Chr(P): ", charp, " Chi(P): ", charpi,
        " Chr(T): ", charv * charp, " Chi(T): ", charv * charpi);
  }
  put(out, "a", std::string(80, '-'));
}

}  // namespace

void trans(const Site_Context& cx, const Site& site, int ns, Site_Representation& rep,
           Site_Units out) {
  const lorsk_proc& st = cx.store;
  std::string& res = out.result;
  put(res, "/,/,a", "     ========================== ");
  put(res, "a,i2", "     CALCULATIONS FOR SITE :", ns);
  put(res, "a,/", "     ========================== ");
  if (cx.long_output) {
    put(res, "a", std::string(80, '='));
    put(res, "a,/,a", "       Sym.Op.     Atoms Numbers, phases and returning Vectors",
        "      Vector Rep.    Character(V)    Character(Perm)(r,i)  ChM ");
    put(res, "a", std::string(80, '='));
  }
  rep.resize(st.ngk, site.mult);
  std::vector<char> cphase(site.mult, ' ');
  for (int g = 1; g <= st.ngk; ++g) {
    const Mat3i& rot = st.ir[g - 1];
    const std::string symcod = fixed(get_symkov(rot), 30);
    const int f = cx.ipol == 0 ? cx.idet[g - 1] : 1;
    Mat3i& v = rep.ivrep[g - 1];
    for (int r = 0; r < 3; ++r) {
      for (int c = 0; c < 3; ++c) v[r][c] = f * rot[r][c];
    }
    rep.charv[g - 1] = static_cast<float>(v[0][0] + v[1][1] + v[2][2]);
    std::string xyzstring = fixed(decodmatmag(v), 19);
    if (cx.ipol != 0) std::replace(xyzstring.begin(), xyzstring.end(), 'M', 'V');
    float& charp = rep.charp[g - 1];
    float& charpi = rep.charpi[g - 1];
    const Vec3& t = st.t[g - 1];
    for (int i = 1; i <= site.mult; ++i) {
      const Vec3& x = site.x[i - 1];
      Vec3 xt;
      for (int r = 0; r < 3; ++r) {
        xt[r] = static_cast<float>(rot[r][0]) * x[0] + static_cast<float>(rot[r][1]) * x[1] +
                static_cast<float>(rot[r][2]) * x[2] + t[r];
      }
      int l = 0;
      Vec3 vec{};
      if (!ret_per(site, xt, cx.lat_type, l, vec)) {
        put(out.console, "a,3f8.4", " => Warning! no returning vector found for atom at: ", xt);
        keep_warning(out,
                     sput("a,3f8.4", " => Warning! no returning vector found for atom at: ", xt));
        put(res, "a,3f8.4", " => Warning! no returning vector found for atom at: ", xt);
        put(res, "a", " subsequent calculations are wrong!!!");
        put(res, "a", " => Check the list of atoms in your input file!");
      }
      if (l == i && g != 1) {
        put(out.console, "a,i3", " => Diagonal element of Perm representation /= 0 for atom #", i);
      }
      rep.ret(g, i) = vec;
      rep.iperm(g, i) = l;
      const float phi = vec[0] * cx.vk[0] + vec[1] * cx.vk[1] + vec[2] * cx.vk[2];
      rep.phase(g, i) = phi;
      if (!cx.bz) {
        if (l == i) {
          const double angle = minus_two_pi * static_cast<double>(phi);
          charp = static_cast<float>(static_cast<double>(charp) + std::cos(angle));
          charpi = static_cast<float>(static_cast<double>(charpi) + std::sin(angle));
        }
      } else {
        const int c = nint(std::cos(-minus_two_pi * static_cast<double>(phi)));
        if (c > 0) cphase[i - 1] = '+';
        if (c < 0) cphase[i - 1] = '-';
        if (l == i) charp += static_cast<float>(c);
      }
    }
    if (cx.long_output) write_operator_block(cx, rep, cphase, g, symcod, xyzstring, res);
  }
}

}  // namespace velmoria

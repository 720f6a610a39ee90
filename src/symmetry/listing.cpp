// Listing of a space group record.
#include "symmetry/listing.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {

namespace {

constexpr int max_listing_lines = 192;
constexpr std::size_t listing_line_len = 100;
constexpr std::size_t half_line = 50;
constexpr std::size_t orbit_text_len = 40;
constexpr char orbit_letters[] = "abcdefghijklmnopqrstuvwxyz";

// Lines holding two entries each: odd entries in columns 1-50, even ones in 51-100.
struct Two_Column_Lines {
  std::vector<std::string> texto;
  int l = 1;  // current line, 1-based
};

Two_Column_Lines blank_lines() {
  return {std::vector<std::string>(max_listing_lines, std::string(listing_line_len, ' ')), 1};
}

void place_entry(Two_Column_Lines& lines, int u, const std::string& entry) {
  std::string& line = lines.texto[lines.l - 1];
  if (u % 2 == 1) {
    line.replace(0, half_line, fixed(entry, half_line));
  } else {
    line.replace(half_line, half_line, fixed(entry, half_line));
    ++lines.l;
  }
}

void put_text_row(std::string& unit, const char* label, const std::string& value) {
  put(unit, "a,a", label, trim(value));
}

void write_names(const Space_Group_Type& spg, std::string& unit) {
  put(unit, "a,i3", " =>   Number of Space group: ", spg.num_spg);
  put_text_row(unit, " =>  Hermann-Mauguin Symbol: ", spg.spg_symb);
  put_text_row(unit, " =>             Hall Symbol: ", spg.hall);
  if (len_trim(spg.gen_hall) > 1) put_text_row(unit, " => Generalized Hall Symbol: ", spg.gen_hall);
  if (len_trim(spg.info) > 1) put_text_row(unit, " =>    Table Setting Choice: ", spg.info);
  put_text_row(unit, " =>            Setting Type: ", spg.setting);
  put_text_row(unit, " =>          Crystal System: ", spg.crystal_sys);
  put_text_row(unit, " =>              Laue Class: ", spg.laue);
  put_text_row(unit, " =>             Point Group: ", spg.pg);
  put_text_row(unit, " =>         Bravais Lattice: ", std::string(1, spg.spg_lat));
  put_text_row(unit, " =>          Lattice Symbol: ", spg.spg_latsy);
  put(unit, "a,i3", " =>  Reduced Number of S.O.: ", spg.num_ops);
  put(unit, "a,i3", " =>    General multiplicity: ", spg.multip);
  put_text_row(unit, " =>          Centrosymmetry: ", spg.centre);
  put(unit, "a,i3", " =>  Generators (exc. -1&L): ", spg.num_gen);
}

void write_asym_unit(const Space_Group_Type& spg, std::string& unit) {
  const std::string blanks(29, ' ');
  const auto& lo = spg.asym_unit[0];
  const auto& up = spg.asym_unit[1];
  put(unit, "a,f6.3,a,f6.3", " =>         Asymmetric unit: ", lo[0], " <= x <= ", up[0]);
  put(unit, "a,f6.3,a,f6.3", blanks, lo[1], " <= y <= ", up[1]);
  put(unit, "a,f6.3,a,f6.3", blanks, lo[2], " <= z <= ", up[2]);
}

void write_centring_vectors(const Space_Group_Type& spg, std::string& unit) {
  Two_Column_Lines lines = blank_lines();
  if (spg.spg_lat == 'Z') {
    put(unit, "a,i3", " => Non-conventional Centring vectors:", spg.num_lat);
  } else {
    put(unit, "a,i3", " => Centring vectors:", spg.num_lat - 1);
  }
  int nvec = std::min<int>(spg.num_lat, static_cast<int>(spg.latt_trans.size())) - 1;
  for (int u = 1; u <= nvec && lines.l <= max_listing_lines; ++u) {
    std::string entry =
        sput("a,i2,a,a", " => Latt(", u, "): ", trim(frac_trans_1dig(spg.latt_trans[u])));
    place_entry(lines, u, entry);
  }
  int last = std::min(lines.l, max_listing_lines);
  for (int i = 0; i < last; ++i) put(unit, "a", lines.texto[i]);
}

int symbols_in_use(const Space_Group_Type& spg, int n) {
  return std::max(0, std::min(n, static_cast<int>(spg.symop_symb.size())));
}

void write_all_operators(const Space_Group_Type& spg, std::string& unit) {
  put(unit, "/,a,/", " => List of all Symmetry Operators and Symmetry Symbols");
  int n = symbols_in_use(spg, spg.multip);
  for (int i = 1; i <= n; ++i) {
    Mat3i rot{};
    Vec3 tr{};
    const std::string& text = spg.symop_symb[i - 1];
    read_xsym(text, 1, rot, tr);
    std::string symb = symmetry_symbol_str(rot, tr);
    put(unit, "a,i3,2a,t50,2a", " => SYMM(", i, "): ", trim(text), "Symbol: ", trim(symb));
  }
}

void write_reduced_set(const Space_Group_Type& spg, std::string& unit) {
  put(unit, "/,a", " => List of S.O. without inversion and lattice centring translations");
  Two_Column_Lines lines = blank_lines();
  int n = symbols_in_use(spg, spg.num_ops);
  for (int u = 1; u <= n; ++u) {
    std::string entry = sput("a,i3,a,a", " => SYMM(", u, "): ", trim(spg.symop_symb[u - 1]));
    place_entry(lines, u, entry);
    if (lines.l >= max_listing_lines) {
      lines.l = max_listing_lines;
      std::string& line = lines.texto[max_listing_lines - 1];
      line = trim(line) + "   <= Maximum number of lines exhausted!";
      break;
    }
  }
  for (int i = 0; i < lines.l; ++i) put(unit, "a", trim(lines.texto[i]));
}

void write_special_positions(const Space_Group_Type& spg, std::string& unit) {
  put(unit, "/,a", " => Special Wyckoff Positions for " + trim(spg.spg_symb));
  put(unit, "a", " ");
  put(unit, "a",
      "    Multp     Site        Representative Coordinates (centring translations excluded)");
  int norbits = std::min<int>(spg.wyckoff.num_orbit, static_cast<int>(spg.wyckoff.orbit.size()));
  norbits = std::min(norbits, static_cast<int>(sizeof(orbit_letters)) - 1);
  for (int i = norbits; i >= 1; --i) {
    const Wyckoff_Site_Type& orb = spg.wyckoff.orbit[i - 1];
    std::string m = sput("i3", orb.multp);
    std::string s = fixed(std::string(1, orbit_letters[i - 1]), 12);
    int norb = std::min<int>(orb.norb, static_cast<int>(orb.str_orbit.size()));
    for (int j = 0; j < norb; j += 3) {
      std::array<std::string, 3> pos;
      for (int k = 0; k < 3; ++k) {
        pos[k] = fixed(j + k < norb ? orb.str_orbit[j + k] : std::string(), orbit_text_len);
      }
      put(unit, "a,a,t15,a,t30,a,t50,a,t70,a", "    ", m, s, pos[0], pos[1], pos[2]);
      m = std::string(3, ' ');
      s = std::string(12, ' ');
    }
    put(unit, "a", " ");
  }
}

}  // namespace

void write_spacegroup(const Space_Group_Type& spg, std::string& unit, bool full) {
  put(unit, "/,/,a", "        Information on Space Group: ");
  put(unit, "a,/", "        --------------------------- ");
  write_names(spg, unit);
  write_asym_unit(spg, unit);
  if (spg.centred == 0) {
    put(unit, "a,a", " =>               Centre at: ", trim(frac_trans_1dig(spg.centre_coord)));
  }
  if (spg.spg_lat == 'Z' || full) write_centring_vectors(spg, unit);
  if (full) {
    write_all_operators(spg, unit);
  } else {
    write_reduced_set(spg, unit);
  }
  if (full && spg.wyckoff.num_orbit != 0) write_special_positions(spg, unit);
}

}  // namespace velmoria

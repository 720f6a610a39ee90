// Classification of operators by their rotation part: rotation type, crystal system, Laue class
// and point group of a group, and lookup of rotations among those of m-3m and 6/mmm.
#include "symmetry/group_class.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "support/text.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr std::size_t class_text_len = 5;
constexpr int cubic_first = 1;
constexpr int cubic_last = 24;
constexpr int hexagonal_first = 25;
constexpr int hexagonal_last = 36;

// Counts of the rotation types -6..6, indexed by type + 6.
struct Type_Counts {
  std::array<int, 13> c{};
  int& operator[](int type) { return c[static_cast<std::size_t>(type + 6)]; }
  int operator[](int type) const { return c[static_cast<std::size_t>(type + 6)]; }
};

// The first operator of the reduced set with the given rotation type.
const Mat3i* first_of_type(const Space_Group_Type& g, int count, int type) {
  for (int i = 0; i < count; ++i) {
    const Mat3i& r = g.symop[static_cast<std::size_t>(i)].rot;
    if (axes_rotation(r) == type) return &r;
  }
  return nullptr;
}

// Row of mod6 of the first operator of a type; a negative row becomes offset - s.
int row_of_first(const Space_Group_Type& g, int count, int type, int i1, int i2, int offset) {
  const Mat3i* r = first_of_type(g, count, type);
  if (r == nullptr) return 0;
  const int s = searchop(*r, i1, i2);
  return s < 0 ? offset - s : s;
}

struct Laue_Pg {
  std::string laue;
  std::string pg;
};

// Crystal system from the counts of the rotation types of the reduced set.
int crystal_system_of(const Type_Counts& c) {
  if (c[3] + c[-3] == 8) return 7;
  if (c[6] + c[-6] == 2) return 6;
  if (c[3] + c[-3] == 2) return 5;
  if (c[4] + c[-4] == 2) return 4;
  if (c[2] + c[-2] == 3) return 3;
  if (c[2] + c[-2] == 1) return 2;
  return 1;
}

// A Laue class whose point groups are told by one kind of axis: the class itself for a centric
// group; otherwise the group `proper` when its `axes` axes of that kind are all rotations, the
// group `improper` when they are all rotoinversions.
Laue_Pg by_one_axis(const char* laue, bool acentric, const Type_Counts& c, int type, int axes,
                    const char* proper, const char* improper) {
  if (!acentric) return {laue, laue};
  if (c[type] == axes) return {laue, proper};
  if (c[-type] == axes) return {laue, improper};
  return {laue, ""};
}

// The Laue class n/mmm (n = 4 or 6): n/mmm for a centric group, n22 or nmm with the rotation
// n; with the rotoinversion -n the group is the one `improper` tells from the setting of the
// mirrors.
template <class Improper>
Laue_Pg n_over_mmm(int n, bool acentric, const Type_Counts& c, Improper improper) {
  const std::string axis = std::to_string(n);
  const std::string laue = axis + "/mmm";
  if (!acentric) return {laue, laue};
  if (c[-n] == 2) return {laue, improper()};
  if (c[n] == 2) {
    if (c[2] == n + 1) return {laue, axis + "22"};
    if (c[-2] == n) return {laue, axis + "mm"};
  }
  return {laue, ""};
}

Laue_Pg trigonal_six(const Space_Group_Type& g, int count, const Type_Counts& c, bool acentric) {
  if (!g.hexa_axes) {
    return by_one_axis("-3m", acentric, c, 2, 3, "32", "3m");
  }
  if (!acentric) {
    const int row = row_of_first(g, count, -2, hexagonal_first, hexagonal_last, -12);
    return row == 22 ? Laue_Pg{"-31m", "-31m"} : Laue_Pg{"-3m", "-3m"};
  }
  if (c[2] == 3) {
    const int row = row_of_first(g, count, 2, hexagonal_first, hexagonal_last, 0);
    return row == 34 ? Laue_Pg{"-31m", "312"} : Laue_Pg{"-3m", "32"};
  }
  if (c[-2] == 3) {
    const int row = row_of_first(g, count, -2, hexagonal_first, hexagonal_last, -12);
    return row == 22 ? Laue_Pg{"-31m", "31m"} : Laue_Pg{"-3m", "3m"};
  }
  return {};
}

Laue_Pg classify(const Space_Group_Type& g, int count, const Type_Counts& c, int total) {
  const bool acentric = g.centred == 1;
  if (c[3] + c[-3] == 8) {
    if (total == 12) return {"m-3", acentric ? "23" : "m-3"};
    if (total == 24) {
      if (!acentric) return {"m-3m", "m-3m"};
      if (c[4] == 6) return {"m-3m", "432"};
      if (c[-4] == 6) return {"m-3m", "-43m"};
      return {"m-3m", ""};
    }
    return {};
  }
  if (c[6] + c[-6] == 2) {
    if (total == 6) return by_one_axis("6/m", acentric, c, 6, 2, "6", "-6");
    if (total == 12) {
      return n_over_mmm(6, acentric, c, [&] {
        const int row = row_of_first(g, count, 2, hexagonal_first, hexagonal_last, -12);
        return row == 31 ? "-62m" : "-6m2";
      });
    }
    return {};
  }
  if (c[3] + c[-3] == 2) {
    if (total == 3) return {"-3", acentric ? "3" : "-3"};
    if (total == 6) return trigonal_six(g, count, c, acentric);
    return {};
  }
  if (c[4] + c[-4] == 2) {
    if (total == 4) return by_one_axis("4/m", acentric, c, 4, 2, "4", "-4");
    if (total == 8) {
      return n_over_mmm(4, acentric, c, [&] {
        const int row = row_of_first(g, count, -2, cubic_first, cubic_last, 24);
        return row == 28 ? "-4m2" : "-42m";
      });
    }
    return {};
  }
  if (c[2] + c[-2] == 3) {
    if (!acentric) return {"mmm", "mmm"};
    if (c[2] == 3) return {"mmm", "222"};
    if (c[-2] == 2) {
      const int row = row_of_first(g, count, 2, cubic_first, cubic_last, 0);
      if (row == 4) return {"mmm", "2mm"};
      if (row == 3) return {"mmm", "m2m"};
      return {"mmm", "mm2"};
    }
    return {"mmm", ""};
  }
  if (c[2] + c[-2] == 1) return by_one_axis("2/m", acentric, c, 2, 1, "2", "m");
  if (total == 1) return {"-1", acentric ? "1" : "-1"};
  return {};
}

}  // namespace

int axes_rotation(const Mat3i& r) {
  const int det = determ_a_i(r);
  const int trace = trace_i(r);
  if (det == 1) {
    switch (trace) {
      case 3:
        return 1;
      case 2:
        return 6;
      case 1:
        return 4;
      case 0:
        return 3;
      case -1:
        return 2;
      default:
        return 0;
    }
  }
  if (det == -1) {
    switch (trace) {
      case 1:
        return -2;
      case 0:
        return -3;
      case -1:
        return -4;
      case -2:
        return -6;
      case -3:
        return -1;
      default:
        return 0;
    }
  }
  return 0;
}

char family_letter(int isystem) {
  constexpr std::string_view letters = "amothhc";
  if (isystem < 1 || isystem > static_cast<int>(letters.size())) return ' ';
  return letters[static_cast<std::size_t>(isystem) - 1];
}

void get_crystal_system_r_op(int n, std::span<const Mat3i> ss, int& isystem, std::string& latsy) {
  if (latsy.size() < 2) latsy.resize(2, ' ');
  if (n < 1) {
    isystem = 1;
    latsy[0] = family_letter(isystem);
    return;
  }
  const int count = std::min(n, static_cast<int>(ss.size()));
  Type_Counts c;
  for (int i = 0; i < count; ++i) {
    const int type = axes_rotation(ss[static_cast<std::size_t>(i)]);
    if (type == 0) {
      set_err_symm(" Axes rotation wrong");
      return;
    }
    if (type != 1 && type != -1) ++c[type];
  }
  isystem = crystal_system_of(c);
  latsy[0] = family_letter(isystem);
}

void get_laue_pg(const Space_Group_Type& spacegroup, std::string& laue, std::string& pg) {
  laue = std::string(class_text_len, ' ');
  pg = std::string(class_text_len, ' ');
  const int count = std::min(spacegroup.num_ops, static_cast<int>(spacegroup.symop.size()));
  if (count <= 0) {
    set_err_symm(" No symmetry operators are given");
    return;
  }
  Type_Counts c;
  for (int i = 0; i < count; ++i) {
    const int type = axes_rotation(spacegroup.symop[static_cast<std::size_t>(i)].rot);
    if (type == 0) {
      set_err_symm(" Rotation Not Determined");
      return;
    }
    ++c[type];
  }
  const Laue_Pg result = classify(spacegroup, count, c, count);
  laue = fixed(result.laue, class_text_len);
  pg = fixed(result.pg, class_text_len);
}

int searchop(const Mat3i& sim, int i1, int i2) {
  const Symm_Scope symm_scope;
  const int first = std::max(i1, 1);
  const int last = std::min(i2, static_cast<int>(mod6.size()));
  for (const int sign : {1, -1}) {
    for (int n = first; n <= last; ++n) {
      const Mat3i& m = mod6[static_cast<std::size_t>(n - 1)];
      bool same = true;
      for (int i = 0; i < 3 && same; ++i) {
        for (int j = 0; j < 3 && same; ++j) same = sim[i][j] == sign * m[i][j];
      }
      if (same) return sign * n;
    }
  }
  std::string message = " Try to re-write your S.O. using a rotational part";
  if (i1 == cubic_first && i2 == cubic_last) {
    message += " identical to a S.O. of the space group P m -3 m";
  } else if (i1 == hexagonal_first && i2 == hexagonal_last) {
    message += " identical to a S.O. of the space group P 6/m m m";
  } else {
    message += " identical to a S.O. of the space group P m -3 m or P 6/m m m";
  }
  set_err_symm(message);
  return 0;
}

namespace {

// Name `number` (1 to last) of a table of names into text; any other number leaves text as it
// was and sets err_symm with `message`.
void name_of_number(std::span<const std::string_view> names, int last, int number,
                    std::string& text, const char* message) {
  const Symm_Scope symm_scope;
  if (number >= 1 && number <= last) {
    text = std::string(names[static_cast<std::size_t>(number - 1)]);
  } else {
    set_err_symm(message);
  }
}

}  // namespace

void get_laue_str(int ilaue, std::string& text) {
  name_of_number(laue_class, 16, ilaue, text, " Laue Number Incorrect");
}

void get_pointgroup_str(int ipg, std::string& text) {
  name_of_number(point_group, 41, ipg, text, " Point Group Number Incorrect");
}

void fill_table_fields(Space_Group_Type& spg, int row) {
  const Spgr_Info_Type& r = spgr_info()[static_cast<std::size_t>(row - 1)];
  spg.num_spg = r.n;
  spg.spg_symb = trim(r.hm);
  spg.hall = trim(r.hall);
  get_laue_str(r.laue, spg.laue);
  spg.laue = trim(spg.laue);
  get_pointgroup_str(r.pg, spg.pg);
  spg.pg = trim(spg.pg);
  spg.info = trim(r.inf_extra);
  for (std::size_t i = 0; i < 3; ++i) {
    spg.asym_unit[0][i] = static_cast<float>(r.asu[i]) / 24.0f;
    spg.asym_unit[1][i] = static_cast<float>(r.asu[i + 3]) / 24.0f;
  }
}

}  // namespace velmoria

// Helpers shared by the tests: groups by symbol, operators as integer keys, the group axioms,
// and the data files of the tests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "text_lines.hpp"

namespace velmoria::testing {

// A group set up from its text; a failure is reported.
inline Space_Group_Type group_of(const std::string& symbol, const char* mode = nullptr) {
  Space_Group_Type g;
  if (mode != nullptr) {
    set_spacegroup(symbol, g, nullptr, std::nullopt, mode);
  } else {
    set_spacegroup(symbol, g);
  }
  EXPECT_FALSE(err_symm) << symbol << ": " << err_symm_mess;
  return g;
}

// An operator as integers: the rotation, and the translation in 24ths reduced to the cell.
using Op_Key = std::array<int, 12>;

inline Op_Key key_of(const Mat3i& rot, const Vec3& tr) {
  Op_Key k{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) k[3 * i + j] = rot[i][j];
    const float y = tr[i] * 24.0f;
    const auto t = static_cast<int>(std::lround(y));
    EXPECT_NEAR(y, static_cast<float>(t), 1e-3) << "translation off the 24ths";
    k[9 + i] = ((t % 24) + 24) % 24;
  }
  return k;
}

inline std::set<Op_Key> operator_set(const Space_Group_Type& g) {
  std::set<Op_Key> keys;
  for (const auto& op : g.symop) keys.insert(key_of(op.rot, op.tr));
  return keys;
}

// The operators form a group modulo the cell: no operator twice, every product among them.
inline void expect_closed_group(const Space_Group_Type& g, const std::string& label) {
  const std::set<Op_Key> keys = operator_set(g);
  EXPECT_EQ(keys.size(), g.symop.size()) << label << ": repeated operators";
  for (const auto& a : g.symop) {
    for (const auto& b : g.symop) {
      Mat3i r{};
      Vec3 t{};
      for (int i = 0; i < 3; ++i) {
        t[i] = a.tr[i];
        for (int j = 0; j < 3; ++j) {
          t[i] += static_cast<float>(a.rot[i][j]) * b.tr[j];
          for (int q = 0; q < 3; ++q) r[i][j] += a.rot[i][q] * b.rot[q][j];
        }
      }
      if (keys.count(key_of(r, t)) == 0) {
        ADD_FAILURE() << label << ": a product leaves the group";
        return;
      }
    }
  }
}

// A file of tests/data, whole.
inline std::string data_file(const std::string& name) {
  std::ifstream in(std::string(VELMORIA_SOURCE_DIR) + "/tests/data/" + name);
  EXPECT_TRUE(in.good()) << name;
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

}  // namespace velmoria::testing

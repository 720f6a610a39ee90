// Representations supplied in the control file: reading the block and its echo.
#include "lorsk/supplied_irreps.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "lorsk/group_preparation.hpp"
#include "support/layout.hpp"
#include "support/list_read.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"

namespace velmoria {

namespace {

constexpr std::array<std::string_view, 3> block_heads = {"LITTLE_GROUP", "FULL_GROUP_IR",
                                                         "EXTENDED_LITTLE_GROUP"};
constexpr std::size_t name_width = 10;  // the name of a supplied representation

// The part of a block line behind its first ":"; the whole line when it has none.
std::string behind_colon(const std::string& line) {
  const std::size_t colon = line.find(':');
  return colon == std::string::npos ? line : line.substr(colon + 1);
}

// Exactly `count` numbers on `line`, behind its first colon; a missing number, text where a
// number stands, or anything behind the last number is a read failure.
bool read_numbers(const std::string& line, std::vector<float>& values, std::size_t count) {
  values.assign(count, 0.0f);
  const std::string text = behind_colon(line);
  if (!read_list(text, values)) return false;
  std::vector<float> more(count, 0.0f);
  std::string extra;
  return !read_list(text, more, extra);
}

struct Block_Reader {
  lorsk_proc& store;
  const std::vector<std::string>& lines;
  std::vector<std::string>& op_strings;
  std::size_t next;  // the next line of the block

  std::optional<Block_Error> take(const std::string*& line) {
    if (next >= lines.size()) {
      return Block_Error{
          " => Error reading the supplied representations: the control file ends inside "
          "their block",
          false};
    }
    line = &lines[next++];
    return std::nullopt;
  }

  std::optional<Block_Error> operator_line(int g) {
    const std::string* line = nullptr;
    if (auto e = take(line)) return e;
    store.names[g - 1] = sput("a,i2,a", "SYMM_K(", g, ")");
    const std::string op_string = fixed(adjustl(behind_colon(*line)), op_string_width);
    op_strings.push_back(op_string);
    Mat3i rot{};
    Vec3 tr{};
    read_xsym(op_string, 1, rot, tr);
    if (err_symm) {
      return Block_Error{" => " + trim(adjustl(err_symm_mess)) + ": " + trim(*line), false};
    }
    store.ir[g - 1] = rot;
    store.t[g - 1] = tr;
    return std::nullopt;
  }

  std::optional<Block_Error> matrix_lines(int nu, int g, int signed_dim) {
    const int d = std::abs(signed_dim);
    const std::size_t count = static_cast<std::size_t>(d) * static_cast<std::size_t>(d);
    std::vector<float> values;
    for (int part = 0; part < (signed_dim < 0 ? 2 : 1); ++part) {
      const std::string* line = nullptr;
      if (auto e = take(line)) return e;
      if (!read_numbers(*line, values, count)) {
        return Block_Error{" => Error reading " + trim(*line), true};
      }
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) {
          const float v = values[static_cast<std::size_t>((a - 1) * d + (b - 1))];
          (part == 0 ? store.repr(a, b, nu, g) : store.repi(a, b, nu, g)) = v;
        }
      }
    }
    return std::nullopt;
  }
};

// The numbers of the head: operators, representations and their dimensions.
std::optional<Block_Error> read_head(lorsk_proc& store, const std::string& line,
                                     std::size_t key_end, std::vector<int>& idim) {
  const std::string rest = line.size() > key_end ? line.substr(key_end) : std::string();
  int ngk = 0;
  int nreps = 0;
  if (!read_list(rest, ngk, nreps) || ngk < 1 || nreps < 1) {
    return Block_Error{
        " => Error reading the numbers of operators and representations in: " + trim(line), false};
  }
  if (ngk > max_store_ops || nreps > max_store_irreps) {
    return Block_Error{
        " => Error! A supplied block may hold at most 48 operators and 48 representations: " +
            trim(line),
        false};
  }
  idim.assign(static_cast<std::size_t>(nreps), 0);
  if (!read_list(rest, ngk, nreps, idim)) {
    return Block_Error{" => Error reading the dimensions of the representations in: " + trim(line),
                       false};
  }
  int max_dim = 0;
  for (int d : idim) {
    if (d == 0 || d < -max_store_dim || d > max_store_dim) {  // no abs() of the least int
      return Block_Error{
          " => Error! Dimensions of supplied representations must be 1 to 48: " + trim(line),
          false};
    }
    max_dim = std::max(max_dim, std::abs(d));
  }
  store.resize(ngk, nreps, max_dim);
  return std::nullopt;
}

// The first line that begins with a head word, compared exactly and in capitals.
std::optional<std::size_t> first_head(const std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (std::string_view word : block_heads) {
      if (lines[i].compare(0, word.size(), word) == 0) return i;
    }
  }
  return std::nullopt;
}

// The text between the first "(" and the first ")" of a line, cut to 10 columns.
std::string name_in(const std::string& line) {
  const std::size_t open = line.find('(');
  const std::size_t close = line.find(')');
  if (open == std::string::npos || close == std::string::npos || close < open) {
    return std::string(name_width, ' ');
  }
  return fixed(line.substr(open + 1, close - open - 1), name_width);
}

// The block's echo, line by line from the first head.  A phase line is told by the phases
// it brought: one without a positive value is not seen as such.
void echo_block(std::string& unit, const std::vector<std::string>& lines, std::size_t head,
                lorsk_proc& store) {
  put(unit, "a", trim(lines[head]));
  std::size_t next = head + 1;
  auto echo = [&](std::string* name) {
    if (next >= lines.size()) return false;
    if (name != nullptr) *name = name_in(lines[next]);
    put(unit, "a", trim(lines[next++]));
    return true;
  };
  for (int g = 1; g <= store.ngk; ++g) {
    if (!echo(nullptr)) return;
    for (int nu = 1; nu <= store.nreps; ++nu) {
      if (!echo(g == 1 ? &store.iso_names[nu - 1] : nullptr)) return;
      const int d = store.idim[nu - 1];
      bool phased = false;
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) phased = phased || store.repi(a, b, nu, g) > 0.0f;
      }
      if (phased && !echo(nullptr)) return;
    }
  }
}

}  // namespace

std::optional<Block_Error> read_supplied_block(lorsk_proc& store,
                                               const std::vector<std::string>& lines,
                                               std::size_t head, std::size_t key_end,
                                               std::vector<std::string>& op_strings) {
  std::vector<int> idim;
  if (auto e = read_head(store, lines[head], key_end, idim)) return e;
  op_strings.clear();
  Block_Reader reader{store, lines, op_strings, head + 1};
  for (int g = 1; g <= store.ngk; ++g) {
    if (auto e = reader.operator_line(g)) return e;
    for (int nu = 1; nu <= store.nreps; ++nu) {
      if (auto e = reader.matrix_lines(nu, g, idim[nu - 1])) return e;
    }
  }
  for (std::size_t j = 0; j < idim.size(); ++j) store.idim[j] = std::abs(idim[j]);
  return std::nullopt;
}

int write_read_irreps(std::string& unit, const Vec3& vk, std::string_view label,
                      std::string_view spaceg, const std::vector<std::string>& lines,
                      lorsk_proc& store) {
  std::array<Exact_Op, max_space_generators> generators{};
  int ngenera = 0;
  int num = 0;
  const int status =
      get_generatorsk(unit, spaceg, false, nullptr, store.spg, generators, ngenera, num);
  if (status != status_done) return status;
  const std::string dashes = "  " + std::string(54, '-');
  put(unit, "/,a", dashes);
  if (store.full_irreps) {
    put(unit, "a", "    LIST OF READ GROUP OPERATORS AND PHYSICALLY IRREPS");
  } else if (store.extended_little_group) {
    put(unit, "a", "  EXTENDED LITTLE GROUP OPERATORS AND PHYSICALLY IRREPS");
  } else {
    put(unit, "a", "    LIST  OF  READ  LITTLE GROUP  OPERATORS AND IRREPS");
  }
  put(unit, "a,/", dashes);
  put(unit, "a,3f9.5,a", " => The conventional k-vector is: (", vk,
      " )  with label: " + trim(label));
  put_items(unit, " ");
  if (const auto head = first_head(lines)) echo_block(unit, lines, *head, store);
  return status_done;
}

}  // namespace velmoria

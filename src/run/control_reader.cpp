// The control-file reader.  The file is held as a table of lines, each shifted left, and
// read twice: once for the head of a supplied block of representations, once for the
// keywords in file order.
#include "run/control_reader.hpp"

#include <cmath>

#include "lorsk/group_preparation.hpp"
#include "lorsk/supplied_irreps.hpp"
#include "run/steps.hpp"
#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/list_read.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

// The first word of a line, in capitals, cut to 25 characters.
std::string first_word(const std::string& line) {
  const std::size_t end = line.find(' ');
  return u_case(
      line.substr(0, std::min<std::size_t>(end == std::string::npos ? line.size() : end, 25)));
}

// Text of a line from column `col` (1-based) on; empty when the line is shorter.
std::string from_column(const std::string& line, std::size_t col) {
  return line.size() >= col ? line.substr(col - 1) : std::string();
}

// The range of the numbers a user may give, as the messages name it.
std::string user_range_text() {
  return "+/-" + trim(adjustl(sput("i10", static_cast<int>(max_user_magnitude))));
}

std::string coordinate_error(const std::string& line) {
  return " => Error! A coordinate is not a number within " + user_range_text() + ": " + trim(line);
}

void write_head(Units& out) {
  put_items(out.result, " ");
  put(out.result, "a", "");
  put(out.result, "a", "   +++++++++++++++++++++++++++++++++++++++++++++++++++++");
  put(out.result, "a", "   +++ PROGRAM:Velmoria (Version 5.00, July 2016)    +++");
  put(out.result, "a", "   +++++++++++++++++++++++++++++++++++++++++++++++++++++");
  put(out.result, "a", "");
  put(out.result, "a", "  The calculation of the IRREPS of the little group is based in ");
  put(out.result, "a", "  the procedure of ZAK provided within the program LORSK       ");
  put_items(out.result, " ");
}

struct Reader {
  Run_State& rs;
  const std::vector<std::string>& lines;
  bool gk_given = false;
  int prim = 1;
  std::size_t head_line = 0;              // line of the last supplied-block head (0-based)
  std::size_t head_column = 0;            // column of the blank behind its keyword
  std::string ke1 = std::string(5, ' ');  // label of the point of the zone
  std::vector<std::string> texto;         // notes on split sites

  void first_pass();
  void read_supplied_block();
  void second_pass();
  void spgr(const std::string& line);
  void kvec(const std::string& line);
  void atom(const std::string& line);
  void subl(std::size_t index);
  void finish_supplied_mode();
  void atoms_section();
  int new_site(const std::string& atcod);
};

void Reader::first_pass() {
  auto& store = rs.store;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string key = first_word(lines[i]);
    if (key != "LITTLE_GROUP" && key != "FULL_GROUP_IR" && key != "EXTENDED_LITTLE_GROUP") continue;
    head_line = i;
    head_column = key.size() + 1;
    gk_given = true;
    store.iso_read = true;
    if (key == "FULL_GROUP_IR") store.full_irreps = true;
    if (key == "EXTENDED_LITTLE_GROUP") store.extended_little_group = true;
  }
}

// The supplied block: its head, operators and matrices.  A line of numbers that cannot be
// read is told on the console alone.
void Reader::read_supplied_block() {
  const auto error =
      velmoria::read_supplied_block(rs.store, lines, head_line, head_column - 1, rs.sv.symm_symb);
  if (!error) return;
  if (!error->console_only) stop_with(rs, error->message);
  put(rs.out.console, "a", error->message);
  throw Quiet_Stop{error->message};
}

void Reader::spgr(const std::string& line) {
  auto& sv = rs.sv;
  sv.spaceg = fixed(adjustl(fixed(from_column(line, 6), 20)), 20);
  put(rs.out.result, "a,a", " => Symbol of the space group: ", trim(sv.spaceg));
  if (gk_given) setup_supplied_spacegroup(rs);
  sv.spgr_read = true;
  sv.gen_read = false;
  std::string genstr;
  if (get_generators(sv.spaceg, genstr)) {
    sv.list_gen = fixed(genstr, 120);
    put(rs.out.result, "3a", " => The given space group ", trim(sv.spaceg),
        " is standard, IT generators will be used ");
    put(rs.out.result, "a,a", " => List of space group generators: ", trim(sv.list_gen));
    sv.gen_read = true;
  }
}

void Reader::kvec(const std::string& line) {
  auto& sv = rs.sv;
  Vec3 vk{0, 0, 0};
  if (!read_list(from_column(line, 6), vk)) {
    stop_with(rs,
              " => Error reading the three components of the propagation vector in: " + trim(line));
  }
  if (!within_user_range(vk)) {
    stop_with(rs, " => Error! A component of the propagation vector is not a number within " +
                      user_range_text() + ": " + trim(line));
  }
  vk = snap_to_fractions(vk);
  sv.vk = vk;
  const std::string t = trim(line);
  ke1 = t.size() >= 2 ? t.substr(t.size() - 2) : fixed(t, 2);
  sv.k_label = ke1;
  put(rs.out.result, "a,3f8.4,/,a,a2", " => Propagation vector: ", vk, " => BZ-point labelled as ",
      ke1);
  sv.kvec_read = true;
  if (gk_given) return;
  put(rs.out.result, "a", " => The representations of Gk will be calculated ");
  compute_little_group_irreps(rs, ke1);
  rs.mv.lat_type = rs.store.spg.spg_lat;
  write_irrep_tables(rs);
  put(rs.out.result, "/,/,a", " => Alternative evaluation of the propagation vector group. ");
  put(rs.out.result, "a", "    The ordering of the symmetry operators may be different ");
  put(rs.out.result, "a", "    than the sequence numbering given above                 ");
  put(rs.out.result, "a", "    " + std::string(56, '-'));
  compute_group_of_k(rs);
}

// Adds a site and returns its number, or 0 when the sites pass their limit.
int Reader::new_site(const std::string& atcod) {
  auto& sv = rs.sv;
  (void)atcod;
  ++sv.nsites;
  if (sv.nsites > max_sites) {
    sv.too_many = true;
    return 0;
  }
  sv.sites.emplace_back();
  return sv.nsites;
}

void Reader::atom(const std::string& line) {
  auto& sv = rs.sv;
  std::string adline = fixed(line, 120);
  cutst(adline);
  std::string atcod;
  cutst(adline, nullptr, &atcod, nullptr, 5);
  atcod = fixed(atcod, 5);
  cutst(adline);  // the type word is not used
  std::array<float, 10> vet{};
  std::array<int, 10> ivet{};
  int iv = 0;
  getnum(adline, vet, ivet, iv);
  Vec3 xt{vet[0], vet[1], vet[2]};
  if (!within_user_range(xt)) stop_with(rs, coordinate_error(line));
  if (prim == 0) xt = modulo_lat(xt);

  std::vector<Vec3> xeqv;
  std::vector<int> ind;
  const int m = split_into_suborbits(rs, xt, prim != 0, xeqv, ind);
  int norb = 1;
  std::vector<int> str{1};  // first position of each sub-orbit
  for (int i = 1; i <= m; ++i) {
    if (ind[i - 1] > norb) {
      norb = ind[i - 1];
      str.resize(norb, 0);
      str[norb - 1] = i;
    }
  }
  if (norb > 1) {
    if (static_cast<int>(texto.size()) >= max_split_notes) {
      stop_with(rs, " => Too many split sites: at most 10 atom sites may split into sub-orbits");
    }
    texto.push_back(
        sput("a,i2,a", "   -> The atom site: " + atcod + " is split in ", norb, " orbits"));
    atcod = fixed(trim(atcod) + "1", 5);
  }
  int ns = new_site(atcod);
  if (ns == 0) return;
  expand_site(rs, prim, atcod, xt, ns);
  // The sub-orbit number replaces the last character of the code; from 10 on it takes two
  // columns, cutting the code where the five columns of a site code demand.
  std::string stem = trim(atcod);
  if (!stem.empty()) stem.pop_back();  // an ATOM line may give no code at all
  for (int s = 2; s <= norb; ++s) {
    ns = new_site(atcod);
    if (ns == 0) break;
    const std::string number = sput(s < 10 ? "i1" : "i2", s);
    atcod = fixed(stem.substr(0, std::min(stem.size(), 5 - number.size())) + number, 5);
    expand_site(rs, prim, atcod, xeqv[str[s - 1] - 1], ns);
  }
  sv.atom_read = true;
}

void Reader::subl(std::size_t index) {
  auto& sv = rs.sv;
  const std::string& line = lines[index];
  std::string adline = fixed(line, 120);
  cutst(adline);
  std::string atcod;
  cutst(adline, nullptr, &atcod, nullptr, 5);
  atcod = trim(atcod);
  int n = 0;
  if (!read_list(adline, n) || n < 1) {
    stop_with(rs, " => Error reading the number of atoms in: " + trim(line));
  }
  if (n > max_site_atoms) {
    stop_with(rs, " => Too many atoms in SUBL " + atcod + ": at most 48 atoms a site");
  }
  const int ns = new_site(atcod);
  if (ns == 0) return;
  Site& site = sv.sites[ns - 1];
  site.resize(n);
  for (int j = 1; j <= n; ++j) {
    const std::size_t at = index + j;
    Vec3 x{};
    if (at >= lines.size() || !read_list(from_column(lines[at], 5), x)) {
      put(rs.out.result, "a", "  ERROR! -> exception occurred when reading sublattice positions ");
      site.mult = n;
      return;
    }
    if (!within_user_range(x)) stop_with(rs, coordinate_error(lines[at]));
    site.x[j - 1] = x;
    site.atom[j - 1] = fixed(sput(j < 10 ? "a,i1" : "a,i2", atcod + "_", j), 8);
  }
  site.mult = n;
  check_listed_site(rs, ns);
  sv.atom_read = true;
}

void Reader::second_pass() {
  auto& sv = rs.sv;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.empty() || line[0] == '!' || line[0] == '#') continue;
    const std::string key = first_word(line);
    if (key == "TITLE") {
      sv.title = fixed(adjustl(from_column(line, 6)), 132);
      put(rs.out.result, "a,a", " => Title:", trim(sv.title));
    } else if (key == "SHORT_OUTPUT") {
      sv.long_output = false;
      put(rs.out.result, "a", " => Short output selected. ");
    } else if (key == "SPGR") {
      spgr(line);
    } else if (key == "GEN") {
      sv.list_gen = fixed(adjustl(from_column(line, 6)), 120);
      put(rs.out.result, "a,a", " => List of space group generators: ", trim(sv.list_gen));
      sv.gen_read = true;
    } else if (key == "KVEC") {
      kvec(line);
    } else if (key == "VMODE") {
      if (line.find("AXI") != std::string::npos) sv.ipol = 0;
      if (line.find("CEL") != std::string::npos) prim = 0;
      sv.vmode_read = true;
    } else if (key == "ATOM") {
      atom(line);
    } else if (key == "SUBL") {
      subl(i);
    }
  }
}

void Reader::finish_supplied_mode() {
  auto& store = rs.store;
  Units& out = rs.out;
  if (store.full_irreps) {
    put(out.result, "a",
        " => The full representations of the space group are read from the input file ");
  } else if (store.extended_little_group) {
    put(out.result, "a",
        " => The representations of the extended little group, G_(k,-k) are read from the input "
        "file ");
  } else {
    put(out.result, "a", " => The representations of Gk are read from the input file ");
  }
  if (store.full_irreps || store.extended_little_group) {
    put(out.result, "a",
        "    Normally they have been read from the Physically Irreducible Representations "
        "database: "
        "PIR_data.txt");
  }
  if (!rs.sv.spgr_read) {
    stop_with(rs,
              " => Supplied representations need the space group on a SPGR line (a Hall "
              "symbol, a tabulated symbol or a number)");
  }
  const int status = write_read_irreps(out.result, rs.sv.vk, ke1, rs.sv.spaceg, lines, store);
  if (status == status_setup_failed) {
    stop_with(rs, " => " + trim(adjustl(err_symm_mess)) + ": " + trim(rs.sv.spaceg));
  }
  if (status != status_done) {
    stop_with(rs, " => Generators of the Space group: " + trim(rs.sv.spaceg) + " not determined!");
  }
  write_irrep_tables(rs);
  put(out.result, "/,/,a", " => Alternative evaluation of the propagation vector group. ");
  put(out.result, "a", "    The ordering of the symmetry operators may be different ");
  put(out.result, "a", "    than the sequence numbering given above                 ");
  put(out.result, "a", "    " + std::string(56, '-'));
  compute_group_of_k(rs);
  put(out.result, "/,a",
      " => Full Irreps of the space group or those of the extended little group will be used");
  put(out.result, "a,i3",
      "    The number of symmetry operators used for decomposition formula and projection "
      "operators is:",
      store.ngk);
}

void Reader::atoms_section() {
  auto& sv = rs.sv;
  std::string& out = rs.out.result;
  put(out, "/,/,a", "      DATA ABOUT ATOMS ");
  put(out, "a,/", "      " + std::string(16, '=') + " ");
  if (!texto.empty()) {
    for (const std::string& note : texto) put(out, "a", note);
    put(out, "a", "   -> The total number of sites has been increased consequently");
  }
  put(out, "/,a,i5", " => No. of sites:", sv.nsites);
  if (sv.too_many) {
    put(out, "a", " ");
    put(out, "a", " => Too many sites! Diminish the input number of atoms!");
    put(out, "a,i3", " => The number of sites is limited to: ", max_sites);
    sv.atom_read = false;
    return;
  }
  if (!sv.vmode_read) {
    const char* warning =
        " => Warning no VMODE keyword given ... default calculation for polar vectors";
    put(out, "/,a", warning);
    rs.warnings.push_back(trim(warning));
  }
  put(out, "/,a",
      sv.ipol == 0 ? " => Calculation for axial vectors" : " => Calculation for polar vectors");
  put(out, "/,a", " => List of atoms within a primitive unit cell: ");
  for (int s = 1; s <= sv.nsites; ++s) {
    const Site& site = sv.sites[s - 1];
    put(out, "a,i2", "                 X       Y       Z           for site: ", s);
    for (int j = 0; j < site.mult && j < static_cast<int>(site.x.size()); ++j) {
      put(out, "a,a8,a,3f8.4,2a", " -> ", site.atom[j], ": ", site.x[j], "  : ", site.symstr[j]);
    }
  }
}

}  // namespace

std::vector<std::string> split_lines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view l = text.substr(start, end - start);
    if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
    lines.emplace_back(l);
    start = end + 1;
  }
  return lines;
}

void stop_with(Run_State& rs, const std::string& message) {
  put(rs.out.console, "a", message);
  put(rs.out.result, "a", message);
  throw Quiet_Stop{message};
}

void read_sym(Run_State& rs, const std::vector<std::string>& raw_lines) {
  write_head(rs.out);
  std::vector<std::string> lines;
  lines.reserve(raw_lines.size());
  for (std::size_t i = 0; i < raw_lines.size(); ++i) {
    if (raw_lines[i].size() > max_line_width) {
      stop_with(rs, " => Line " + trim(adjustl(sput("i10", static_cast<int>(i + 1)))) +
                        " of the control file is longer than 2530 characters");
    }
    lines.push_back(trim(adjustl(raw_lines[i])));
  }
  Reader reader{rs, lines, false, 1, 0, 0, std::string(5, ' '), {}};
  reader.first_pass();
  rs.sv.nsites = 0;
  rs.sv.ipol = 1;
  set_epsg_sp(0.002f);
  if (reader.gk_given) reader.read_supplied_block();
  reader.second_pass();
  if (!rs.sv.gen_read && !rs.sv.spgr_read) {
    stop_with(rs,
              " => No information on space group is given, please provide SPGR/GEN before KVEC !");
  }
  if (reader.gk_given) reader.finish_supplied_mode();
  if (rs.sv.atom_read) reader.atoms_section();
}

}  // namespace velmoria

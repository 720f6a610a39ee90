// Setting up a space group record: choice of the road (number, Hall symbol, table symbol,
// tabulated generators, user generators, fixed list), the reduced set of operators from that
// road, its expansion by inversion and centring, and the special orbits of the table.
#include "symmetry/spacegroup_setup.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "support/list_read.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/hall_from_generators.hpp"
#include "symmetry/hall_symbols.hpp"
#include "symmetry/hm_symbols.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_roads.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr std::size_t spgm_len = 20;
constexpr std::size_t spg_symb_len = 20;
constexpr std::size_t hall_field_len = 16;
constexpr int max_number = 230;

const char* const mess_generic = "Error in the provided symbol/number of the space group";

// The seven table symbols whose Hermann-Mauguin reading does not give the table's group:
// they go by the Hall symbol of their row.
constexpr std::array<std::string_view, 7> hall_only_symbols = {
    "P N M 21", "P 21 N M", "P M 21 N", "B A M B", "C 4 2 21", "C -4 B 2", "F -4 D 2"};

using setup_roads::Road;

void fail(const std::string& mess) {
  set_err_symm(mess);
}

// First row (0-based) of the table of settings matching `pred`, -1 when none.
template <class Pred>
int find_row(Pred pred) {
  const auto& rows = spgr_info();
  for (int i = 0; i < num_spgr_info; ++i) {
    if (pred(rows[i])) return i;
  }
  return -1;
}

int row_of_hm(const std::string& spgm) {
  std::string key = fixed(spgm, hm_len);
  return find_row([&](const Spgr_Info_Type& r) { return same_text(r.hm, key); });
}

int row_of_hall(const std::string& spgm) {
  std::string key = fixed(spgm, hall_field_len);
  return find_row([&](const Spgr_Info_Type& r) { return same_text(u_case(r.hall), key); });
}

int first_row_of_number(int num) {
  return find_row([&](const Spgr_Info_Type& r) { return r.n == num; });
}

bool has_colon(std::string_view s) {
  return s.find(':') != std::string_view::npos;
}

// The row after k, as long as the table has one.
int next_row(int k) {
  return std::min(k + 1, num_spgr_info - 1);
}

std::string hall_of_row(int k) {
  return trim(spgr_info()[k].hall);
}

// The choice number behind a colon (0 when it cannot be read) and the text before it.
struct Colon_Split {
  bool colon = false;
  int n = 0;
  std::string before;
};

Colon_Split split_colon(const std::string& spgm) {
  Colon_Split s;
  std::size_t c = spgm.find(':');
  if (c == std::string::npos) {
    s.before = spgm;
    return s;
  }
  s.colon = true;
  s.before = spgm.substr(0, c);
  if (!read_list(spgm.substr(c + 1), s.n)) s.n = 0;
  return s;
}

// The road and table row chosen from the text alone.
struct Road_Choice {
  std::optional<Road> opcion;
  int k = -1;  // 0-based row, -1 for none
  std::string spgm;
};

bool choose_road_from_text(Road_Choice& rc, bool gen_given, bool force_hall) {
  Colon_Split cs = split_colon(rc.spgm);
  std::array<float, 2> vet{};
  std::array<int, 2> ivet{};
  int iv = 0;
  getnum(cs.before, vet, ivet, iv);
  if (iv == 1) {
    int num = ivet[0];
    if (num < 1 || num > max_number) {
      fail(" Number of Space Group out of limits");
      return false;
    }
    rc.k = first_row_of_number(num);
    if (!cs.colon) {
      if (has_colon(spgr_info()[rc.k].hm)) rc.k = next_row(rc.k);
    } else if (cs.n == 0 || cs.n == 2) {
      rc.k = next_row(rc.k);
    }
    rc.spgm = hall_of_row(rc.k);
    rc.opcion = Road::hall;
    return true;
  }
  rc.k = row_of_hm(rc.spgm);
  if (rc.k >= 0) {
    rc.opcion = Road::hms;
    if (force_hall) {
      rc.opcion = Road::hall;
      rc.spgm = hall_of_row(rc.k);
    }
  }
  if (rc.opcion == Road::hms) {
    std::string hm = trim(spgr_info()[rc.k].hm);
    if (std::find(hall_only_symbols.begin(), hall_only_symbols.end(), hm) !=
        hall_only_symbols.end()) {
      rc.opcion = Road::hall;
      rc.spgm = hall_of_row(rc.k);
    }
  }
  if (rc.k < 0) {
    rc.k = row_of_hall(rc.spgm);
    rc.opcion = Road::hall;
  }
  if (rc.k < 0) rc.opcion = gen_given ? Road::gen : Road::hall;
  return true;
}

bool choose_road_from_mode(Road_Choice& rc, std::string_view mode, const std::string& spgmc) {
  rc.opcion = setup_roads::road_of_mode(mode);
  rc.k = -1;
  if (rc.opcion == Road::hms) {
    rc.k = row_of_hm(rc.spgm);
  } else if (rc.opcion == Road::itc) {
    Colon_Split cs = split_colon(rc.spgm);
    rc.spgm = cs.before;
    int num = 0;
    if (read_list(rc.spgm, num)) {
      if (num < 1 || num > max_number) {
        fail(" The number of the space group should be in the interval [1,230]");
        return false;
      }
      rc.k = first_row_of_number(num);
      if (has_colon(spgr_info()[rc.k].hm) && (cs.n == 0 || cs.n == 2)) rc.k = next_row(rc.k);
    } else {
      rc.spgm = spgmc;
      rc.k = row_of_hm(rc.spgm);
    }
  } else if (rc.opcion == Road::hall) {
    rc.k = row_of_hall(rc.spgm);
  }
  return true;
}

std::string system_name(int isystem) {
  if (isystem < 1 || isystem > static_cast<int>(sys_cry.size())) return {};
  return trim(sys_cry[isystem - 1]);
}

// Operators read from their x,y,z texts, max_setup_ops at the most.
struct Read_Operators {
  std::vector<Mat3i> ss;
  std::vector<Vec3> ts;
};

Read_Operators read_operators(const std::vector<std::string>& texts) {
  const auto n = std::min<std::size_t>(texts.size(), max_setup_ops);
  Read_Operators o{std::vector<Mat3i>(n), std::vector<Vec3>(n)};
  for (std::size_t i = 0; i < n; ++i) read_xsym(texts[i], 1, o.ss[i], o.ts[i]);
  return o;
}

// The reduced set of a list of generators read from their x,y,z texts.
Group_Operators reduced_set_from_generators(const std::vector<std::string>& texts) {
  const Read_Operators o = read_operators(texts);
  return get_so_from_gener(static_cast<int>(o.ss.size()), o.ss, o.ts);
}

std::vector<std::string> first_generators(const std::vector<std::string>& gen, int ngen) {
  int n = std::max(0, std::min<int>(ngen, static_cast<int>(gen.size())));
  return {gen.begin(), gen.begin() + n};
}

bool road_fix(Space_Group_Type& spg, Group_Operators& rr, std::string_view spacegen,
              const std::vector<std::string>* gen, std::optional<int> ngen) {
  if (gen == nullptr || !ngen) {
    fail(" Generators should be provided if FIX option is Used");
    return false;
  }
  std::vector<std::string> texts = first_generators(*gen, *ngen);
  if (static_cast<int>(texts.size()) > max_setup_ops) {
    fail(mess_generic);
    return false;
  }
  const Read_Operators o = read_operators(texts);
  const std::string f_lat = is_blank(spacegen) ? std::string("Z") : std::string(spacegen);
  rr = get_so_from_fix(static_cast<int>(o.ss.size()), o.ss, o.ts, f_lat);
  rr.num_g = rr.ng - 1;
  spg.spg_symb = "unknown";
  spg.hall = "unknown";
  spg.laue.clear();
  spg.crystal_sys.clear();
  spg.info = "Fixed";
  spg.setting = "Non-Conventional (user-given operators)";
  return true;
}

bool road_gen(Space_Group_Type& spg, Group_Operators& rr, const std::vector<std::string>* gen,
              std::optional<int> ngen) {
  if (gen == nullptr || !ngen) {
    fail(" Generators should be provided in GEN calling Set_SpaceGroup");
    return false;
  }
  std::vector<std::string> texts = first_generators(*gen, *ngen);
  for (const std::string& g : texts) {
    if (!check_generator(g)) return false;
  }
  rr = reduced_set_from_generators(texts);
  spg.spg_symb = "unknown";
  spg.crystal_sys = system_name(rr.isystem);
  spg.setting = "Non-Conventional (user-given operators)";
  return true;
}

}  // namespace

Group_Operators setup_roads::road_hall(Space_Group_Type& spg, const std::string& spgm, int k) {
  const Group_Operators rr = get_so_from_hall(spgm);
  if (k >= 0) {
    fill_table_fields(spg, k + 1);
  } else {
    spg.hall = trim(fixed(spgm, hall_field_len));
  }
  spg.crystal_sys = system_name(rr.isystem);
  spg.setting = "Generated from Hall symbol";
  return rr;
}

namespace {

// Generators of the group for the Hermann-Mauguin reading of a tabulated symbol.
int num_gen_of_number(int num) {
  if (num <= 2) return 0;
  if ((num >= 3 && num <= 15) || (num >= 75 && num <= 88) || (num >= 143 && num <= 148) ||
      (num >= 168 && num <= 176)) {
    return 1;
  }
  if (num >= 195) return 3;
  return 2;
}

}  // namespace

Group_Operators setup_roads::road_hms(Space_Group_Type& spg, std::string_view spacegen, int k,
                                      const std::string& row_hall) {
  // A symbol with a ":" choice on a row of the table goes by the row's Hall symbol; otherwise
  // the symbol is read by its own rules, without the colon and what follows it.
  const bool by_hall = has_colon(spacegen) && k >= 0;
  Group_Operators rr = by_hall ? get_so_from_hall(row_hall)
                               : get_so_from_hms(spacegen.substr(0, spacegen.find(':')));
  if (k >= 0) {
    fill_table_fields(spg, k + 1);
  } else {
    spg.spg_symb = trim(fixed(adjustl(spacegen), spg_symb_len));
  }
  spg.crystal_sys = system_name(rr.isystem);
  if (by_hall) {
    spg.setting = "Generated from Hall symbol";
  } else {
    spg.setting = "IT (Generated from Hermann-Mauguin symbol)";
    // The reading by the rules names no generators: the group's number tells how many it has,
    // none without a row of the table.
    rr.num_g = k >= 0 ? num_gen_of_number(spg.num_spg) : 0;
  }
  return rr;
}

Group_Operators setup_roads::road_itc_generators(Space_Group_Type& spg, std::string_view spacegen,
                                                 const std::string& gener, int k) {
  const Group_Operators rr = reduced_set_from_generators(split_generators(gener));
  if (k >= 0) {
    fill_table_fields(spg, k + 1);
    spg.setting = "Generated from explicit IT generators";
  } else {
    spg.spg_symb = trim(fixed(adjustl(spacegen), spg_symb_len));
  }
  spg.crystal_sys = system_name(rr.isystem);
  return rr;
}

namespace {

bool road_itc(Space_Group_Type& spg, Group_Operators& rr, std::string_view spacegen,
              const std::string& spgm, int k) {
  std::string gener;
  if (!get_generators(trim(spgm), gener)) {
    fail(" Problems in SpaceGroup: " + trim(spgm) +
         " => the HM symbol or the number is incorrect ");
    return false;
  }
  rr = setup_roads::road_itc_generators(spg, spacegen, gener, k);
  return true;
}

void fill_common_fields(Space_Group_Type& spg, const Group_Operators& rr) {
  spg.spg_lat = lat_ch;
  spg.spg_latsy = rr.latsy;
  int n = std::clamp(nlat, 0, max_lattice_points);
  spg.num_lat = n;
  spg.latt_trans.assign(ltr.begin(), ltr.begin() + n);
  if (rr.ibravl >= 1 && rr.ibravl <= static_cast<int>(latt.size())) {
    spg.bravais = trim(latt[rr.ibravl - 1]);
  }
  if (rr.icentre >= 0 && rr.icentre <= 2) spg.centre = trim(centro[rr.icentre]);
  spg.centred = rr.icentre;
  spg.centre_coord = rr.co;
  spg.num_ops = rr.ng;
  spg.num_gen = std::max(0, rr.num_g);
}

// Whether one of the operators 2..ng has a rotation of hexagonal form.
bool hexagonal_form(const Group_Operators& rr) {
  for (int i = 1; i < rr.ng; ++i) {
    const Mat3i& m = rr.ss[i];
    for (int col = 0; col < 2; ++col) {
      if (std::abs(m[0][col]) + std::abs(m[1][col]) + std::abs(m[2][col]) > 1) return true;
    }
  }
  return false;
}

// symop: the reduced set, its inverted copies, then one block per centring vector.
void expand_operators(Space_Group_Type& spg, const Group_Operators& rr, bool fixed_list) {
  int ng = rr.ng;
  int nl = std::max(1, spg.num_lat);
  if (fixed_list) {
    spg.multip = ng;
  } else {
    spg.multip = (spg.centred == 1) ? ng * nl : 2 * ng * nl;
  }
  spg.symop.assign(spg.multip, Sym_Oper_Type{});
  for (int i = 0; i < ng; ++i) spg.symop[i] = {rr.ss[i], rr.ts[i]};
  if (!fixed_list) {
    int m = ng;
    if (spg.centred != 1) {
      Vec3 twice{2 * spg.centre_coord[0], 2 * spg.centre_coord[1], 2 * spg.centre_coord[2]};
      for (int i = 0; i < ng; ++i) {
        Sym_Oper_Type& op = spg.symop[ng + i];
        for (int r = 0; r < 3; ++r) {
          for (int c = 0; c < 3; ++c) op.rot[r][c] = -rr.ss[i][r][c];
        }
        op.tr = modulo_lat(
            Vec3{twice[0] - rr.ts[i][0], twice[1] - rr.ts[i][1], twice[2] - rr.ts[i][2]});
      }
      m = 2 * ng;
    }
    for (int l = 1; l < nl; ++l) {
      const Vec3& lv = spg.latt_trans[l];
      for (int j = 0; j < m; ++j) {
        const Sym_Oper_Type& src = spg.symop[j];
        Sym_Oper_Type& op = spg.symop[l * m + j];
        op.rot = src.rot;
        op.tr = modulo_lat(Vec3{src.tr[0] + lv[0], src.tr[1] + lv[1], src.tr[2] + lv[2]});
      }
    }
  }
  spg.symop_symb.resize(spg.multip);
  for (int i = 0; i < spg.multip; ++i) {
    spg.symop_symb[i] = get_symsymbi(spg.symop[i].rot, spg.symop[i].tr);
  }
}

Vec3 fractional_part(const Vec3& v) {
  Vec3 r{};
  for (int i = 0; i < 3; ++i) {
    float u = v[i] + 10.0f;
    r[i] = u - std::trunc(u);
  }
  return r;
}

bool holds_text(const std::vector<std::string>& list, const std::string& text) {
  return std::any_of(list.begin(), list.end(),
                     [&](const std::string& s) { return same_text(s, text); });
}

// The positions of one special orbit from its representative, without centring.
void expand_orbit(const Space_Group_Type& spg, std::string_view representative,
                  Wyckoff_Site_Type& orb) {
  orb.str_orbit.clear();
  orb.norb = 0;
  if (is_blank(representative)) return;
  orb.str_orbit.push_back(trim(adjustl(representative)));
  orb.norb = 1;
  Mat3r w{};
  Vec3 t{};
  read_xsym(representative, 1, w, t, false);
  int nrep = spg.multip / std::max(1, spg.num_lat);
  for (int j = 1; j < nrep; ++j) {
    const Sym_Oper_Type& op = spg.symop[j];
    Mat3r w1{};
    Vec3 t1{};
    for (int r = 0; r < 3; ++r) {
      for (int c = 0; c < 3; ++c) {
        for (int q = 0; q < 3; ++q) w1[r][c] += static_cast<float>(op.rot[r][q]) * w[q][c];
      }
      t1[r] = static_cast<float>(op.rot[r][0]) * t[0] + static_cast<float>(op.rot[r][1]) * t[1] +
              static_cast<float>(op.rot[r][2]) * t[2] + op.tr[r];
    }
    t1 = fractional_part(t1);
    std::string text = get_symsymbr(w1, t1);
    if (holds_text(orb.str_orbit, text)) continue;
    bool seen = false;
    for (int l = 1; l < spg.num_lat && !seen; ++l) {
      const Vec3& lv = spg.latt_trans[l];
      Vec3 t2 = fractional_part(Vec3{t1[0] + lv[0], t1[1] + lv[1], t1[2] + lv[2]});
      seen = holds_text(orb.str_orbit, get_symsymbr(w1, t2));
    }
    if (seen || orb.norb >= max_orbit_positions) continue;
    orb.str_orbit.push_back(trim(adjustl(text)));
    ++orb.norb;
  }
}

void attach_special_orbits(Space_Group_Type& spg) {
  std::string key = fixed(spg.spg_symb, hm_len);
  const auto& rows = wyckoff_info();
  auto row = std::find_if(rows.begin(), rows.end(),
                          [&](const Wyck_Info_Type& w) { return same_text(w.hm, key); });
  if (row == rows.end()) return;
  int norbit = std::clamp(row->norbit, 0, max_orbits);
  spg.wyckoff.num_orbit = norbit;
  spg.wyckoff.orbit.assign(norbit, Wyckoff_Site_Type{});
  for (int i = 0; i < norbit; ++i) {
    Wyckoff_Site_Type& orb = spg.wyckoff.orbit[i];
    expand_orbit(spg, row->orbit[i], orb);
    orb.multp = spg.num_lat * orb.norb;
  }
}

// P M M M becomes P m m m; F D -3 M:1 becomes F d -3 m:1.
void lower_symbol_case(std::string& symb) {
  std::size_t end = std::min(symb.find(':'), symb.size());
  for (std::size_t i = 1; i < end; ++i) {
    if (symb[i] >= 'A' && symb[i] <= 'Z') symb[i] = static_cast<char>(symb[i] - 'A' + 'a');
  }
}

}  // namespace

void set_spacegroup(std::string_view spacegen, Space_Group_Type& spacegroup,
                    const std::vector<std::string>* gen, std::optional<int> ngen,
                    std::optional<std::string_view> mode, bool force_hall) {
  spacegroup = Space_Group_Type{};
  const Symm_Scope symm_scope;
  set_spgr_info();
  set_wyckoff_info();

  Road_Choice rc;
  rc.spgm = u_case(fixed(adjustl(spacegen), spgm_len));
  const std::string spgmc = rc.spgm;
  bool chosen = mode ? choose_road_from_mode(rc, *mode, spgmc)
                     : choose_road_from_text(rc, gen != nullptr, force_hall);
  if (!chosen) return;

  if (!rc.opcion) {
    fail(" Problems in SpaceGroup");
    return;
  }
  Group_Operators rr;
  bool ok = true;
  switch (*rc.opcion) {
    case Road::fix:
      ok = road_fix(spacegroup, rr, spacegen, gen, ngen);
      break;
    case Road::gen:
      ok = road_gen(spacegroup, rr, gen, ngen);
      break;
    case Road::hall:
      rr = setup_roads::road_hall(spacegroup, rc.spgm, rc.k);
      break;
    case Road::hms:
      rr = setup_roads::road_hms(spacegroup, spacegen, rc.k, rc.k >= 0 ? hall_of_row(rc.k) : "");
      break;
    case Road::itc:
      ok = road_itc(spacegroup, rr, spacegen, rc.spgm, rc.k);
      break;
  }
  if (!ok) return;
  setup_roads::finish_spacegroup(spacegroup, rr, *rc.opcion, rc.k);
}

std::optional<Road> setup_roads::road_of_mode(std::string_view mode) {
  const std::string key = u_case(fixed(adjustl(mode), 3));
  constexpr std::array<std::pair<std::string_view, Road>, 5> names = {{{"HMS", Road::hms},
                                                                       {"HAL", Road::hall},
                                                                       {"ITC", Road::itc},
                                                                       {"GEN", Road::gen},
                                                                       {"FIX", Road::fix}}};
  for (const auto& [name, road] : names) {
    if (key == name) return road;
  }
  return std::nullopt;
}

void setup_roads::finish_spacegroup(Space_Group_Type& spacegroup, const Group_Operators& rr,
                                    Road road, int k) {
  fill_common_fields(spacegroup, rr);

  if (err_symm) {
    if (is_blank(err_symm_mess)) err_symm_mess = mess_generic;
    return;
  }
  spacegroup.hexa_axes = hexagonal_form(rr);
  hexa = spacegroup.hexa_axes;
  const bool fixed_list = road == Road::fix;
  // Generators with translations that are no fractions of a crystal's cell can close into a
  // dense set of centring vectors; no space group has more operators in its cell than F m -3 m.
  const int lattice_points = std::max(1, spacegroup.num_lat);
  const int multip = fixed_list ? rr.ng : (rr.icentre == 1 ? 1 : 2) * rr.ng * lattice_points;
  if (multip > max_multiplicity) {
    fail(" The operators make a group of " + std::to_string(multip) +
         " operators in the cell: a space group has at most " + std::to_string(max_multiplicity));
    return;
  }
  expand_operators(spacegroup, rr, fixed_list);
  if (k < 0) {
    get_laue_pg(spacegroup, spacegroup.laue, spacegroup.pg);
    spacegroup.laue = trim(spacegroup.laue);
    spacegroup.pg = trim(spacegroup.pg);
  }
  if (rr.icentre == 0 && rr.ng < spacegroup.multip) {
    spacegroup.centre = trim(spacegroup.centre) + "  Gen(-1):" + spacegroup.symop_symb[rr.ng];
  }
  if (road == Road::gen) get_hallsymb_from_gener(spacegroup);
  if (!is_blank(spacegroup.spg_symb)) {
    attach_special_orbits(spacegroup);
    lower_symbol_case(spacegroup.spg_symb);
  }
}

}  // namespace velmoria

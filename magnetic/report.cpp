#include "magnetic/report.hpp"

#include "run/run_state.hpp"
#include "support/text.hpp"

namespace velmoria {
namespace {

using nlohmann::json;

std::string irrep_line(const Magnetic_Irrep& ir) {
  std::string s =
      " => IRrep(" + std::to_string(ir.nu) + "): dimension " + std::to_string(ir.dimension);
  if (ir.k_equiv_mk) s += ", Frobenius-Schur indicator " + std::to_string(ir.indicator);
  if (ir.partner > 0) {
    s += ", joined with its conjugate IRrep(" + std::to_string(ir.partner) + ")";
  } else if (!ir.k_equiv_mk) {
    s += ", joined with the representation of -k";
  }
  s += ": real representation of dimension " + std::to_string(ir.real_dimension) +
       (ir.real_dimension == ir.dimension ? " (d)" : " (2d)");
  return s + ", copies " + std::to_string(ir.copies) + "\n";
}

std::string direction_lines(const Magnetic_Direction& d, bool polar) {
  std::string s = "    Direction " + d.notation + ": ";
  const Identification& g = d.group;
  if (!g.error.empty()) return s + "the group was not found: " + g.error + "\n";
  if (polar) {
    s += "space group " + std::to_string(g.space_group_number) + " " + g.space_group_symbol;
  } else {
    s += "BNS " + g.bns_number + " " + (g.bns_symbol.empty() ? "(symbol not given)" : g.bns_symbol);
    s += "   OG " + g.og_number + "   type " +
         std::string(g.type == 1   ? "I"
                     : g.type == 2 ? "II"
                     : g.type == 3 ? "III"
                                   : "IV");
  }
  s += "\n       Cell: (" + g.cell.text +
       ")   Free parameters: " + std::to_string(d.free_parameters) + "   File: " + d.mcif_name +
       "\n";
  return s;
}

json identification_json(const Magnetic_Direction& d, bool polar) {
  const Identification& g = d.group;
  json j;
  j["notation"] = d.notation;
  j["free_parameters"] = d.free_parameters;
  j["error"] = g.error.empty() ? json(nullptr) : json(g.error);
  const bool found = g.error.empty();
  const bool magnetic = found && !polar;
  j["bns_number"] = magnetic ? json(g.bns_number) : json(nullptr);
  j["bns_symbol"] = magnetic && !g.bns_symbol.empty() ? json(g.bns_symbol) : json(nullptr);
  j["og_number"] = magnetic ? json(g.og_number) : json(nullptr);
  j["uni_number"] = magnetic ? json(g.uni_number) : json(nullptr);
  j["type"] = magnetic ? json(g.type) : json(nullptr);
  j["space_group"] = found && polar ? json{{"number", g.space_group_number},
                                           {"hermann_mauguin", g.space_group_symbol}}
                                    : json(nullptr);
  if (found) {
    json basis = json::array();
    for (const auto& v : g.cell.basis) basis.push_back({v[0], v[1], v[2]});
    j["cell"] = {{"transformation", g.cell.text},
                 {"basis", basis},
                 {"origin", {g.cell.origin[0], g.cell.origin[1], g.cell.origin[2]}}};
  } else {
    j["cell"] = nullptr;
  }
  j["mcif"] = d.mcif_name.empty() ? json(nullptr) : json(d.mcif_name);
  return j;
}

}  // namespace

Parent_Info parent_of(const Run_State& rs) {
  Parent_Info p;
  p.space_group = trim(rs.store.spg.spg_symb);
  p.number = rs.store.spg.num_spg;
  for (int i = 0; i < 3; ++i) p.k[i] = rs.sv.vk[i];
  p.title = trim(rs.sv.title);
  return p;
}

Magnetic_Report magnetic_report(const Magnetic_Candidates& candidates, const Parent_Info& parent,
                                const std::string& code) {
  Magnetic_Report report;
  report.unsupported = candidates.unsupported;
  report.polar = candidates.polar;
  if (!report.unsupported.empty()) return report;
  Identifier identifier(candidates.operations, report.polar);
  for (const auto& pi : candidates.irreps) {
    Magnetic_Irrep ir{
        pi.nu, pi.dimension, pi.indicator, pi.partner, pi.real_dimension, pi.copies, pi.k_equiv_mk,
        {}};
    for (std::size_t n = 0; n < pi.directions.size(); ++n) {
      const auto& od = pi.directions[n];
      Magnetic_Direction d{
          od.notation, od.free_parameters, identifier.identify(od.structure, od.isotropy), {}, {}};
      if (d.group.error.empty()) {
        const std::string name = code + "_ir" + std::to_string(pi.nu) + "_" + std::to_string(n + 1);
        d.mcif_name = name + ".mcif";
        d.mcif = mcif_text(d.group, parent, name);
      }
      ir.directions.push_back(std::move(d));
    }
    report.irreps.push_back(std::move(ir));
  }
  return report;
}

std::string magnetic_section(const Magnetic_Report& report) {
  const std::string rule = std::string(80, '-') + "\n";
  std::string s = "\n" + rule;
  s += report.polar ? " => SPACE GROUPS OF THE ORDER-PARAMETER DIRECTIONS (displacements)\n"
                    : " => MAGNETIC SPACE GROUPS OF THE ORDER-PARAMETER DIRECTIONS\n";
  s += rule;
  if (!report.unsupported.empty())
    return s + " => No candidate structure was identified: " + report.unsupported + "\n";
  if (report.irreps.empty())
    return s + " => No representation occurs in the representation of the sites\n";
  for (const auto& ir : report.irreps) {
    s += irrep_line(ir);
    for (const auto& d : ir.directions) s += direction_lines(d, report.polar);
    s += "\n";
  }
  return s;
}

json magnetic_json(const Magnetic_Report& report) {
  json j;
  j["computed"] = report.unsupported.empty();
  j["unsupported"] = report.unsupported.empty() ? json(nullptr) : json(report.unsupported);
  j["vectors"] = report.polar ? "polar" : "axial";
  json irreps = json::array();
  for (const auto& ir : report.irreps) {
    json directions = json::array();
    for (const auto& d : ir.directions) directions.push_back(identification_json(d, report.polar));
    irreps.push_back({{"number", ir.nu},
                      {"dimension", ir.dimension},
                      {"indicator", ir.k_equiv_mk ? json(ir.indicator) : json(nullptr)},
                      {"k_equivalent_to_minus_k", ir.k_equiv_mk},
                      {"partner", ir.partner > 0 ? json(ir.partner) : json(nullptr)},
                      {"real_dimension", ir.real_dimension},
                      {"copies", ir.copies},
                      {"directions", directions}});
  }
  j["representations"] = irreps;
  return j;
}

}  // namespace velmoria

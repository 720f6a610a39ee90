// The spine of a run: the block file's head, the control file, the site loop, the end.
#include "run/run_driver.hpp"

#include <exception>
#include <functional>

#include "lorsk/zak.hpp"
#include "run/control_reader.hpp"
#include "run/run_state.hpp"
#include "run/steps.hpp"
#include "support/layout.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/symmetry_symbols.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

void write_block_head(std::string& block) {
  put(block, "a", "   -------------------------------");
  put(block, "a", "   Output of Velmoria for Tarnweld");
  put(block, "a", "   -------------------------------");
  put(block, "a", "   The group of lines starting with the symbol of space groups and ");
  put(block, "a", "   finishing with the last keyword BASI, may be pasted into the RCF file");
  put(block, "a", "  ");
}

// How the basis functions relate to the moments or displacements of the atoms of site ns.
void write_site_text(Run_State& rs, int ns) {
  const symmetry_var& sv = rs.sv;
  std::string& out = rs.out.result;
  const bool moments = sv.ipol == 0;
  const std::string seven(7, ' ');
  put(out, "a", "");
  put(out, "a,a", " " + std::string(58, '-'), std::string(66, '-'));
  put(out, "a,a", "                     General information relating the ",
      moments ? "calculated basis functions with the magnetic structure"
              : "calculated basis functions with the displacement vectors");
  put(out, "a,a", " " + std::string(60, '-'), std::string(64, '-'));
  put(out, "a", "");
  put(out, "a,a", "       The fundamental hypothesis of the representational analysis ",
      "is that the vectorial Fourier coefficients are ");
  put(out, "a,a", "       LINEAR COMBINATIONS of Basis Functions, in a simplified form: ",
      "Sk(j) = Sum{n}{C(n).BsV(n,j)}");
  std::vector<std::string> names;
  const Site& site = sv.sites[ns - 1];
  for (int j = 0; j < site.mult && j < static_cast<int>(site.atom.size()); ++j) {
    names.push_back(trim(site.atom[j]) + " ");
  }
  put(out, "a,48a",
      "       The index 'j' labels the sublatices (j=1,2,...na) of the current site: ", names);
  put(out, "a,a", "       The simplified notation for C(n) used below, is given by the ",
      "symbols: u,v,w,p,q ....(may be complex!)");
  put(out, "a,a", "       The Fourier coefficients are written as: Sk(j) = u BsV(1,j)+ ",
      "v BsV(2,j)+ w BsV(3,j)+ p BsV(4,j)+ q BsV(5,j)+ ...");
  put(out, "a,a", "       The atomic components of the basis functions BsV(n,j) are 3D ",
      "constant vectors (may be complex) written as row matrices");
  put(out, "a", "       BsV(n,j) represents the basis vector 'n' attached to the atom 'j' ");
  put(out, "a,a", "       BsV(n,1:na) represents the basis vectors 'n' of the atoms 1 up ",
      "to na (row of na 3D-vectors) ");
  put(out, "a,a",
      moments ? "       The magnetic moments should be calculated from the Fourier "
              : "       The displacement vectors should be calculated from the Fourier ",
      "coefficients using the general formula: ");
  put(out, "a", seven);
  put(out, "a",
      moments ? "                                 m(L,j) = Sum{k}{ Sk(j) exp[-2pi.i.k.R(L)] }"
              : "                                 d(L,j) = Sum{k}{ Sk(j) exp[-2pi.i.k.R(L)] }");
  put(out, "a", seven);
  put(out, "a", "       or for a single pair (k,-k)");
  put(out, "a", seven);
  put(out, "a",
      moments ? "                                 m(L,j) = Sk(j) exp{-2pi.i.k.R(L)} +  Sk*(j) "
                "exp{2pi.i.k.R(L)}"
              : "                                 d(L,j) = Sk(j) exp{-2pi.i.k.R(L)} +  Sk*(j) "
                "exp{2pi.i.k.R(L)}");
  put(out, "a", seven);
  put(out, "a,a", "       Where R(L) is the LATTICE translation giving the vector position ",
      "of the cell labelled 'L':  R(L) = L1 a + L2 b + L3 c ");
  put(out, "a", std::string(12, ' '));
  put(out, "a,a", "       If the lattice is CENTRED the expression of R(L) contains also ",
      "fractional indices (L1,L2,L3) ");
  put(out, "a,a",
      moments ? "       The components of m(L,j), Sk(j) and BsV(n,j)"
              : "       The components of d(L,j), Sk(j) and BsV(n,j)",
      " are given with respect to a frame with unit vectors along a,b,c");
  put(out, "a", seven);
  const Vec3& vk = sv.vk;
  if (!sv.bz) {
    put(out, "a,3(f8.5,a)", "       We consider only the propagation vector pair (k,-k) with k = (",
        vk[0], ",", vk[1], ",", vk[2], ")");
    return;
  }
  put(out, "a,3(f8.5,a)", "       In the present case k = (", vk[0], ",", vk[1], ",", vk[2],
      ") is equivalent to -k and all Sk(j) should be real");
  if (vk[0] * vk[0] + vk[1] * vk[1] + vk[2] * vk[2] < 0.001f) {
    put(out, "a,a", "       The magnetic moments are equal to the Fourier coefficients ",
        "Sk(j):  m(L,j) = Sk(j) for all L  ");
  } else {
    const int v1 = nint(2 * vk[0]), v2 = nint(2 * vk[1]), v3 = nint(2 * vk[2]);
    put(out, "a,a,3(i1,a)", "       Up to a sign, the magnetic moments are identified to ",
        "the Fourier coefficients Sk(j):  m(L,j) = Sk(j)(-1)^{", v1, " L1 + ", v2, " L2 + ", v3,
        " L3 }");
  }
}

}  // namespace

void reset_library_state() {
  set_epsg_default();
  set_epsg_dp(1.0e-12);
  set_eps_default();
  reset_mathgen_state();
  reset_string_state();
  reset_symm_state();
  reset_symtab_state();
  reset_math3d_state();
  reset_lorsk_state();
  hexa = false;
  inlat = 0;
  lat_ch = ' ';
  nlat = 0;
  ltr = {};
}

namespace {

void run_steps(Run_State& rs, const Run_Input& input) {
  write_block_head(rs.out.block);
  const std::vector<std::string> lines =
      input.control ? split_lines(*input.control) : std::vector<std::string>{};
  read_sym(rs, lines);
  symmetry_var& sv = rs.sv;
  if (!sv.kvec_read) {
    stop_with(rs, " => Calculation of IRreps omitted ... no KVEC keyword given! ");
  }
  if (!sv.atom_read) {
    const char* message =
        sv.too_many ? " => Calculation of basis functions omitted ... too many atoms given! "
                    : " => Calculation of basis functions omitted ... no ATOM keywords given! ";
    put(rs.out.console, "a", message);
    put(rs.out.result, "a", message);
    rs.warnings.push_back(trim(message));
  } else {
    set_epsg_sp(0.002f);
    for (int ns = 1; ns <= sv.nsites; ++ns) {
      site_representations(rs, ns);
      site_decomposition(rs, ns);
      if (sv.long_output) write_site_text(rs, ns);
      site_basis_functions(rs, ns);
    }
    set_epsg_default();
  }
  put(rs.out.console, "a,a", " => Normal End ... Results in file: ", trim(input.code) + ".vmr");
}

}  // namespace

void run_guarded(Run_State& rs, const std::function<void(Run_State&)>& steps) {
  std::string what;
  try {
    steps(rs);
    return;
  } catch (const Quiet_Stop& stop) {
    rs.stop_message = trim(stop.message);  // written already; the run ends here
    return;
  } catch (const std::exception& e) {
    what = e.what();
  } catch (...) {
    what = "unknown exception";
  }
  // Plain appends: the layout writer may be what failed.
  const std::string message = " => Internal error, the run stops: " + what + "\n";
  rs.out.console += message;
  rs.out.result += message;
  rs.stop_message = trim(message);
}

Run_Output run_velmoria(const Run_Input& input) {
  auto state = std::make_shared<Run_State>();
  Run_State& rs = *state;
  rs.sv.path_name = input.path_name;
  const float saved_epss = epss_val();
  reset_library_state();
  run_guarded(rs, [&input](Run_State& r) { run_steps(r, input); });
  set_epsg_sp(saved_epss);
  Run_Output out{std::move(rs.out.console), std::move(rs.out.result), std::move(rs.out.block),
                 nullptr};
  out.state = std::move(state);
  return out;
}

}  // namespace velmoria

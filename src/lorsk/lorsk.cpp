// The little-group driver and its listing.
#include "lorsk/lorsk.hpp"

#include <algorithm>

#include "lorsk/group_preparation.hpp"
#include "lorsk/zak.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"

namespace velmoria {

namespace {

// One matrix of the listing: a line for dimension 1, else one line per column holding the
// moduli and then the phases (in turns) of that column.
void write_matrix(std::string& unit, const Lorsk_Work& w, int nu, int g) {
  const int z = w.Z1;
  const int d = w.drep(nu, z);
  if (d == 1) {
    put(unit, "a,2f8.4", std::string(21, ' '), w.rep1(1, 1, nu, g, z),
        w.rep2(1, 1, nu, g, z) / 24.0f);
    return;
  }
  if (d < 2 || d > max_work_dim) return;
  const std::string columns = std::to_string(d) + "f10.6";
  const std::string layout = "a," + columns + ",a," + columns;
  for (int c = 1; c <= d; ++c) {
    std::vector<float> modulus(d), phase(d);
    for (int a = 1; a <= d; ++a) {
      modulus[a - 1] = w.rep1(a, c, nu, g, z);
      phase[a - 1] = w.rep2(a, c, nu, g, z) / 24.0f;
    }
    put(unit, layout, "    ", modulus, "    ", phase);
  }
}

// Head of the listing of the matrices.
void write_listing_head(std::string& unit, const Lorsk_Work& w, const std::string& label) {
  const int n = w.NREP[w.Z1];
  put(unit, "/,2a,/", " REPRESENTATIONS OF THE LITTLE GROUP OF BRILLOUIN ZONE POINT ", label);
  put(unit, "a,i2,2a,/", " There are ", n, " little-group ", "representations for this k-vector.");
  std::vector<int> dims(n);
  for (int nu = 1; nu <= n; ++nu) dims[nu - 1] = w.drep(nu, w.Z1);
  put(unit, "a,40i2", " The dimensions are, respectively: ", dims);
  put(unit, "a", " The representative matrices are given in pairs  Ir=(M, PH): ");
  put(unit, "a", " Where M has as components the modul of the components of Ir  ");
  put(unit, "a,/",
      " PH has as components the phase (in fraction of 2PI) of the components of Ir  ");
}

// Moves the representations of level Z1 into the store, in the units of the store, and lists
// them when asked.
void fill_store(std::string& unit, const Lorsk_Work& w, int listing, lorsk_proc& store) {
  const int z = w.Z1;
  const int nreps = w.NREP[z];
  const int ngk = w.order;
  int dmax = 1;
  for (int nu = 1; nu <= nreps; ++nu) dmax = std::max(dmax, w.drep(nu, z));
  store.resize(ngk, nreps, dmax);
  for (int nu = 1; nu <= nreps; ++nu) store.idim[nu - 1] = w.drep(nu, z);

  const std::string dashes = "  " + std::string(82, '-');
  for (int g = 1; g <= ngk; ++g) {
    store.ph[g - 1] = expon(w.k, w.SUB, g, w.SUB, 1) / 24.0f;
    const Mat3i SIM = w.SUB[g].rot;
    const Vec3 STR = to_real(w.SUB[g].tr);
    store.ir[g - 1] = SIM;
    store.t[g - 1] = STR;
    store.names[g - 1] = "SYMM_K(" + sput("i2", g) + ")";
    const std::string LINE = listing == 1 ? trim(get_symsymbi(SIM, STR)) : std::string();
    if (listing == 1) {
      put(unit, "/,a", dashes);
      put(unit, "a,i2,a,a", "  REPRESENTATIVE MATRICES OF OPERATOR of Gk NUMBER(", g, "): ", LINE);
      put(unit, "a,/", dashes);
    }
    for (int nu = 1; nu <= nreps; ++nu) {
      store.chr(nu, g) = w.ch1(nu, g, z);
      store.chi(nu, g) = w.ch2(nu, g, z) / 24.0f;
      const int d = w.drep(nu, z);
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) {
          store.repr(a, b, nu, g) = w.rep1(a, b, nu, g, z);
          store.repi(a, b, nu, g) = w.rep2(a, b, nu, g, z) / 24.0f;
        }
      }
      if (listing == 1) {
        put(unit, "/,a,i2,a,i2,a,a", "  IRREP Number(", nu, ") for operator(", g, "): ", LINE);
        write_matrix(unit, w, nu, g);
      }
    }
  }
}

}  // namespace

int lorsk(std::string& unit, const Vec3& k, int newk, std::string_view label,
          std::string_view group_text, int listing, bool gen_flag, const std::string* symbol,
          lorsk_proc& store, Lorsk_Work& w) {
  w = Lorsk_Work{};
  put_items(unit, " ");
  put(unit, "a", "  ");
  const int status = space_group(unit, w, store.spg, group_text, newk, gen_flag, symbol);
  if (status != status_done) return status;
  return little_group_irreps(unit, k, label, listing, store, w);
}

int little_group_irreps(std::string& unit, const Vec3& k, std::string_view label, int listing,
                        lorsk_proc& store, Lorsk_Work& w) {
  w.k = k;
  w.SUB = Op_Table{};
  w.SUB[1] = Exact_Op{};
  const std::string label2 = fixed(label, 2);
  w.BL = fixed(store.spg.spg_latsy, 2);
  put_items(unit, " ");
  put(unit, "2a", " => The lattice symbol is ", w.BL);
  w.BL = u_case(w.BL);

  put_items(unit, " ");
  put_items(unit, " ");
  put_items(unit, " The conventional k-vector is");
  put(unit, "3(a,f9.5)", "   ", k[0], "   ", k[1], "   ", k[2]);
  put_items(unit, " ");

  if (!little_group(unit, w, label2)) return status_not_determined;
  w.create_work(w.N);
  w.rep1(1, 1, 1, 1, 1) = 1.0f;
  const Lorsk_Scope lorsk_scope;
  zak(w);
  if (err_lorsk) put(unit, "a,a", " => Warning! ", trim(err_lorsk_mess));

  put(unit, "/,2a,/", " REPRESENTATIVE ELEMENTS OF THE LITTLE GROUP OF BRILLOUIN ZONE POINT ",
      label2);
  for (int g = 1; g <= w.order; ++g) {
    const std::string LINE = get_symsymbi(w.SUB[g].rot, to_real(w.SUB[g].tr));
    put(unit, "a,i2,a,a", "  Operator of Gk Number(", g, "): ", trim(LINE));
  }
  if (listing == 1) write_listing_head(unit, w, label2);
  fill_store(unit, w, listing, store);
  w.release_work();
  return status_done;
}

int lorsk(std::string& unit, const Vec3& k, int newk, std::string_view label,
          std::string_view group_text, int listing, bool gen_flag, const std::string* symbol,
          lorsk_proc& store) {
  Lorsk_Work w;
  return lorsk(unit, k, newk, label, group_text, listing, gen_flag, symbol, store, w);
}

}  // namespace velmoria

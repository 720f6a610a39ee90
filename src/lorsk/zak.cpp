// Zak's procedure: from the trivial representation of the identity, up the chain of subgroups
// H -> H' = H + gH (+ g^2 H) of index p = 2 or 3.  A representation of H that g carries into
// itself extends to p representations of H'; an orbit of p representations under g gives one
// induced representation of p times the dimension.
#include "lorsk/zak.hpp"

#include <cmath>

#include "lorsk/unitary.hpp"

namespace velmoria {

VELMORIA_ERROR_PAIR_DEFINITIONS(lorsk, std::string::npos)

namespace {

constexpr float zak_tol = 0.0001f;  // moduli and phases in the conjugation test

// Scratch operators and the conjugation tables of one step.  TMP slot 1 holds g^-1, slot 0
// g^-2, slot 49 g^2, slots 47-j the conjugates of h_j, slot 48 g^p or an intermediate product.
struct Zak_Step {
  Op_Table TMP{};
  Conj_Slots ICSB{};
  Conj_Phases EX{};
  std::array<bool, max_level_reps> RFL{};
  std::array<int, max_index> CON{};
  int s = 0;     // the step, 1 .. NG
  int G = 0;     // slot of the generator g
  int h = 0;     // order of H
  int p = 0;     // index of H in H'
  int L = 0;     // slot of the element of H with the rotation of g^p
  float fg = 0;  // phase of g^p over h_L
  int old = 1;   // level of the representations of H
  int nlev = 2;  // level that receives those of H'
};

void fail(const std::string& what) {
  set_err_lorsk(what);
}

// The last slot of SUB among 1 .. h with the rotation of op, 0 if none.
int find_rotation(const Exact_Op& op, const Op_Table& SUB, int h) {
  int found = 0;
  for (int l = 1; l <= h; ++l) {
    if (SUB[l].rot == op.rot) found = l;
  }
  return found;
}

// Phase of a conjugate over its listed element, in 24ths.  Where it is a whole number of 24ths
// (up to rounding noise) it is rounded to it, as for every vector whose conjugates have whole
// phases.  A vector along a four-fold screw axis of a body- or face-centred lattice,
// k = (0,0,c) with 12c not whole (I41md, I41cd, I41/amd, I41/acd, Fd-3m, Fd-3c, Ia-3d), gives
// conjugates that differ from the listed element by a centring translation, whose phase 12c
// is not whole: that phase is kept as its real value, so that every representation finds its
// partner under g and the sum of the squares of the dimensions stays the order of the group.
float conj_phase(float x) {
  const float whole = static_cast<float>(nint(x));
  return std::fabs(x - whole) < zak_tol ? whole : x;
}

Cplx polar24(float r, float ph) {
  const float angle = ph * TP;
  return {r * std::cos(angle), r * std::sin(angle)};
}

// The slots of the extension step, g^-1, and the conjugation tables of H under g and g^2.
bool set_up_step(const Lorsk_Work& w, Zak_Step& st) {
  const int s = st.s;
  st.G = w.IGB[s + 1];
  st.h = st.G - 1;
  const int order = s == w.NG ? w.N : w.IGB[s + 2] - 1;
  if (st.h < 1 || st.h > max_subgroup_ops || order > w.n_ops || order > max_group_ops) {
    fail("Zak's procedure: subgroup of the chain out of range");
    return false;
  }
  st.p = order / st.h;
  if ((st.p != 2 && st.p != 3) || st.p * st.h != order) {
    fail("Zak's procedure: a subgroup of the chain is not of index 2 or 3");
    return false;
  }
  auto& TMP = st.TMP;
  TMP[1] = inverse(w.SUB[st.G]);
  for (int j = 1; j <= st.h; ++j) {
    st.ICSB[0][j - 1] = j;
    st.EX[0][j - 1] = 0.0f;
  }
  for (int i = 2; i <= st.p; ++i) {
    if (i == 3) {
      matmult(TMP, 1, TMP, 1, TMP, 0);
      matmult(w.SUB, st.G, w.SUB, st.G, TMP, 49);
    }
    for (int j = 1; j <= st.h; ++j) {
      if (i == 2) {
        matmult(w.SUB, j, w.SUB, st.G, TMP, 48);
        matmult(TMP, 1, TMP, 48, TMP, 47 - j);
      } else {
        matmult(TMP, 0, w.SUB, j, TMP, 48);
        matmult(TMP, 48, TMP, 49, TMP, 47 - j);
      }
      const int l = find_rotation(TMP[47 - j], w.SUB, st.h);
      if (l == 0) {
        fail("Zak's procedure: a subgroup of the chain is not invariant");
        return false;
      }
      st.ICSB[i - 1][j - 1] = l;
    }
    for (int j = 1; j <= st.h; ++j) {
      st.EX[i - 1][j - 1] = conj_phase(expon(w.k, TMP, 47 - j, w.SUB, st.ICSB[i - 1][j - 1]));
    }
  }
  // The power g^p that falls back into H, the same for every representation:
  // g^p = (pure translation) h_L.
  matmult(w.SUB, st.G, w.SUB, st.G, TMP, 50 - st.p);
  if (st.p == 3) matmult(w.SUB, st.G, TMP, 47, TMP, 48);
  st.L = find_rotation(TMP[48], w.SUB, st.h);
  if (st.L == 0) {
    fail("Zak's procedure: the power of a generator is not in its subgroup");
    return false;
  }
  st.fg = expon(w.k, TMP, 48, w.SUB, st.L);
  return true;
}

// Whether the conjugate of IR by g^(i-1) equals J on H.
bool conjugate_matches(const Lorsk_Work& w, const Zak_Step& st, int IR, int J, int i, int d) {
  const int count = d > 1 ? st.h : st.s;
  for (int q = 1; q <= count; ++q) {
    const int j = d > 1 ? q : w.IGB[q];
    const int l = st.ICSB[i - 1][j - 1];
    const float m = w.ch1(IR, l, st.old);
    float f = std::fmod(w.ch2(IR, l, st.old) + 24.0f + st.EX[i - 1][j - 1], 24.0f);
    if (std::fabs(m) >= zak_tol) {
      if (24.0f - f < zak_tol) f = 0.0f;
      if (!(std::fabs(m - w.ch1(J, j, st.old)) < zak_tol &&
            std::fabs(f - w.ch2(J, j, st.old)) < zak_tol)) {
        return false;
      }
    } else if (!(std::fabs(m - w.ch1(J, j, st.old)) < zak_tol)) {
      return false;
    }
  }
  return true;
}

// The orbit of IR under conjugation by g; false when some conjugate has no partner.
bool find_orbit(const Lorsk_Work& w, Zak_Step& st, int IR) {
  const int d = w.drep(IR, st.old);
  st.CON = {IR, 0, 0};
  for (int i = 2; i <= st.p; ++i) {
    for (int J = IR; J <= w.NREP[st.old]; ++J) {
      if (w.drep(J, st.old) != d || !conjugate_matches(w, st, IR, J, i, d)) continue;
      st.RFL[J - 1] = false;
      st.CON[i - 1] = J;
    }
    if (st.CON[i - 1] == 0) return false;
  }
  return true;
}

bool new_representation(Lorsk_Work& w, const Zak_Step& st, int dim) {
  if (w.NREP[st.nlev] >= max_level_reps || dim > max_work_dim) {
    fail("Zak's procedure: more than 12 representations or a dimension above 6");
    return false;
  }
  ++w.NREP[st.nlev];
  w.drep(w.NREP[st.nlev], st.nlev) = dim;
  return true;
}

// Extension: the p representations of G that a self-conjugate representation IR of H of
// dimension d extends to.
bool extend(Lorsk_Work& w, const Zak_Step& st, int IR, int d) {
  Unitary_Result u;
  if (d == 1) {
    u.U1[0][0] = 1.0f;
    u.ok = true;
  } else {
    if (d > max_branch_dim) {
      fail("Zak's procedure: a representation above dimension 3 extends");
      return false;
    }
    u = unitrn(w, st.s - 1, d, IR, st.ICSB, st.old, st.p, st.EX);
  }
  const int old = st.old, nl = st.nlev, h = st.h, p = st.p;
  for (int t = 1; t <= p; ++t) {
    if (!new_representation(w, st, d)) return false;
    const int n = w.NREP[nl];
    for (int j = 1; j <= h; ++j) {
      w.ch1(n, j, nl) = w.ch1(IR, j, old);
      w.ch2(n, j, nl) = w.ch2(IR, j, old);
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) {
          w.rep1(a, b, n, j, nl) = w.rep1(a, b, IR, j, old);
          w.rep2(a, b, n, j, nl) = w.rep2(a, b, IR, j, old);
        }
      }
    }
    const float wph =
        (24.0f * static_cast<float>(t - 1) + st.fg - u.phi + w.rep2(u.lm, u.mm, IR, st.L, old)) /
        static_cast<float>(p);
    for (int m = 1; m <= p - 1; ++m) {
      const int base = (m - 1) * h;
      for (int j = 1; j <= h; ++j) {
        const int e = j + m * h;
        const int prev = j + base;
        Cplx trace{0.0f, 0.0f};
        for (int r = 1; r <= d; ++r) {
          for (int c = 1; c <= d; ++c) {
            Cplx sum{0.0f, 0.0f};
            for (int i = 1; i <= d; ++i) {
              sum += polar24(u.U1[r - 1][i - 1] * w.rep1(i, c, n, prev, nl),
                             w.rep2(i, c, n, prev, nl) + u.U2[r - 1][i - 1] + wph);
            }
            if (r == c) trace += sum;
            decmpl(sum, w.rep1(r, c, n, e, nl), w.rep2(r, c, n, e, nl));
          }
        }
        decmpl(trace, w.ch1(n, e, nl), w.ch2(n, e, nl));
      }
    }
  }
  return true;
}

// Induction: the representation of G induced from IR of dimension d, of dimension p d.
bool induce(Lorsk_Work& w, const Zak_Step& st, int IR, int d) {
  const int old = st.old, nl = st.nlev, h = st.h, p = st.p, pd = p * d;
  if (d > max_branch_dim || !new_representation(w, st, pd)) {
    if (!err_lorsk) fail("Zak's procedure: a representation above dimension 3 induces");
    return false;
  }
  const int n = w.NREP[nl];
  std::array<std::array<Cplx, max_branch_dim>, max_branch_dim> C11{};
  for (int a = 1; a <= d; ++a) {
    for (int b = 1; b <= d; ++b) {
      C11[a - 1][b - 1] = polar24(w.rep1(a, b, IR, st.L, old), w.rep2(a, b, IR, st.L, old) + st.fg);
    }
  }
  for (int j = 1; j <= h; ++j) {
    for (int a = 1; a <= pd; ++a) {
      for (int b = 1; b <= pd; ++b) {
        w.rep1(a, b, n, j, nl) = 0.0f;
        w.rep2(a, b, n, j, nl) = 0.0f;
      }
    }
    Cplx trace{0.0f, 0.0f};
    for (int u = 0; u < p; ++u) {
      const int l = st.ICSB[u][j - 1];
      const float ex = st.EX[u][j - 1];
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) {
          const float r1 = w.rep1(a, b, IR, l, old);
          const float r2 = std::fmod(w.rep2(a, b, IR, l, old) + 24.0f + ex, 24.0f);
          w.rep1(a + u * d, b + u * d, n, j, nl) = r1;
          w.rep2(a + u * d, b + u * d, n, j, nl) = r2;
          if (a == b) trace += polar24(r1, r2);
        }
      }
    }
    decmpl(trace, w.ch1(n, j, nl), w.ch2(n, j, nl));
  }
  for (int m = 1; m <= p - 1; ++m) {
    for (int j = 1; j <= h; ++j) {
      const int e = j + m * h;
      const int prev = j + (m - 1) * h;
      w.ch1(n, e, nl) = 0.0f;
      w.ch2(n, e, nl) = 0.0f;
      for (int u = 1; u <= p; ++u) {
        const int from = (u - 1) * d;
        const int to = (u % p) * d;
        for (int v = 0; v < p; ++v) {
          const int col = v * d;
          for (int a = 1; a <= d; ++a) {
            for (int c = 1; c <= d; ++c) {
              if (u % p != 0) {
                w.rep1(to + a, col + c, n, e, nl) = w.rep1(from + a, col + c, n, prev, nl);
                w.rep2(to + a, col + c, n, e, nl) = w.rep2(from + a, col + c, n, prev, nl);
                continue;
              }
              Cplx sum{0.0f, 0.0f};
              for (int z = 1; z <= d; ++z) {
                sum += C11[a - 1][z - 1] * polar24(w.rep1(from + z, col + c, n, prev, nl),
                                                   w.rep2(from + z, col + c, n, prev, nl));
              }
              decmpl(sum, w.rep1(to + a, col + c, n, e, nl), w.rep2(to + a, col + c, n, e, nl));
            }
          }
        }
      }
    }
  }
  return true;
}

// One step of the chain: the representations of H' at level nlev from those of H at old.
bool zak_step(Lorsk_Work& w, Zak_Step& st) {
  w.NREP[st.nlev] = 0;
  if (!set_up_step(w, st)) return false;
  const int nold = w.NREP[st.old];
  if (nold < 1 || nold > max_level_reps) {
    fail("Zak's procedure: number of representations out of range");
    return false;
  }
  for (int IR = 1; IR <= nold; ++IR) st.RFL[IR - 1] = true;
  for (int IR = 1; IR <= nold; ++IR) {
    if (!st.RFL[IR - 1]) continue;
    const int d = w.drep(IR, st.old);
    // Every conjugate of an irreducible representation is one of the list; should one find
    // no partner, the failure is reported and the orbit is taken as an induction.
    if (!find_orbit(w, st, IR)) {
      fail("Zak's procedure: a conjugate representation has no partner");
    }
    const bool ok = st.CON[1] == IR ? extend(w, st, IR, d) : induce(w, st, IR, d);
    if (!ok) return false;
  }
  return true;
}

}  // namespace

void matmult(const Op_Table& A, int i, const Op_Table& B, int j, Op_Table& C, int l) {
  C[l] = A[i] * B[j];
}

float expon(const Vec3& k, const Op_Table& A, int i, const Op_Table& B, int j) {
  float x = 0.0f;
  for (int c = 0; c < 3; ++c) x += static_cast<float>(A[i].tr[c] - B[j].tr[c]) * k[c];
  x = std::fmod(x, 24.0f);
  if (x < 0.0f) x += 24.0f;
  if (24.0f - x < zak_tol) x = 0.0f;
  return x;
}

void decmpl(std::complex<float> z, float& r, float& phi) {
  const float a = z.real();
  const float b = z.imag();
  r = std::sqrt(a * a + b * b);
  if (r == 0.0f) {
    phi = 0.0f;
    return;
  }
  // When a^2 + b^2 falls in the subnormal range, r can come out below |a|: the cosine is held
  // to the range of the inverse cosine, so that a number on the real axis keeps the phase 0 or
  // 12 exactly.
  float c = a / r;
  if (c > 1.0f) c = 1.0f;
  if (c < -1.0f) c = -1.0f;
  phi = std::fmod(std::acos(c) / TP + 24.0f, 24.0f);
  // The inverse cosine gives the phase up to its sign, which the imaginary part decides.  An
  // imaginary part within rounding noise of zero (1.0e-5 of the modulus) keeps the phase from
  // 0 to 12, so that a number on the positive real axis keeps 0 and does not become 24.  A
  // fixed tolerance on r sin(phi) - b would keep the wrong sign of every small negative phase
  // (a modulus near 1 and a phase above 23.8), which a vector on a line of symmetry with a
  // screw axis (P 61 at (0,0,g)) produces.  With an imaginary part above 0.05 in magnitude
  // both tests agree.
  if (b < -1.0e-5f * r) phi = 24.0f - phi;
  if (24.0f - phi < zak_tol) phi = 0.0f;
}

void zak(Lorsk_Work& w) {
  if (w.n_ops < 1) {
    fail("Zak's procedure: the work arrays are not created");
    w.order = 1;
    return;
  }
  w.drep(1, 1) = 1;
  w.ch1(1, 1, 1) = 1.0f;
  w.ch2(1, 1, 1) = 0.0f;
  w.NREP[1] = 1;
  w.Z1 = 1;
  if (w.ONGB == 0) {
    w.NREP[1] = 1;
    w.order = 1;
    return;
  }
  if (w.NG < 1 || w.NG + 1 > max_chain || w.N < 1 || w.N > max_group_ops) {
    fail("Zak's procedure: chain of subgroups out of range");
    w.order = 1;
    return;
  }
  Zak_Step st;
  w.order = 1;
  for (int s = 1; s <= w.NG; ++s) {
    st.s = s;
    st.old = w.Z1;
    st.nlev = w.Z1 % 2 + 1;
    if (!zak_step(w, st)) return;
    w.order = st.p * st.h;
    w.Z1 = w.Z1 % 2 + 1;
  }
}

}  // namespace velmoria

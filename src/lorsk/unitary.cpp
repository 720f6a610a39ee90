// The intertwining matrix U of a self-conjugate representation, from the null vector of
// X D(g^-1 h g) - D(h) X = 0 over the generators h of H.
#include "lorsk/unitary.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "support/layout.hpp"

namespace velmoria {

namespace {

// A part of magnitude below the tolerance becomes 0.
Cplx flush(Cplx z) {
  float re = z.real();
  float im = z.imag();
  if (std::fabs(re) < unitary_tol) re = 0.0f;
  if (std::fabs(im) < unitary_tol) im = 0.0f;
  return {re, im};
}

// Modulus formed in double precision from the single-precision parts.
double dabs(Cplx z) {
  const double re = z.real();
  const double im = z.imag();
  return std::sqrt(re * re + im * im);
}

// Complex reciprocal worked out in double precision and rounded to single.
Cplx reciprocal(Cplx z) {
  const double re = z.real();
  const double im = z.imag();
  const double den = re * re + im * im;
  return {static_cast<float>(re / den), static_cast<float>(-im / den)};
}

// Element of modulus r and phase ph (24ths), parts below the tolerance flushed.
Cplx polar24(float r, float ph) {
  const float angle = ph * TP;
  return flush({r * std::cos(angle), r * std::sin(angle)});
}

Cmat3 cmat_product(const Cmat3& x, const Cmat3& y, int d) {
  Cmat3 r{};
  for (int a = 0; a < d; ++a) {
    for (int b = 0; b < d; ++b) {
      Cplx sum{0.0f, 0.0f};
      for (int q = 0; q < d; ++q) sum += x[a][q] * y[q][b];
      r[a][b] = sum;
    }
  }
  return r;
}

// The equations X D1(n) - D2(n) X = 0 of every generator n of H, in s.A.
void set_up_system(const Lorsk_Work& w, int ng, int d, int IR, const Conj_Slots& ICSB, int z,
                   const Conj_Phases& EX, Unitary_System& s) {
  const int nn = d * d;
  s = Unitary_System{};
  s.nn = nn;
  s.mm = nn * ng;
  for (int n = 1; n <= ng; ++n) {
    const int h = w.IGB[n + 1];
    const int l = ICSB[1][h - 1];
    const float e = EX[1][h - 1];
    Cmat3 D1{};
    Cmat3 D2{};
    for (int a = 1; a <= d; ++a) {
      for (int b = 1; b <= d; ++b) {
        D1[a - 1][b - 1] =
            polar24(w.rep1(a, b, IR, l, z), std::fmod(w.rep2(a, b, IR, l, z) + e + 24.0f, 24.0f));
        D2[a - 1][b - 1] = polar24(w.rep1(a, b, IR, h, z), w.rep2(a, b, IR, h, z));
      }
    }
    for (int a = 1; a <= d; ++a) {
      for (int b = 1; b <= d; ++b) {
        auto& row = s.A[(n - 1) * nn + (a - 1) * d + b - 1];
        for (int q = 1; q <= d; ++q) {
          row[(a - 1) * d + q - 1] += D1[q - 1][b - 1];
          row[(q - 1) * d + b - 1] -= D2[a - 1][q - 1];
        }
      }
    }
  }
}

void fail(Unitary_Result& out, int d, const std::string& what) {
  set_err_lorsk(what);
  out = Unitary_Result{};
  for (int a = 0; a < d; ++a) out.U1[a][a] = 1.0f;
}

}  // namespace

void gausz(Unitary_System& s) {
  const int mm = s.mm;
  const int nn = s.nn;
  auto& A = s.A;
  std::array<double, max_equations> B{};
  for (int i = 0; i < mm; ++i) {
    double big = 0.0;
    for (int j = 0; j < nn; ++j) big = std::max(big, dabs(A[i][j]));
    B[i] = big != 0.0 ? 1.0 / big : 1.0;
  }
  int K = 0;
  for (int c = 0; c < nn; ++c) {
    int piv = -1;
    double best = 0.0;
    for (int i = K; i < mm; ++i) {
      const double v = dabs(A[i][c]) * B[i];
      if (piv < 0 || v > best) {
        piv = i;
        best = v;
      }
    }
    if (piv < 0 || best < unitary_tol) continue;
    s.Q[K] = c + 1;
    if (piv != K) {
      std::swap(B[K], B[piv]);
      for (int j = c; j < nn; ++j) std::swap(A[K][j], A[piv][j]);
    }
    const Cplx rc = reciprocal(A[K][c]);
    for (int j = c; j < nn; ++j) A[K][j] *= rc;
    for (int i = K + 1; i < mm; ++i) {
      for (int j = nn - 1; j >= c; --j) A[i][j] = flush(A[i][j] - A[i][c] * A[K][j]);
    }
    ++K;
  }
  s.K = K;
  s.Z.fill(0);
  for (int q = 0; q < K; ++q) s.Z[s.Q[q] - 1] = 1;
  // Back substitution: clear the pivot columns above their pivots, free columns updated.
  for (int k = K; k >= 2; --k) {
    const int c = s.Q[k - 1];
    for (int j = c + 1; j <= nn; ++j) {
      if (s.Z[j - 1] != 0) continue;
      for (int i = k - 1; i >= 1; --i) {
        A[i - 1][j - 1] = flush(A[i - 1][j - 1] - A[i - 1][c - 1] * A[k - 1][j - 1]);
      }
    }
    for (int i = 1; i <= k - 1; ++i) A[i - 1][c - 1] = Cplx{0.0f, 0.0f};
  }
}

Null_Vectors getout(const Unitary_System& s) {
  Null_Vectors nv;
  nv.nfree = s.nn - s.K;
  int np = 0;
  for (int j = 1; j <= s.nn; ++j) {
    if (s.Z[j - 1] == 0) nv.P[np++] = j;
  }
  for (int v = 1; v <= nv.nfree; ++v) {
    nv.B[nv.P[v - 1] - 1][v - 1] = Cplx{-1.0f, 0.0f};
    for (int k = 1; k <= s.K; ++k) nv.B[s.Q[k - 1] - 1][v - 1] = s.A[k - 1][nv.P[v - 1] - 1];
  }
  return nv;
}

Unitary_Result unitrn(const Lorsk_Work& w, int ng, int d, int IR, const Conj_Slots& ICSB, int z,
                      int p, const Conj_Phases& EX) {
  Unitary_Result out;
  if (d < 1 || d > max_unitary_dim || ng < 1 || ng > max_unitary_gens || p < 1 || p > max_index) {
    fail(out, std::max(1, std::min(d, max_unitary_dim)),
         "Intertwining matrix: dimension, generators or index out of range");
    return out;
  }
  Unitary_System s;
  set_up_system(w, ng, d, IR, ICSB, z, EX, s);
  gausz(s);
  const Null_Vectors nv = getout(s);
  if (nv.nfree < 1) {
    fail(out, d, "Intertwining matrix not found: the system has no free column");
    return out;
  }
  // With several free columns the representation was not irreducible: the first null vector
  // is used as for one, and the failure is reported.
  if (nv.nfree > 1) {
    set_err_lorsk("Intertwining matrix not unique: the system has " + sput("i1", nv.nfree) +
                  " free columns");
  }
  float f = 0.0f;
  for (int c = 0; c < d; ++c) f += std::norm(nv.B[c][0]);
  f = std::sqrt(f);
  if (f < unitary_tol) f = 1.0f;
  Cmat3 U{};
  for (int a = 0; a < d; ++a) {
    for (int b = 0; b < d; ++b) U[a][b] = nv.B[a * d + b][0] / f;
  }
  Cmat3 Up = U;
  for (int t = 1; t <= p - 1; ++t) Up = cmat_product(U, Up, d);
  bool found = false;
  for (int a = 0; a < d && !found; ++a) {
    for (int b = 0; b < d && !found; ++b) {
      if (Up[a][b].real() != 0.0f || Up[a][b].imag() != 0.0f) {
        out.lm = a + 1;
        out.mm = b + 1;
        found = true;
      }
    }
  }
  if (!found) {
    fail(out, d, "Intertwining matrix: its power U^p vanishes");
    return out;
  }
  float r = 0.0f;
  decmpl(Up[out.lm - 1][out.mm - 1], r, out.phi);
  for (int a = 0; a < d; ++a) {
    for (int b = 0; b < d; ++b) decmpl(U[a][b], out.U1[a][b], out.U2[a][b]);
  }
  out.ok = nv.nfree == 1;
  return out;
}

}  // namespace velmoria

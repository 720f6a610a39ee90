// The work data of the little-group package, shared by the group preparation, Zak's
// induction and the driver `lorsk`.  One Lorsk_Work lives for one call of `lorsk`.
//
// Operators are exact operators: the integer rotation and the translation in 24ths of a cell
// edge, not reduced, so that a product keeps the lattice translation it picks up.  A table of
// operators has slots 0 to 49, indexed directly by the slot number: SUB[s] is the operator in
// slot s (slot 1 the identity; 0, 48, 49 free for scratch).
//
// Index conventions.  The small integer lists IGB, IGP and NREP are indexed directly by their
// 1-based index (entry 0 unused): IGB[1] = 1, IGB[i+1] = slot of generator i.  The work arrays
// rep1, rep2, ch1, ch2, drep are reached through accessors with the 1-based indices
//   rep1(a,b,nu,g,z), rep2(a,b,nu,g,z)  a,b row/column 1..6, nu 1..12, g 1..n_ops, z level 1..2
//   ch1(nu,g,z), ch2(nu,g,z), drep(nu,z)
// rep1/ch1 are moduli, rep2/ch2 phases in 24ths of a full turn.
//
// Who fills what:
//   space_group    SUP, order (= order of SUP), nsup, IGP, ngen_sup, BL
//   little_group   SUB (little group in chain order), N, NG, IGB, ONGB
//   zak            reads k, SUB, IGB, NG, N, ONGB; writes order (order reached), Z1, NREP and
//                  the work arrays at both levels
//   lorsk          creates and clears the work arrays (create_work), sets rep1(1,1,1,1,1) = 1
//                  and SUB slot 1 = the identity before the rest.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <string>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/exact_operator.hpp"

namespace velmoria {

constexpr int op_slots = 50;        // slots 0 .. 49 of an operator table
constexpr int max_group_ops = 48;   // operators of a group without centring
constexpr int max_work_dim = 6;     // dimension of a representation during the induction
constexpr int max_level_reps = 12;  // representations at one level
constexpr int max_chain = 8;        // entries of IGB and IGP
constexpr float TP = 0.2617994f;    // radians per 24th of a full turn

using Op_Table = std::array<Exact_Op, op_slots>;

struct Lorsk_Work {
  // Group preparation.
  Op_Table SUP{};                        // space group without centring, slots 1..nsup
  Op_Table SUB{};                        // little group in chain order, slots 1..N
  std::array<int, max_chain + 1> IGB{};  // IGB[1] = 1, IGB[i+1] = slot in SUB of generator i
  std::array<int, max_chain + 1> IGP{};  // IGP[i] = slot in SUP where generator i was placed
  std::string BL = "  ";                 // lattice symbol (2 characters)
  int ONGB = 0;                          // generators of the little group as found, 0 if trivial
  int NG = 0;                            // generators of the chain handed to zak (1 if trivial)
  int N = 0;                             // order of the little group (entries kept by little_group)
  int nsup = 0;                          // order of SUP as built by space_group
  int ngen_sup = 0;                      // generators of the space group
  int order = 0;                         // order of SUP after space_group; order reached after zak
  Vec3 k{};                              // the propagation vector

  // Zak's procedure.
  std::array<int, 3> NREP{};  // NREP[z], z = 1, 2: representations at level z
  int Z1 = 1;                 // the level that holds the result

  // Work arrays of the induction, sized for n_ops operators by create_work.
  int n_ops = 0;
  std::vector<float> rep1_v, rep2_v, ch1_v, ch2_v;
  std::vector<int> drep_v;

  // Zero-filled work arrays for up to ops operators (ops <= 48).
  void create_work(int ops) {
    assert(ops >= 1 && ops <= max_group_ops);
    n_ops = ops;
    const std::size_t elements =
        static_cast<std::size_t>(max_work_dim) * max_work_dim * max_level_reps * ops * 2;
    rep1_v.assign(elements, 0.0f);
    rep2_v.assign(elements, 0.0f);
    ch1_v.assign(static_cast<std::size_t>(max_level_reps) * ops * 2, 0.0f);
    ch2_v.assign(static_cast<std::size_t>(max_level_reps) * ops * 2, 0.0f);
    drep_v.assign(static_cast<std::size_t>(max_level_reps) * 2, 0);
  }
  void release_work() {
    n_ops = 0;
    rep1_v = {};
    rep2_v = {};
    ch1_v = {};
    ch2_v = {};
    drep_v = {};
  }

  std::size_t element(int a, int b, int nu, int g, int z) const {
    assert(a >= 1 && a <= max_work_dim && b >= 1 && b <= max_work_dim && nu >= 1 &&
           nu <= max_level_reps && g >= 1 && g <= n_ops && z >= 1 && z <= 2);
    return (((static_cast<std::size_t>(z - 1) * n_ops + (g - 1)) * max_level_reps + (nu - 1)) *
                max_work_dim +
            (b - 1)) *
               max_work_dim +
           (a - 1);
  }
  std::size_t character(int nu, int g, int z) const {
    assert(nu >= 1 && nu <= max_level_reps && g >= 1 && g <= n_ops && z >= 1 && z <= 2);
    return (static_cast<std::size_t>(z - 1) * n_ops + (g - 1)) * max_level_reps + (nu - 1);
  }
  float& rep1(int a, int b, int nu, int g, int z) { return rep1_v[element(a, b, nu, g, z)]; }
  float rep1(int a, int b, int nu, int g, int z) const { return rep1_v[element(a, b, nu, g, z)]; }
  float& rep2(int a, int b, int nu, int g, int z) { return rep2_v[element(a, b, nu, g, z)]; }
  float rep2(int a, int b, int nu, int g, int z) const { return rep2_v[element(a, b, nu, g, z)]; }
  float& ch1(int nu, int g, int z) { return ch1_v[character(nu, g, z)]; }
  float ch1(int nu, int g, int z) const { return ch1_v[character(nu, g, z)]; }
  float& ch2(int nu, int g, int z) { return ch2_v[character(nu, g, z)]; }
  float ch2(int nu, int g, int z) const { return ch2_v[character(nu, g, z)]; }
  int& drep(int nu, int z) {
    assert(nu >= 1 && nu <= max_level_reps && z >= 1 && z <= 2);
    return drep_v[static_cast<std::size_t>(z - 1) * max_level_reps + (nu - 1)];
  }
  int drep(int nu, int z) const {
    assert(nu >= 1 && nu <= max_level_reps && z >= 1 && z <= 2);
    return drep_v[static_cast<std::size_t>(z - 1) * max_level_reps + (nu - 1)];
  }
};

}  // namespace velmoria

// Preparation of the groups for Zak's induction: the space group as exact operators in 24ths
// (SUP), the little group of k in the order of a chain of normal subgroups of
// index 2 or 3 (SUB), and the slots where that chain grows (IGB).
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "lorsk/work.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

constexpr int max_generator_pieces = 8;  // pieces of a generator list ("g1; g2; ...")
constexpr int max_space_generators = 5;  // entries of GENERA

// Status of the group preparation.
constexpr int status_done = 0;
constexpr int status_not_determined = 1;  // the generators give no complete space group
constexpr int status_setup_failed = 2;    // set_spacegroup failed: err_symm, err_symm_mess

// The group made from g and the group H held in slots 1 .. start-1 of `table`; `next` enters
// equal to `start` and leaves one past the last slot filled.  The cosets g^m H go to slots
// j + m (start-1).  False when the table would overflow its slots (no crystallographic
// group of up to 48 operators does that).
bool closure(Op_Table& table, const Exact_Op& g, int& next, int start);

// The closure above with entry m of `tmp` as the new generator of `sub`.
bool gener(const Op_Table& tmp, int m, Op_Table& sub, int& next, int start);

// Fills `spg` from the group text (a list of generators with gen_flag, the tabulated
// `symbol` in mode ITC when given, otherwise the text read as a forced Hall symbol), writes
// its listing and the generators on `unit`, and gives them as operators in GENERA.
// Returns a status as above.
int get_generatorsk(std::string& unit, std::string_view group_text, bool gen_flag,
                    const std::string* symbol, Space_Group_Type& spg,
                    std::array<Exact_Op, max_space_generators>& GENERA, int& ngenera, int& NUM);

// The space group without centring translations: w.SUP in closure order, w.order = w.nsup,
// w.IGP, w.ngen_sup; spg filled; the list of coset representatives written unless newk is 1.
int space_group(std::string& unit, Lorsk_Work& w, Space_Group_Type& spg,
                std::string_view group_text, int newk, bool gen_flag, const std::string* symbol);

// The little group of w.k from w.SUP(1 .. w.order), in chain order: w.SUB, w.N, w.NG, w.IGB,
// w.ONGB; the generators are written on `unit`.  w.BL (upper case) and w.SUB slot 1 (the
// unit operator) must be set.  False when the chain does not reach the whole little group.
bool little_group(std::string& unit, Lorsk_Work& w, std::string_view label);

}  // namespace velmoria

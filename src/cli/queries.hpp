// Look-ups for users from the command line: the listing of a space group, and the irreducible
// representations of the little group of a propagation vector.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace velmoria {

// velmoria --group TEXT | --group --gen "g1; g2; ...": the full listing of the group on
// `out`; on failure the setup's message on `err` and status 1.  With --json among the
// arguments, the group's JSON document instead of the listing.
int query_group(std::vector<std::string> args, std::ostream& out, std::ostream& err);

// velmoria --irreps TEXT kx ky kz [label] | --irreps --gen "g1; ..." kx ky kz [label]: the
// group listing, the little group of k, its generators and representative elements, and every
// matrix of every irreducible representation on `out`.  With --block last, behind them the
// lines SPGR, KVEC and LITTLE_GROUP that give the same representations to a control file.  TEXT
// goes the way of an SPGR line: a tabulated symbol or number with the generators of the tables, any
// other text as a Hall symbol.  k components are numbers or fractions p/q, rounded to fractions as
// a KVEC line rounds them.  On failure a message on `err` and status 1.  With --json among the
// arguments, the JSON document of the look-up instead of the listing (--block is then refused).
int query_irreps(std::vector<std::string> args, std::ostream& out, std::ostream& err);

}  // namespace velmoria

#pragma once

#include <string>
#include <vector>

#include "import/source_grid.h"

namespace zenvora::importing {

/// A mapping that the program proposes.
struct ProposedMapping {
    std::string source;       ///< a field of the source, or several joined: "Street Number + Street Name"
    std::string destination;  ///< caption of a destination field
};

struct SuggestedMap {
    std::vector<ProposedMapping> mappings;  ///< in the order of the destination fields
    std::vector<std::string> notes;         ///< what the user should look at, a sentence each
};

/// Proposes mappings from the names of a source's fields (row 0 of the grid) and from its values, which break
/// ties and rule out a field whose values do not go into its destination.
///
/// `mapped` are the rows of the user's own mappings: their sources and destinations are left alone. A source
/// field is proposed once, for one that is mapped twice loads into one destination only: a file with one list
/// price or one list date has it mapped to the original one, from which the validity run fills the current
/// one. Days on market are proposed where there is no listing date, for the store does not take both.
/// `currentYear` completes dates without a year. Faults: none.
[[nodiscard]] SuggestedMap SuggestMap(const SourceGrid& grid, const std::vector<std::string>& mapped,
                                      int currentYear);

}  // namespace zenvora::importing

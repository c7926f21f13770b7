#pragma once

#include <vector>

namespace zenvora::analysis {

/// Sorts numbers ascending. Whole numbers that lie within 2^32 of each other, as days and prices do, are
/// sorted in linear time; a million of them must not hold up a calculation. No number may be a NaN. Faults:
/// none.
void SortNumbers(std::vector<double>& numbers);

}  // namespace zenvora::analysis

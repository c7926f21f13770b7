#include "analysis/number_sort.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zenvora::analysis {
namespace {

constexpr unsigned kDigitBits = 11;  // 2048 counters of 4 bytes stay in the first-level cache
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
constexpr std::size_t kSmall = 256;  // below this the counters cost more than they save

/// The distances from the lowest number, or nothing when they do not all fit.
bool Distances(const std::vector<double>& numbers, double lowest, std::vector<std::uint32_t>& distances) {
    distances.resize(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const double distance = numbers[i] - lowest;
        if (std::trunc(numbers[i]) != numbers[i] || distance > 4294967295.0) return false;
        distances[i] = static_cast<std::uint32_t>(distance);
    }
    return true;
}

/// One pass of a radix sort by the digit at `shift`.
void SortByDigit(const std::vector<std::uint32_t>& from, std::vector<std::uint32_t>& to, unsigned shift) {
    std::array<std::uint32_t, kDigitValues + 1> starts{};
    for (const std::uint32_t value : from)
        ++starts[((value >> shift) & (kDigitValues - 1)) + 1];
    for (std::size_t digit = 1; digit <= kDigitValues; ++digit)
        starts[digit] += starts[digit - 1];
    for (const std::uint32_t value : from)
        to[starts[(value >> shift) & (kDigitValues - 1)]++] = value;
}

}  // namespace

void SortNumbers(std::vector<double>& numbers) {
    if (numbers.empty()) return;
    const auto [low, high] = std::minmax_element(numbers.begin(), numbers.end());
    const double lowest = *low;
    const double range = *high - lowest;
    // Beyond 2^53 two whole numbers may not tell their distance exactly.
    const bool exact = std::fabs(lowest) <= 9007199254740992.0 && std::fabs(*high) <= 9007199254740992.0;
    std::vector<std::uint32_t> distances;
    if (numbers.size() < kSmall || !exact || !Distances(numbers, lowest, distances)) {
        std::sort(numbers.begin(), numbers.end());
        return;
    }
    std::vector<std::uint32_t> scratch(distances.size());
    for (unsigned shift = 0; shift < 32 && range >= static_cast<double>(std::uint64_t{1} << shift);
         shift += kDigitBits) {
        SortByDigit(distances, scratch, shift);
        distances.swap(scratch);
    }
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = lowest + distances[i];
}

}  // namespace zenvora::analysis

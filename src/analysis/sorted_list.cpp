#include "analysis/sorted_list.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/number_sort.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {
namespace {

/// The number whose plain text this is, nothing when the text has another form ("$5", "007", "1,000").
std::optional<double> PlainNumber(std::string_view text) {
    const std::optional<double> value = text::NumericValue(text);
    if (!value || text::DoubleText(*value) != text) return std::nullopt;
    return value;
}

/// True when DoubleText of the number has all its digits, so that it need not be read back from its text.
bool IsPlainWhole(double number) {
    return std::fabs(number) < 1e15 && std::trunc(number) == number && !(number == 0 && std::signbit(number));
}

}  // namespace

int SortedList::ListCount() const noexcept {
    return static_cast<int>(plain_ ? numbers_.size() : texts_.size());
}

void SortedList::CheckPlace(int index) const {
    if (index < 0 || index >= ListCount()) {
        throw Fault{fault::kSubscript,
                    "The list " + Name() + " has no entry at place " + std::to_string(index) + "."};
    }
}

std::string SortedList::List(int index) const {
    CheckPlace(index);
    const auto place = static_cast<std::size_t>(index);
    return plain_ ? text::DoubleText(numbers_[place]) : texts_[place];
}

std::optional<double> SortedList::Number(int index) const {
    CheckPlace(index);
    const auto place = static_cast<std::size_t>(index);
    return plain_ ? numbers_[place] : text::NumericValue(texts_[place]);
}

std::optional<std::span<const double>> SortedList::Numbers() const {
    if (!plain_) return std::nullopt;
    return std::span<const double>{numbers_};
}

void SortedList::Clear() {
    const bool wasEmpty = ListCount() == 0;
    plain_ = true;
    numbers_.clear();
    texts_.clear();
    if (!wasEmpty) TellViews(controls::Property::Items);
}

void SortedList::TurnIntoTexts() {
    texts_.reserve(numbers_.size() + 1);
    for (const double number : numbers_)
        texts_.push_back(text::DoubleText(number));
    numbers_ = {};
    plain_ = false;
}

void SortedList::InsertText(std::string text) {
    const std::optional<double> value = text::NumericValue(text);
    const auto goesBehind = [&](const std::string& entry) {
        if (value) {
            if (const auto entryValue = text::NumericValue(entry)) return *entryValue <= *value;
        }
        return !(text < entry);
    };
    // The first entry that is greater, not the partition point: a list of numbers and other texts has no
    // order that a binary search could rely on.
    const auto place = std::find_if_not(texts_.begin(), texts_.end(), goesBehind);
    texts_.insert(place, std::move(text));
}

void AddToSortedList(SortedList& list, std::string_view text) {
    const std::string_view trimmed = text::TrimView(text);
    const std::optional<double> number = list.plain_ ? PlainNumber(trimmed) : std::nullopt;
    if (number) {
        list.numbers_.insert(std::upper_bound(list.numbers_.begin(), list.numbers_.end(), *number), *number);
    } else {
        if (list.plain_) list.TurnIntoTexts();
        list.InsertText(std::string(trimmed));
    }
    list.TellViews(controls::Property::Items);
}

void AddNumbersToSortedList(SortedList& list, std::span<const double> numbers) {
    std::vector<double> plain;
    plain.reserve(numbers.size());
    for (const double number : numbers) {
        // What counts is the value of the text, which has 15 digits at most.
        const auto value =
            IsPlainWhole(number) ? std::optional<double>(number) : PlainNumber(text::DoubleText(number));
        if (!list.plain_ || !value) {
            for (const double each : numbers)
                AddToSortedList(list, text::DoubleText(each));
            return;
        }
        plain.push_back(*value);
    }
    if (plain.empty()) return;
    // Equal numbers have equal texts here, so it does not show which of them came first.
    if (list.numbers_.empty()) {
        list.numbers_ = std::move(plain);
    } else {
        list.numbers_.insert(list.numbers_.end(), plain.begin(), plain.end());
    }
    SortNumbers(list.numbers_);
    list.TellViews(controls::Property::Items);
}

}  // namespace zenvora::analysis

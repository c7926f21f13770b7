#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls/list_box.h"

namespace zenvora::analysis {

/// A statistics list: entries are texts, ascending by their value. Filled by AddToSortedList and
/// AddNumbersToSortedList alone, which keeps it sorted.
///
/// An entry that is the plain text of a number, as those of the calculation pass are, is kept as that number
/// and costs eight bytes. The first other entry turns the whole list into texts.
class SortedList final : public controls::ListControl {
  public:
    using ListControl::ListControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "LISTBOX"; }

    [[nodiscard]] int ListCount() const noexcept override;
    [[nodiscard]] std::string List(int index) const override;
    /// The number that an entry stands for, nothing for one that is not numeric. Fault 9: no such place.
    [[nodiscard]] std::optional<double> Number(int index) const;
    /// All entries as numbers, or nothing when the list holds texts.
    [[nodiscard]] std::optional<std::span<const double>> Numbers() const;
    void Clear();

  private:
    friend void AddToSortedList(SortedList& list, std::string_view text);
    friend void AddNumbersToSortedList(SortedList& list, std::span<const double> numbers);

    void CheckPlace(int index) const;
    void InsertText(std::string text);
    void TurnIntoTexts();

    bool plain_ = true;  ///< all entries are in numbers_, else all are in texts_
    std::vector<double> numbers_;
    std::vector<std::string> texts_;
};

/// Adds the trimmed text at its place. It is compared with the entries from the first one on: by value when
/// both are numeric, else by the codes of the characters; it goes in front of the first entry that is
/// greater, so behind its equals. In a list that mixes numbers and other texts this order depends on the
/// order of adding. Faults: none.
void AddToSortedList(SortedList& list, std::string_view text);

/// The same list as AddToSortedList gives for the text of each number in turn, at the cost of one sort.
/// Faults: none.
void AddNumbersToSortedList(SortedList& list, std::span<const double> numbers);

}  // namespace zenvora::analysis

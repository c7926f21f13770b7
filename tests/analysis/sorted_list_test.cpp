#include "analysis/sorted_list.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "analysis/number_sort.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {
namespace {

using Texts = std::vector<std::string>;

Texts Entries(const SortedList& list) {
    Texts entries;
    for (int index = 0; index < list.ListCount(); ++index)
        entries.push_back(list.List(index));
    return entries;
}

Texts Sorted(const Texts& added) {
    SortedList list{"lstData", 0};
    for (const std::string& text : added)
        AddToSortedList(list, text);
    return Entries(list);
}

struct Case {
    const char* name;
    Texts added;
    Texts entries;
};

class Insertion : public testing::TestWithParam<Case> {};

TEST_P(Insertion, GoesInFrontOfTheFirstGreaterEntry) {
    EXPECT_EQ(Sorted(GetParam().added), GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Insertion,
    testing::Values(Case{"ByValueAndNotByText", {"100", "9", "20"}, {"9", "20", "100"}},
                    Case{"AtTheEnd", {"1", "2", "3"}, {"1", "2", "3"}},
                    Case{"AtTheFront", {"3", "2", "1"}, {"1", "2", "3"}},
                    Case{"Trimmed", {"  7 ", "5"}, {"5", "7"}},
                    Case{"NegativeAndFraction", {"0", "-1.5", "0.25", "-2"}, {"-2", "-1.5", "0", "0.25"}},
                    // Equal values go behind those already there, told apart by their texts.
                    Case{
                        "EqualsKeepTheirOrder", {"5", "$5", "05", "5.0", "4"}, {"4", "5", "$5", "05", "5.0"}},
                    Case{"EqualsInFrontOfGreater", {"5", "6", "$5", "$6"}, {"5", "$5", "6", "$6"}},
                    Case{"GroupedNumbersAreNumbers", {"1,000", "200"}, {"200", "1,000"}},
                    Case{"OtherTextsByCharacter", {"pear", "Pear", "apple"}, {"Pear", "apple", "pear"}},
                    Case{"EqualTexts", {"b", "a", "b"}, {"a", "b", "b"}},
                    // A number and another text compare as texts: "100" and "20" sort before "abc".
                    Case{"MixedByText", {"100", "abc", "20"}, {"20", "100", "abc"}},
                    // 30 goes before "abc" by text, and 4 before 30 by value, though "4" is the greater text.
                    Case{"MixedNumbersByValue", {"abc", "30", "4"}, {"4", "30", "abc"}},
                    // "!" sorts before the digits, so 5 goes behind it, and 3 in front of 5.
                    Case{"MixedWithASignInFront", {"5", "!", "3"}, {"!", "3", "5"}},
                    // The empty text is not numeric and sorts before all others.
                    Case{"EmptyText", {"5", ""}, {"", "5"}}),
    [](const auto& info) { return info.param.name; });

TEST(SortedList, OrderOfAMixedListDependsOnTheOrderOfAdding) {
    // "9" and "x" compare as texts, "9" and "10" as numbers: whoever meets the first greater entry stops
    // there.
    EXPECT_EQ(Sorted({"9", "1x", "10"}), (Texts{"10", "1x", "9"}));
    EXPECT_EQ(Sorted({"9", "10", "1x"}), (Texts{"1x", "9", "10"}));
}

TEST(SortedList, GivesTheNumbersOfItsEntries) {
    SortedList list{"lstData", 3};
    AddToSortedList(list, "20");
    AddToSortedList(list, "3");
    ASSERT_TRUE(list.Numbers());
    EXPECT_EQ(list.Number(0), 3);
    EXPECT_EQ(list.Number(1), 20);
    AddToSortedList(list, "$4");
    EXPECT_FALSE(list.Numbers());
    EXPECT_EQ(list.Number(1), 4);
    AddToSortedList(list, "abc");
    EXPECT_EQ(list.Number(3), std::nullopt);
    EXPECT_THROW(static_cast<void>(list.Number(4)), Fault);
    EXPECT_THROW(static_cast<void>(list.List(-1)), Fault);
}

TEST(SortedList, ClearedOfTextsTakesNumbersAgain) {
    SortedList list{"lstData", 0};
    AddToSortedList(list, "abc");
    list.Clear();
    EXPECT_EQ(list.ListCount(), 0);
    AddToSortedList(list, "10");
    AddToSortedList(list, "9");
    EXPECT_EQ(Entries(list), (Texts{"9", "10"}));
}

TEST(SortedList, TellsItsViews) {
    SortedList list{"lstData", 0};
    int told = 0;
    const controls::Observation view = list.Observe([&](controls::Property) { ++told; });
    list.Clear();
    EXPECT_EQ(told, 0);
    AddToSortedList(list, "1");
    const double numbers[] = {3, 2};
    AddNumbersToSortedList(list, numbers);
    list.Clear();
    EXPECT_EQ(told, 3);
}

// The insertion rule, word for word, on a plain list of texts.
void InsertByTheRule(Texts& list, std::string_view text) {
    const std::string v = text::Trim(text);
    if (list.empty()) {
        list.push_back(v);
        return;
    }
    const std::size_t last = list.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
        bool entryIsGreater = false;
        if (text::IsNumeric(list[i]) && text::IsNumeric(v)) {
            entryIsGreater = *text::NumericValue(list[i]) > *text::NumericValue(v);
        } else {
            entryIsGreater = v < list[i];
        }
        if (entryIsGreater) {
            list.insert(list.begin() + static_cast<std::ptrdiff_t>(i), v);
            return;
        }
        if (i == last) list.push_back(v);
    }
}

std::string RandomText(std::mt19937& random, int percentOdd) {
    static const Texts kOdd = {"abc", "", "$5", "5.0", "1,000", "007", "-", "x9", "10", "!", "9 "};
    if (static_cast<int>(random() % 100) < percentOdd) return kOdd[random() % kOdd.size()];
    return text::DoubleText(static_cast<double>(random() % 40) - 5);
}

TEST(SortedList, IsTheListOfTheInsertionRule) {
    std::mt19937 random{1};
    for (int round = 0; round < 400; ++round) {
        const int percentOdd = round % 3 * 20;
        SortedList list{"lstData", 0};
        Texts expected;
        for (unsigned i = 0; i < random() % 60; ++i) {
            const std::string text = RandomText(random, percentOdd);
            AddToSortedList(list, text);
            InsertByTheRule(expected, text);
        }
        ASSERT_EQ(Entries(list), expected) << "round " << round;
    }
}

TEST(SortedList, TakesManyNumbersAtOnceAsOneByOne) {
    std::mt19937 random{2};
    for (int round = 0; round < 150; ++round) {
        SortedList list{"lstData", 0};
        Texts expected;
        // Every third list holds other texts already when the numbers come.
        for (unsigned i = 0; i < random() % 20; ++i) {
            const std::string text = RandomText(random, round % 3 == 0 ? 50 : 0);
            AddToSortedList(list, text);
            InsertByTheRule(expected, text);
        }
        std::vector<double> numbers;
        const auto count = random() % 500;
        for (std::size_t i = 0; i < count; ++i) {
            double number = static_cast<double>(random() % 5000) - 100;
            if (round % 4 == 1) number *= 1e6;
            if (round % 4 == 2) number /= 8;
            if (round % 4 == 3 && i % 7 == 0) number = 1234567890123456789.0 * (1 + number);
            numbers.push_back(number);
        }
        AddNumbersToSortedList(list, numbers);
        for (const double number : numbers)
            InsertByTheRule(expected, text::DoubleText(number));
        ASSERT_EQ(Entries(list), expected) << "round " << round;
    }
}

TEST(SortNumbers, SortsWhateverTheRange) {
    std::mt19937_64 random{3};
    const double scales[] = {1, 10, 3000, 1e6, 4294967295.0, 4294967296.0, 1e12, 1e18};
    for (const double scale : scales) {
        for (const bool fractions : {false, true}) {
            std::vector<double> numbers;
            for (int i = 0; i < 3000; ++i) {
                const double unit = static_cast<double>(random() % 1000003) / 1000003;
                const double number = (unit - 0.25) * scale;
                numbers.push_back(fractions ? number : std::trunc(number) + 0.0);
            }
            std::vector<double> expected = numbers;
            std::sort(expected.begin(), expected.end());
            SortNumbers(numbers);
            EXPECT_EQ(numbers, expected) << "scale " << scale;
        }
    }
}

TEST(SortNumbers, KeepsTheEndsOfItsLinearRange) {
    std::vector<double> numbers(300, 7);
    numbers[10] = 7 + 4294967295.0;
    numbers[20] = 8;
    SortNumbers(numbers);
    EXPECT_EQ(numbers[297], 7);
    EXPECT_EQ(numbers[298], 8);
    EXPECT_EQ(numbers[299], 4294967302.0);
}

}  // namespace
}  // namespace zenvora::analysis

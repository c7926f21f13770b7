#include "analysis/field_checks.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "analysis/facts_builder.h"

namespace zenvora::analysis {
namespace {

/// A sale whose dates follow each other ten days apart, all in order.
ComparableFacts SoundSale() {
    ComparableFacts facts;
    facts.origListDate = Effective() - 100;
    facts.currListDate = Effective() - 90;
    facts.contractDate = Effective() - 80;
    facts.saleDate = Effective() - 70;
    facts.origListPrice = 259900;
    facts.currListPrice = 249900;
    facts.salePrice = 240000;
    return facts;
}

FieldChecks Check(const ComparableFacts& facts) {
    return CheckFields(facts, Effective(), shell::FixedClock{Effective()});
}

/// Which checks fail, by the names of their columns.
std::string Failing(const FieldChecks& ok) {
    std::string failing;
    const auto add = [&](bool passed, const char* name) {
        if (!passed) failing += std::string(failing.empty() ? "" : " ") + name;
    };
    add(ok.origListDate, "ORIGLISTDATE");
    add(ok.origListPrice, "ORIGLISTPRICE");
    add(ok.currListDate, "LASTLISTDATE");
    add(ok.currListPrice, "LASTLISTPRICE");
    add(ok.contractDate, "CONTRACTDATE");
    add(ok.cancelDate, "LISTCANCELDATE");
    add(ok.saleDate, "SALEDATE");
    add(ok.salePrice, "SELLINGPR");
    return failing;
}

struct Case {
    const char* name;
    std::function<void(ComparableFacts&)> change;
    const char* failing;
};

class FieldCheck : public testing::TestWithParam<Case> {};

TEST_P(FieldCheck, FailsForTheseColumns) {
    ComparableFacts facts = SoundSale();
    facts.cancelDate = facts.currListDate;  // so that its check passes too
    GetParam().change(facts);
    EXPECT_EQ(Failing(Check(facts)), GetParam().failing);
}

constexpr Date kNone = common::kDayZero;

INSTANTIATE_TEST_SUITE_P(
    Facts, FieldCheck,
    testing::Values(
        Case{"AllInOrder", [](ComparableFacts&) {}, ""},
        Case{"AllOnTheEffectiveDate",
             [](ComparableFacts& f) {
                 f.origListDate = f.currListDate = f.contractDate = f.cancelDate = f.saleDate = Effective();
             },
             ""},
        Case{"NoDates",
             [](ComparableFacts& f) {
                 f.origListDate = f.currListDate = f.contractDate = f.cancelDate = f.saleDate = kNone;
             },
             "ORIGLISTDATE LASTLISTDATE CONTRACTDATE LISTCANCELDATE SALEDATE"},
        Case{"OriginalDateAfterTheEffectiveDate",
             [](ComparableFacts& f) { f.origListDate = Effective() + 1; }, "ORIGLISTDATE"},
        Case{"CurrentDateAfterTheEffectiveDate", [](ComparableFacts& f) { f.currListDate = Effective() + 1; },
             "LASTLISTDATE"},
        Case{"ContractDateAfterTheEffectiveDate",
             [](ComparableFacts& f) { f.contractDate = Effective() + 1; }, "CONTRACTDATE"},
        Case{"CancelDateAfterTheEffectiveDate", [](ComparableFacts& f) { f.cancelDate = Effective() + 1; },
             "LISTCANCELDATE"},
        Case{"SaleDateAfterTheEffectiveDate", [](ComparableFacts& f) { f.saleDate = Effective() + 1; },
             "SALEDATE"},
        Case{"CurrentBeforeOriginal", [](ComparableFacts& f) { f.currListDate = f.origListDate - 1; },
             "LASTLISTDATE"},
        Case{"CurrentOnOriginal", [](ComparableFacts& f) { f.currListDate = f.origListDate; }, ""},
        // A date that is not in order itself is no measure for the later ones.
        Case{"AllBeforeAnOriginalThatIsNotInOrder",
             [](ComparableFacts& f) {
                 f.origListDate = Effective() + 1;
                 f.currListDate = f.contractDate = f.cancelDate = f.saleDate = Effective() - 500;
             },
             "ORIGLISTDATE"},
        Case{"ContractBeforeOriginal",
             [](ComparableFacts& f) {
                 f.currListDate = kNone;
                 f.contractDate = f.origListDate - 1;
             },
             "LASTLISTDATE CONTRACTDATE"},
        Case{"ContractBeforeCurrent", [](ComparableFacts& f) { f.contractDate = f.currListDate - 1; },
             "CONTRACTDATE"},
        Case{"ContractOnCurrent", [](ComparableFacts& f) { f.contractDate = f.currListDate; }, ""},
        Case{"CancelBeforeOriginal",
             [](ComparableFacts& f) {
                 f.currListDate = kNone;
                 f.cancelDate = f.origListDate - 1;
             },
             "LASTLISTDATE LISTCANCELDATE"},
        Case{"CancelBeforeCurrent", [](ComparableFacts& f) { f.cancelDate = f.currListDate - 1; },
             "LISTCANCELDATE"},
        Case{"CancelDoesNotLookAtTheContract", [](ComparableFacts& f) { f.cancelDate = f.contractDate - 1; },
             ""},
        Case{"SaleBeforeContract", [](ComparableFacts& f) { f.saleDate = f.contractDate - 1; }, "SALEDATE"},
        Case{"SaleOnContract", [](ComparableFacts& f) { f.saleDate = f.contractDate; }, ""},
        Case{"SaleBeforeCurrentWithoutContract",
             [](ComparableFacts& f) {
                 f.contractDate = kNone;
                 f.saleDate = f.currListDate - 1;
             },
             "CONTRACTDATE SALEDATE"},
        Case{"SaleBeforeOriginalAlone",
             [](ComparableFacts& f) {
                 f.contractDate = f.currListDate = kNone;
                 f.saleDate = f.origListDate - 1;
             },
             "LASTLISTDATE CONTRACTDATE SALEDATE"},
        Case{"SaleOnOriginal",
             [](ComparableFacts& f) {
                 f.contractDate = f.currListDate = kNone;
                 f.saleDate = f.origListDate;
             },
             "LASTLISTDATE CONTRACTDATE"},
        Case{"SaleDoesNotLookAtTheCancelDate", [](ComparableFacts& f) { f.cancelDate = f.saleDate + 1; }, ""},
        Case{"NoPrices", [](ComparableFacts& f) { f.origListPrice = f.currListPrice = f.salePrice = 0; },
             "ORIGLISTPRICE LASTLISTPRICE SELLINGPR"},
        Case{"NegativePrices",
             [](ComparableFacts& f) { f.origListPrice = f.currListPrice = f.salePrice = -1; },
             "ORIGLISTPRICE LASTLISTPRICE SELLINGPR"},
        Case{"PricesOfADollar",
             [](ComparableFacts& f) { f.origListPrice = f.currListPrice = f.salePrice = 1; }, ""},
        // 12/30/1899 is a date in every way but that the others follow it.
        Case{"CurrentOf12301899", [](ComparableFacts& f) { f.currListDate = 0; }, "LASTLISTDATE"},
        // The text of a stored time of day does not end in the four digits of a year.
        Case{"OriginalWithATimeOfDay", [](ComparableFacts& f) { f.origListDate += 0.5; }, "ORIGLISTDATE"}),
    [](const auto& info) { return info.param.name; });

TEST(FieldChecks, ADateOfALaterYearThanTheClocksIsADate) {
    const ComparableFacts facts = SoundSale();
    EXPECT_EQ(Failing(CheckFields(facts, Effective(), shell::FixedClock{Day(2009, 1, 1)})), "LISTCANCELDATE");
}

TEST(FieldChecks, TellASaleDateThatIsADateFromOneInOrder) {
    ComparableFacts facts = SoundSale();
    facts.saleDate = Effective() + 1;
    EXPECT_TRUE(Check(facts).saleDateEntered);
    EXPECT_FALSE(Check(facts).saleDate);
    facts.saleDate = kNone;
    EXPECT_FALSE(Check(facts).saleDateEntered);
}

TEST(IsSaleOverAYearAgo, CountsFrom366Days) {
    ComparableFacts facts;
    facts.saleDate = Effective() - 365;
    EXPECT_FALSE(IsSaleOverAYearAgo(facts, Check(facts), Effective()));
    facts.saleDate = Effective() - 366;
    EXPECT_TRUE(IsSaleOverAYearAgo(facts, Check(facts), Effective()));
    facts.saleDate = kNone;
    EXPECT_FALSE(IsSaleOverAYearAgo(facts, Check(facts), Effective()));
}

}  // namespace
}  // namespace zenvora::analysis

#include "analysis/selection_toggle.h"

#include "analysis/databook_fixture.h"

namespace zenvora::analysis {
namespace {

class Selection : public DatabookTest {};

struct Case {
    const char* before;
    const char* after;
};

TEST_F(Selection, ADoubleClickTogglesValidRecords) {
    for (const auto& [before, after] : {Case{"1", "2"}, Case{"2", "3"}, Case{"3", "2"}, Case{"0", "0"},
                                        Case{"9", "9"}, Case{"", ""}, Case{"Y", "Y"}}) {
        const std::string key = std::string("FLAG ") + before;
        Add(key, {{"SELECTED", Flag(before)}});
        Find(key);
        EXPECT_TRUE(ToggleSelection(session, adoDatabook)) << before;
        EXPECT_EQ(Text(key, "SELECTED"), after);
        EXPECT_EQ(adoDatabook.Recordset().Edit(), ado::EditMode::None);
        EXPECT_EQ(ToggledFlag(before), after);
    }
}

TEST_F(Selection, ADoubleClickOnANullFlagDoesNothing) {
    Add("A", {{"SELECTED", jet::Null{}}});
    Find("A");
    EXPECT_FALSE(ToggleSelection(session, adoDatabook));
    EXPECT_EQ(Value("A", "SELECTED"), jet::Value{jet::Null{}});
}

TEST_F(Selection, ADoubleClickWithoutRecordsDoesNothing) {
    EXPECT_FALSE(ToggleSelection(session, adoDatabook));
}

TEST_F(Selection, AToggledRecordNeverComesBackToOne) {
    Add("A", {{"SELECTED", Flag("1")}});
    Find("A");
    std::string flags;
    for (int i = 0; i < 4; ++i) {
        ToggleSelection(session, adoDatabook);
        flags += Text("A", "SELECTED");
    }
    EXPECT_EQ(flags, "2323");
}

TEST_F(Selection, StaysInTheFile) {
    Add("A", {{"SELECTED", Flag("1")}});
    Find("A");
    ToggleSelection(session, adoDatabook);
    adoDatabook.Refresh();
    EXPECT_EQ(Text("A", "SELECTED"), "2");
}

struct WantedCase {
    const char* name;
    const char* before;  // nullptr is Null
    Inclusion wanted;
    SelectionOutcome outcome;
    const char* after;
};

class WantedState : public Selection, public testing::WithParamInterface<WantedCase> {};

TEST_P(WantedState, IsReachedByOneDoubleClick) {
    const WantedCase& of = GetParam();
    Add("A", {{"SELECTED", of.before ? Flag(of.before) : jet::Value{jet::Null{}}}});
    Find("A");
    EXPECT_EQ(SetInclusion(session, adoDatabook, of.wanted), of.outcome);
    EXPECT_EQ(Text("A", "SELECTED"), of.after);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, WantedState,
    testing::Values(WantedCase{"ExcludeValid", "1", Inclusion::Excluded, SelectionOutcome::Changed, "2"},
                    WantedCase{"ExcludeIncluded", "3", Inclusion::Excluded, SelectionOutcome::Changed, "2"},
                    WantedCase{"ExcludeExcluded", "2", Inclusion::Excluded, SelectionOutcome::AlreadySo, "2"},
                    WantedCase{"ExcludeInvalid", "0", Inclusion::Excluded, SelectionOutcome::Refused, "0"},
                    WantedCase{"IncludeExcluded", "2", Inclusion::Included, SelectionOutcome::Changed, "3"},
                    WantedCase{"IncludeValid", "1", Inclusion::Included, SelectionOutcome::AlreadySo, "1"},
                    WantedCase{"IncludeIncluded", "3", Inclusion::Included, SelectionOutcome::AlreadySo, "3"},
                    WantedCase{"IncludeInvalid", "0", Inclusion::Included, SelectionOutcome::Refused, "0"},
                    WantedCase{"IncludeUnjudged", nullptr, Inclusion::Included, SelectionOutcome::Refused,
                               ""}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::analysis

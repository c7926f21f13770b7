#include "platform/controls/text_box.h"

#include <gtest/gtest.h>

#include "platform/controls/label.h"
#include "platform/fault.h"

namespace zenvora::controls {
namespace {

TEST(TextBox, RunsItsChangeRuleBeforeTheSetterReturns) {
    TextBox box{"txtBaseDate"};
    std::string seen;
    box.OnChange([&] { seen = box.Text(); });
    box.SetText("06/30/2010");
    EXPECT_EQ(seen, "06/30/2010");
}

TEST(TextBox, RunsItsChangeRuleOnARealChangeOnly) {
    TextBox box{"txtBaseDate"};
    int runs = 0;
    box.OnChange([&] { ++runs; });
    box.SetText("");
    EXPECT_EQ(runs, 0) << "a new box is empty already";
    box.SetText("a");
    box.SetText("a");
    EXPECT_EQ(runs, 1);
    box.SetText("A");
    EXPECT_EQ(runs, 2) << "another case is another text";
    box.SetText("");
    EXPECT_EQ(runs, 3);
}

TEST(TextBox, ItsRuleMaySetItsOwnTextAgain) {
    TextBox box{"txtBaseDate"};
    std::vector<std::string> seen;
    box.OnChange([&] {
        seen.push_back(box.Text());
        box.SetText("settled");
    });
    box.SetText("typed");
    EXPECT_EQ(seen, (std::vector<std::string>{"typed", "settled"}));
    EXPECT_EQ(box.Text(), "settled");
}

TEST(TextBox, RulesOfTwoBoxesNest) {
    TextBox first{"first"};
    TextBox second{"second"};
    std::vector<std::string> order;
    first.OnChange([&] {
        order.emplace_back("first begins");
        second.SetText(first.Text());
        order.emplace_back("first ends");
    });
    second.OnChange([&] { order.emplace_back("second"); });
    first.SetText("x");
    EXPECT_EQ(order, (std::vector<std::string>{"first begins", "second", "first ends"}));
}

TEST(TextBox, KeepsTheTextWhenItsRuleFails) {
    TextBox box{"txtBaseDate"};
    box.OnChange([] { throw Fault{fault::kTypeMismatch, "no"}; });
    EXPECT_THROW(box.SetText("x"), Fault);
    EXPECT_EQ(box.Text(), "x");
}

TEST(Control, HasTheDefaultsOfANewControl) {
    const TextBox box{"txtCity"};
    EXPECT_EQ(box.Name(), "txtCity");
    EXPECT_EQ(box.Index(), Control::kNoIndex);
    EXPECT_TRUE(box.Enabled());
    EXPECT_TRUE(box.Visible());
    EXPECT_EQ(box.BackColor(), kWhite);
    EXPECT_EQ(box.ToolTipText(), "");
    EXPECT_EQ(box.Tag(), "");
}

TEST(Control, TellsItsViewsWhatReallyChanged) {
    TextBox box{"txtCity"};
    std::vector<Property> told;
    const Observation view = box.Observe([&](Property property) { told.push_back(property); });
    box.SetText("Troy");
    box.SetText("Troy");
    box.SetEnabled(false);
    box.SetEnabled(false);
    box.SetVisible(false);
    box.SetBackColor(kLightYellow);
    box.SetToolTipText("City");
    box.SetTag("not shown");
    EXPECT_EQ(told, (std::vector<Property>{Property::Text, Property::Enabled, Property::Visible,
                                           Property::BackColor, Property::ToolTipText}));
    EXPECT_EQ(box.Tag(), "not shown");
}

TEST(Control, TellsItsViewsBeforeTheChangeRuleRuns) {
    TextBox box{"txtCity"};
    std::vector<std::string> order;
    const Observation view = box.Observe([&](Property) { order.emplace_back("view"); });
    box.OnChange([&] { order.emplace_back("rule"); });
    box.SetText("Troy");
    EXPECT_EQ(order, (std::vector<std::string>{"view", "rule"}));
}

TEST(Control, TellsNoViewThatHasLetGo) {
    TextBox box{"txtCity"};
    int first = 0;
    int second = 0;
    Observation one = box.Observe([&](Property) { ++first; });
    const Observation two = box.Observe([&](Property) {
        ++second;
        one.reset();
    });
    box.SetText("a");
    box.SetText("b");
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST(Label, TellsItsViewsOfANewCaption) {
    Label label{"lblExplanation"};
    int told = 0;
    const Observation view = label.Observe([&](Property) { ++told; });
    label.SetCaption("Sale Price invalid; ");
    label.SetCaption("Sale Price invalid; ");
    EXPECT_EQ(label.Caption(), "Sale Price invalid; ");
    EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace zenvora::controls

#include "platform/ado/detail/criterion.h"

#include "store_fixture.h"

namespace zenvora::ado::detail {
namespace {

TEST(FindCriterion, NamesAFieldAndAText) {
    const Criterion criterion = ParseCriterion("CENTRALKEY='12 OAK ST'");
    EXPECT_EQ(criterion.field, "CENTRALKEY");
    EXPECT_EQ(criterion.text, "12 OAK ST");
    EXPECT_EQ(ParseCriterion(" [My Key] = '' ").field, "My Key");
    EXPECT_EQ(ParseCriterion("A=''").text, "");
}

TEST(FindCriterion, TakesBackTheDoubledQuotesAndAsterisks) {
    EXPECT_EQ(ParseCriterion("CENTRALKEY='O''BRIEN''S **'").text, "O'BRIEN'S *");
    EXPECT_EQ(ParseCriterion("A=''''").text, "'");
    EXPECT_EQ(ParseCriterion("A='****'").text, "**");
    EXPECT_EQ(ParseCriterion("A='*'").text, "*");
}

class RefusedCriterion : public testing::TestWithParam<const char*> {};

TEST_P(RefusedCriterion, IsASyntaxFault) {
    EXPECT_EQ(FaultOf([] { static_cast<void>(ParseCriterion(GetParam())); }), fault::kSyntax);
}
INSTANTIATE_TEST_SUITE_P(Forms, RefusedCriterion,
                         testing::Values("", "CENTRALKEY", "CENTRALKEY=", "CENTRALKEY='O'BRIEN'",
                                         "CENTRALKEY='x", "CENTRALKEY=\"x\"", "CENTRALKEY=5",
                                         "CENTRALKEY LIKE 'x'", "='x'", "A='x' AND B='y'", "A='x';"));

}  // namespace
}  // namespace zenvora::ado::detail

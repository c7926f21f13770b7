// The eight help texts that come with the program.

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "platform/files/whole_file.h"
#include "records/rich_text_file.h"

namespace zenvora::records {
namespace {

struct Text {
    const char* file;
    const char* title;
    const char* example;  ///< typed as it stands there
};

class HelpText : public testing::TestWithParam<Text> {};

TEST_P(HelpText, SaysWhatTheEntryIsWhichRuleItMustMeetAndGivesAnExample) {
    const auto paragraphs =
        ReadRichText(files::ReadWholeFile(std::filesystem::path(ZENVORA_HELP_TEXTS) / GetParam().file));
    controls::RichText panel{"rtxtInfo"};
    panel.SetParagraphs(paragraphs);
    const std::string text = panel.Text();
    ASSERT_FALSE(paragraphs.empty());
    EXPECT_TRUE(text.starts_with(GetParam().title)) << text;
    EXPECT_TRUE(paragraphs[0].runs.at(0).bold);
    EXPECT_EQ(paragraphs[0].runs.at(0).size, 14);
    for (const char* heading : {"\nIn an export: ", "\nIt must\n", "\nExample: ", "\nGood to know: "})
        EXPECT_NE(text.find(heading), std::string::npos) << heading;
    EXPECT_NE(text.find(GetParam().example), std::string::npos);
    EXPECT_EQ(text.find_first_of("{}\\"), std::string::npos) << "a command shows as text";
    EXPECT_EQ(text.find('?'), std::string::npos) << "the fallback of a character shows";
}

INSTANTIATE_TEST_SUITE_P(Fields, HelpText,
                         testing::Values(Text{"OLD.rtf", "Original List Date", "3/15/2010"},
                                         Text{"OLP.rtf", "Original List Price", "259900"},
                                         Text{"CLD.rtf", "Current List Date", "5/1/2010"},
                                         Text{"CLP.rtf", "Current List Price", "249900"},
                                         Text{"CD.rtf", "Contract Date", "5/20/2010"},
                                         Text{"LCD.rtf", "Listing Cancel Date", "6/15/2010"},
                                         Text{"SD.rtf", "Sale Date", "5/14/2010"},
                                         Text{"SP.rtf", "Sale Price", "242500"}),
                         [](const auto& info) {
                             const std::string file = info.param.file;
                             return file.substr(0, file.find('.'));
                         });

}  // namespace
}  // namespace zenvora::records

#include "platform/ado/connection_string.h"

#include <gtest/gtest.h>

namespace zenvora::ado {
namespace {

struct Text {
    const char* name;
    const char* text;
    const char* dataSource;
    bool readWrite;
};

class ConnectionStringText : public testing::TestWithParam<Text> {};

TEST_P(ConnectionStringText, GivesItsParts) {
    const ConnectionString parsed = ParseConnectionString(GetParam().text);
    EXPECT_EQ(parsed.dataSource, GetParam().dataSource);
    EXPECT_EQ(parsed.readWrite, GetParam().readWrite);
}
INSTANTIATE_TEST_SUITE_P(
    Texts, ConnectionStringText,
    testing::Values(
        Text{"OfADataControl",
             "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\DATA\\COMPS.MDB;Mode=ReadWrite|Share Deny "
             "None;Persist Security Info=False;",
             "C:\\DATA\\COMPS.MDB", true},
        Text{"OfOneStatement",
             "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=Z:\\home\\a b.mdb;Mode=ReadWrite;Persist Security "
             "Info=False",
             "Z:\\home\\a b.mdb", true},
        Text{"ReadOnly", "Data Source=x.mdb;Mode=Read", "x.mdb", false},
        Text{"ReadOnlyWithSharing", "Data Source=x.mdb;Mode=Read|Share Deny None;", "x.mdb", false},
        Text{"AnyCaseAndBlanks", " data source = x.mdb ; MODE = read ;", "x.mdb", false},
        Text{"NoMode", "Data Source=x.mdb", "x.mdb", true},
        Text{"ModeFirst", "Mode=Read;Data Source=x.mdb", "x.mdb", false},
        Text{"SemicolonInPath", "Data Source=/home/a;b/x.mdb;Mode=ReadWrite;Persist Security Info=False",
             "/home/a;b/x.mdb", true},
        Text{"EqualsInPath", "Data Source=/home/a=b;c=d/x.mdb;Mode=ReadWrite", "/home/a=b;c=d/x.mdb", true},
        Text{"NoDataSource", "Provider=Microsoft.Jet.OLEDB.4.0;Mode=ReadWrite", "", true},
        Text{"Empty", "", "", true}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::ado

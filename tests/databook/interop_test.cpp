#include <array>
#include <cstdlib>
#include <map>

#include "databook_fixture.h"
#include "platform/text/number.h"
#include "support/run_command.h"

/// What other programs read in a Databook that went through everything the store does to one.
namespace zenvora::databook {
namespace {

using testing_support::CommandResult;
using testing_support::RunCommand;

bool HasCommand(const std::string& name) {
    return RunCommand("command -v " + name).status == 0;
}

struct Row {
    std::string address;
    std::string city;
    std::string neighbourhood;
    double price = 0;
    text::Date listed = 2;
    std::string selected = "3";
};

/// The lines of an export by their keys.
std::map<std::string, std::string> ExportedRows(const std::string& csv) {
    std::map<std::string, std::string> rows;
    std::size_t start = 0;
    while (start < csv.size()) {
        const std::size_t end = std::min(csv.find('\n', start), csv.size());
        const std::string line = csv.substr(start, end - start);
        start = end + 1;
        // "KEY",rest: keys hold no quotes here.
        const std::size_t close = line.find('"', 1);
        if (line.empty() || close == std::string::npos) {
            ADD_FAILURE() << "a line without a key: " << line;
            continue;
        }
        const bool fresh = rows.emplace(line.substr(1, close - 1), line.substr(close + 1)).second;
        EXPECT_TRUE(fresh) << "twice: " << line;
    }
    return rows;
}

class Interop : public DatabookTest {
  protected:
    static constexpr int kRows = 20000;

    static std::string Key(int i) {
        // Scattered over the alphabet of the key index, so that its pages split in the middle.
        return std::to_string(10000 + i * 7919LL % kRows) + " N. O'Hara Blvd #" + std::to_string(i % 7);
    }

    void InsertAll() {
        ado::Connection connection(pool_, clock_);
        connection.Open(OneShotConnectionString(Path().string()));
        connection.BeginBatch();
        for (int i = 0; i < kRows; ++i) {
            Row row;
            row.address = "Addr " + std::to_string(i);
            row.city = i % 3 == 0   ? "Ypsilanti"
                       : i % 3 == 1 ? "Montr\xC3\xA9"
                                      "al"
                                    : "";
            row.price = 100000 + i;
            row.listed = 39000 + i % 1500;
            connection.Execute(
                "INSERT INTO COMPS (CENTRALKEY,ADDRESS,CITY,SELLINGPR,ORIGLISTDATE) VALUES (\"" + Key(i) +
                "\",\"" + row.address + "\",\"" + row.city + "\"," + text::DoubleText(row.price) + ",\"" +
                text::DateText(row.listed) + "\")");
            expected_[Key(i)] = row;
        }
        connection.EndBatch();
    }

    /// Every third row grows, far beyond what its page has room for; every fifth goes; every 16th gets a
    /// verdict.
    void ChangeMany() {
        SelectAll();
        ado::Recordset& records = control_.Recordset();
        records.BeginBatch();
        for (int i = 0; !records.Eof(); records.MoveNext(), ++i) {
            const std::string key = records.Text(0);
            if (i % 5 == 0) {
                records.Delete();
                expected_.erase(key);
                continue;
            }
            Row& row = expected_.at(key);
            if (i % 3 == 0) {
                row.neighbourhood = "Grown by number " + std::to_string(i) + std::string(20, 'z');
                AdoSetField(session_, control_, row.neighbourhood, "NEIGHBORHD");
                row.address = std::string(50, static_cast<char>('a' + i % 26));
                AdoSetField(session_, control_, row.address, "ADDRESS");
            }
            if (i % 16 == 1) {
                row.selected = "0";
                AdoSetField(session_, control_, "0", "SELECTED");
                row.price = 1;
                AdoSetFieldDouble(session_, control_, 1, "SELLINGPR");
                row.listed = 2;
                AdoSetFieldDate(session_, control_, "01/01/1900", "ORIGLISTDATE");
            }
        }
        records.EndBatch();
    }

    /// New rows in the room that the deleted ones left.
    void AddSome() {
        ado::Recordset& records = control_.Recordset();
        records.BeginBatch();
        for (int i = 0; i < 500; ++i) {
            Row row;
            row.address = "Added";
            const std::string key = "ADDED " + std::to_string(i);
            records.AddNew();
            AdoSetField(session_, control_, key, "CENTRALKEY");
            AdoSetField(session_, control_, row.address, "ADDRESS");
            records.Update();
            expected_[key] = row;
        }
        records.EndBatch();
    }

    /// A row as mdb-export shows it: texts and dates in quotes, nothing for Null and for the empty text.
    static std::string Line(const Row& row, bool added) {
        const auto quoted = [](const std::string& text) { return text.empty() ? text : "\"" + text + "\""; };
        return "," + quoted(row.address) + "," + (added ? "" : quoted(row.city)) + "," +
               quoted(row.neighbourhood) + "," + (added ? "" : text::DoubleText(row.price)) + "," +
               quoted(text::FormatDate(row.listed, "yyyy-mm-dd")) + "," + quoted(row.selected);
    }

    /// The columns of COMPS of one exported line that Line shows. Fields hold no quotes and no commas here.
    static std::string Picked(const std::string& line) {
        constexpr std::array kShown{1, 3, 6, 7, 12, 17};
        std::vector<std::string> fields{""};
        for (const char c : line) {
            if (c == ',') {
                fields.emplace_back();
            } else {
                fields.back() += c;
            }
        }
        std::string picked;
        for (const int field : kShown)
            picked += "," + (static_cast<std::size_t>(field) < fields.size()
                                 ? fields[static_cast<std::size_t>(field)]
                                 : "?");
        return picked;
    }

    std::map<std::string, Row> expected_;
};

TEST_F(Interop, OtherReadersFindEveryRowAfterInsertsUpdatesAndDeletes) {
    for (const char* const tool : {"mdb-schema", "mdb-count", "mdb-export"}) {
        if (!HasCommand(tool))
            GTEST_SKIP() << tool << " is not installed (package mdbtools): nothing was compared";
    }
    InsertAll();
    ChangeMany();
    AddSome();
    control_.Close();
    ASSERT_EQ(expected_.size(), static_cast<std::size_t>(kRows * 4 / 5 + 500));

    const std::string file = "'" + Path().string() + "'";
    const CommandResult schema = RunCommand("mdb-schema " + file);
    EXPECT_EQ(schema.status, 0);
    for (const char* const column :
         {"[CENTRALKEY]\t\t\tText (50) NOT NULL", "[SELECTED]\t\t\tText (1)", "[ORIGLISTPRICE]\t\t\tDouble",
          "[LISTCANCELDATE]\t\t\tDateTime", "[DAYSONMARKET]\t\t\tDouble"}) {
        EXPECT_NE(schema.output.find(column), std::string::npos) << column << "\n" << schema.output;
    }
    EXPECT_EQ(RunCommand("mdb-count " + file + " COMPS").output, std::to_string(expected_.size()) + "\n");

    const CommandResult exported =
        RunCommand("LC_ALL=C.UTF-8 mdb-export -H -D '%Y-%m-%d' -T '%Y-%m-%d' " + file + " COMPS");
    ASSERT_EQ(exported.status, 0) << exported.output.substr(0, 500);
    const std::map<std::string, std::string> rows = ExportedRows(exported.output);
    EXPECT_EQ(rows.size(), expected_.size());
    int wrong = 0;
    for (const auto& [key, row] : expected_) {
        const auto found = rows.find(key);
        const std::string line = found == rows.end() ? "missing" : Picked(found->second);
        if (line == Line(row, key.starts_with("ADDED"))) continue;
        if (++wrong <= 5)
            ADD_FAILURE() << key << "\n  " << line << "\n  " << Line(row, key.starts_with("ADDED"));
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(Interop, AnIndependentCheckerFindsNothingWrong) {
    const char* const checker = std::getenv("ZENVORA_MDBCHECK");
    if (checker == nullptr) GTEST_SKIP() << "ZENVORA_MDBCHECK names no checker: nothing was checked";
    const auto check = [&](const char* after) {
        const CommandResult result =
            RunCommand("python3 '" + std::string(checker) + "' '" + Path().string() + "'");
        EXPECT_EQ(result.status, 0) << after << "\n" << result.output.substr(0, 3000);
    };
    check("the template");
    InsertAll();
    check("inserts");
    ChangeMany();
    check("updates and deletes");
    AddSome();
    check("inserts into the room of deleted rows");
    Run("ALTER TABLE COMPS ADD REMARKS MEMO");
    Run("ALTER TABLE COMPS ADD GRADE CHAR(4)");
    Run("ALTER TABLE COMPS ALTER COLUMN GRADE SET DEFAULT 'A1'");
    check("added columns");
}

}  // namespace
}  // namespace zenvora::databook

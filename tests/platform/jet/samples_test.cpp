#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "platform/fault.h"
#include "platform/jet/detail/header.h"
#include "platform/jet/detail/key_codec.h"
#include "platform/jet/detail/store.h"
#include "sample_files.h"
#include "support/temp_folder.h"

/// Real files, made by Access: what the engine reads in them, and what is left of them after it wrote to
/// them.
namespace zenvora::jet {
namespace {

namespace fs = std::filesystem;
using testing_support::CommandResult;
using testing_support::CopySample;
using testing_support::Rendered;
using testing_support::RunCommand;
using testing_support::SampleNames;
using testing_support::SampleTables;
using zenvora::testing_support::TempFolder;

/// Without the folder one test stands for all, and skips.
std::vector<std::string> NamesOrNone() {
    std::vector<std::string> names = SampleNames();
    if (names.empty()) names.emplace_back();
    return names;
}

class JetSamples : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: no real file was read";
        CopySample(GetParam(), path_);
    }

    TempFolder folder_;
    fs::path path_ = folder_ / "sample.mdb";
};

INSTANTIATE_TEST_SUITE_P(Files, JetSamples, testing::ValuesIn(NamesOrNone()), [](const auto& info) {
    std::string name = info.param.empty() ? "none" : info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

/// A row with its columns in the order of their names.
template <class ValueOf>
std::string RenderedRow(const TableDefinition& table, const ValueOf& valueOf) {
    std::map<std::string, std::string> fields;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        fields[table.columns[i].name] = Rendered(table.columns[i], valueOf(i));
    std::string text;
    for (const auto& [name, value] : fields)
        text += name + "=" + value + "\n";
    return text;
}

std::multiset<std::string> RowsOf(const Table& table) {
    std::multiset<std::string> rows;
    table.Scan([&](const RowView& view) {
        rows.insert(RenderedRow(table.Definition(), [&](std::size_t i) { return view.Get(i); }));
        return true;
    });
    return rows;
}

TEST_P(JetSamples, HoldWhatAnotherReaderFinds) {
    const auto database = Database::Open(path_, Database::Access::ReadOnly);
    const nlohmann::json expected = SampleTables(GetParam());
    std::vector<std::string> names;
    for (const auto& table : expected)
        names.push_back(table.at("name"));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(database->TableNames(), names);

    for (const auto& each : expected) {
        const std::string name = each.at("name");
        SCOPED_TRACE(name);
        const Table& table = database->OpenTable(name);
        const TableDefinition& definition = table.Definition();
        std::map<std::string, std::string> columns;
        for (const ColumnDefinition& column : definition.columns) {
            const int size = column.type == ColumnType::Boolean ? 0 : column.byteLength;
            columns[column.name] = testing_support::TypeName(column.type) + " " + std::to_string(size);
        }
        std::map<std::string, std::string> expectedColumns;
        for (const auto& column : each.at("columns")) {
            expectedColumns[column.at("name")] =
                column.at("type").get<std::string>() + " " + std::to_string(column.at("size").get<int>());
        }
        EXPECT_EQ(columns, expectedColumns);

        std::multiset<std::string> rows = RowsOf(table);
        EXPECT_EQ(rows.size(), each.at("rowCount").get<std::size_t>());
        EXPECT_EQ(table.RowCount(), each.at("definitionRowCount").get<std::uint32_t>());
        // Of long tables the other reader gives the beginning only.
        const bool whole = each.at("rows").size() == rows.size();
        for (const auto& row : each.at("rows")) {
            const std::string text =
                RenderedRow(definition, [&](std::size_t i) { return row.at(definition.columns[i].name); });
            const auto found = rows.find(text);
            if (found == rows.end()) {
                ADD_FAILURE() << "not read: " << text;
            } else {
                rows.erase(found);
            }
        }
        if (whole) {
            EXPECT_TRUE(rows.empty()) << "read, but not there: " << *rows.begin();
        }
    }
}

struct Checked {
    int indexes = 0;
    int unknownKeys = 0;  ///< indexes with a key that cannot be built
};

/// Compares each index of one table with the keys of its rows, and finds each row by its key.
void CheckIndexes(detail::Store& store, const std::string& name, detail::PageNumber page, Checked& checked) {
    SCOPED_TRACE(name);
    detail::Pager& pager = store.Pages();
    Table& table = *store.FindTable(name);
    const auto& columns = table.Definition().columns;
    const detail::StoredDefinition stored = detail::ReadDefinition(pager, page);
    for (std::size_t i = 0; i < stored.indexes.size(); ++i) {
        SCOPED_TRACE("index " + std::to_string(i));
        const detail::StoredIndex& index = stored.indexes[i];
        std::vector<std::size_t> positions;
        for (const IndexColumn& each : index.columns) {
            const auto at = std::find_if(columns.begin(), columns.end(), [&](const ColumnDefinition& column) {
                return column.number == each.column;
            });
            positions.push_back(static_cast<std::size_t>(at - columns.begin()));
        }
        std::vector<std::string> expected;
        try {
            table.Scan([&](const RowView& view) {
                std::string entry;
                bool allNull = true;
                std::vector<Value> key;
                for (std::size_t k = 0; k < positions.size(); ++k) {
                    key.push_back(view.Get(positions[k]));
                    allNull = allNull && IsNull(key.back());
                    detail::AppendKey(columns[positions[k]], key.back(), index.columns[k].ascending, entry);
                }
                if (allNull && (index.flags & detail::kIndexIgnoreNulls) != 0) return true;
                const auto found = table.Find(i, key);
                EXPECT_TRUE(found.has_value());
                detail::AppendRowId(view.Id(), entry);
                expected.push_back(std::move(entry));
                return true;
            });
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kUnsupported) << fault.description;
            ++checked.unknownKeys;
            continue;
        }
        std::sort(expected.begin(), expected.end(), [](const std::string& a, const std::string& b) {
            return a.compare(b) < 0;  // as unsigned bytes
        });
        std::vector<std::string> entries;
        const detail::IndexTree tree(pager, store.Allocator(), page, index.root,
                                     detail::UsageMap(pager, index.ownedMap));
        tree.Scan([&](std::string_view entry) {
            entries.emplace_back(entry);
            return true;
        });
        EXPECT_EQ(entries, expected);
        ++checked.indexes;
    }
}

/// Every index of every table, those of the system too.
Checked CheckAllIndexes(const fs::path& path) {
    std::shared_ptr<files::HostFile> file = files::SystemDisk().Open(path, files::OpenMode::ReadOnly);
    const detail::Layout layout = detail::CheckHeader(*file, path, false);
    detail::Store store(file, path, layout, true);
    store.LoadCatalog();
    std::map<std::string, detail::PageNumber> tables;
    Table& catalog = *store.FindTable("MSysObjects");
    const TableDefinition& definition = catalog.Definition();
    catalog.Scan([&](const RowView& view) {
        if (view.Number(definition.FindColumn("Type").value()) != 1) return true;
        std::string name;
        view.AppendText(definition.FindColumn("Name").value(), name);
        tables[name] = static_cast<detail::PageNumber>(
                           static_cast<std::int32_t>(view.Number(definition.FindColumn("Id").value()))) &
                       0x00FFFFFF;
        return true;
    });
    EXPECT_GE(tables.size(), 4U);
    Checked checked;
    for (const auto& [name, page] : tables)
        CheckIndexes(store, name, page, checked);
    return checked;
}

TEST_P(JetSamples, HaveIndexesThatEqualTheirRows) {
    const Checked checked = CheckAllIndexes(path_);
    EXPECT_GE(checked.indexes, 7) << "the four system tables have as many";
    // Japanese names, whose weights are not known here.
    EXPECT_EQ(checked.unknownKeys, GetParam() == "a2003-unicode-memo" ? 1 : 0);
}

// ---------------------------------------------------------------- writing

/// A value for every type; different for each `number`, so that no unique index minds.
Value Made(const ColumnDefinition& column, int number) {
    switch (column.type) {
        case ColumnType::Boolean:
            return number % 2 == 0;
        case ColumnType::Byte:
            return std::int32_t{number % 100 + 130};
        case ColumnType::Integer:
            return std::int32_t{number + 20000};
        case ColumnType::Long:
            return std::int32_t{number + 70000000};
        case ColumnType::Currency:
            return Currency{123450000LL + number};
        case ColumnType::Single:
            return static_cast<float>(number) + 0.5F;
        case ColumnType::Double:
            return number * 1.25 - 100.125;
        case ColumnType::DateTime:
            return DateTime{45000.0 + number};
        case ColumnType::Binary:
            return Bytes(std::min<std::size_t>(8, column.byteLength), static_cast<std::byte>(number));
        case ColumnType::Text: {
            std::string text = "n" + std::to_string(number) + " M\xC3\xBCller & Co";
            if (column.CharacterLimit() < 14)
                text = text.substr(
                    0, std::min(static_cast<std::size_t>(column.CharacterLimit()), text.find(' ')));
            return text;
        }
        case ColumnType::Memo:
            return "memo " + std::to_string(number) + " " +
                   std::string(static_cast<std::size_t>(number % 7 * 900), 'm');
        case ColumnType::Ole:
            return Bytes(static_cast<std::size_t>(number % 5 * 2500 + 1), static_cast<std::byte>(number));
        case ColumnType::Guid: {
            Guid guid;
            guid.bytes[0] = static_cast<std::uint8_t>(number);
            guid.bytes[9] = static_cast<std::uint8_t>(number >> 8);
            return guid;
        }
        case ColumnType::Numeric: {
            Numeric numeric;
            numeric.scale = column.scale;
            numeric.magnitude[15] = static_cast<std::uint8_t>(number % 9 + 1);
            numeric.negative = number % 2 == 1;
            return numeric;
        }
        case ColumnType::BigBinary:
        case ColumnType::Complex:
            break;
    }
    return Null{};
}

std::vector<Value> MadeRow(const TableDefinition& table, int number) {
    std::vector<Value> row;
    for (const ColumnDefinition& column : table.columns)
        row.push_back(column.autoNumber ? Value{Null{}} : Made(column, number));
    return row;
}

/// Inserts, updates and deletes in one table. False: the table cannot be written, and says why.
bool ChangeTable(Table& table, std::multiset<std::string>& rows) {
    const TableDefinition& definition = table.Definition();
    const auto render = [&](RowId id) {
        const std::vector<Value> values = table.Read(id);
        return RenderedRow(definition, [&](std::size_t i) { return values[i]; });
    };
    std::vector<RowId> present;
    table.Scan([&](const RowView& view) {
        present.push_back(view.Id());
        return true;
    });
    const std::size_t before = present.size();
    constexpr int kInserts = 90;
    for (int i = 0; i < kInserts; ++i) {
        std::vector<Value> row = MadeRow(definition, i);
        try {
            present.push_back(table.Insert(row));
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kUnsupported) << fault.description;
            EXPECT_EQ(i, 0);
            return false;
        }
        const std::vector<Value> stored = table.Read(present.back());
        for (std::size_t c = 0; c < row.size(); ++c) {
            if (definition.columns[c].autoNumber) {
                row[c] = stored[c];
                EXPECT_FALSE(IsNull(stored[c]));
            }
        }
        rows.insert(RenderedRow(definition, [&](std::size_t c) { return row[c]; }));
    }
    // Every third row changes in every column, old rows among them; some grow and have to move.
    for (std::size_t i = 0; i < present.size(); i += 3) {
        rows.erase(rows.find(render(present[i])));
        std::vector<std::size_t> positions;
        std::vector<Value> values;
        for (std::size_t c = 0; c < definition.columns.size(); ++c) {
            if (definition.columns[c].autoNumber) continue;
            positions.push_back(c);
            // As far as the longest row allows when every text grows.
            const int limit = std::min(definition.columns[c].CharacterLimit(),
                                       1800 / static_cast<int>(definition.columns.size()));
            Value value = Made(definition.columns[c], static_cast<int>(1000 + i));
            if (limit > 20)
                value = std::get<std::string>(value) + std::string(static_cast<std::size_t>(limit - 20), 'g');
            if (definition.columns[c].type == ColumnType::Byte) value = static_cast<std::int32_t>(i % 130);
            values.push_back(std::move(value));
        }
        table.Update(present[i], positions, values);
        rows.insert(render(present[i]));
    }
    for (std::size_t i = 0; i < present.size(); i += 5) {
        rows.erase(rows.find(render(present[i])));
        table.Delete(present[i]);
    }
    EXPECT_EQ(table.RowCount(), rows.size());
    EXPECT_GT(rows.size(), before / 2);
    return true;
}

TEST_P(JetSamples, TakeChangesInEveryTableThatCanBeWritten) {
    {
        std::shared_ptr<files::HostFile> file = files::SystemDisk().Open(path_, files::OpenMode::ReadOnly);
        if (detail::CheckHeader(*file, path_, false).version == detail::kJet3.version) {
            try {
                static_cast<void>(Database::Open(path_, Database::Access::ReadWrite));
                FAIL() << "a file of Access 97 was opened for writing";
            } catch (const Fault& fault) {
                EXPECT_EQ(fault.number, fault::kUnsupported);
            }
            return;
        }
    }
    std::map<std::string, std::multiset<std::string>> expected;
    std::set<std::string> refused;
    {
        const auto database = Database::Open(path_, Database::Access::ReadWrite);
        for (const std::string& name : database->TableNames()) {
            SCOPED_TRACE(name);
            Table& table = database->OpenTable(name);
            expected[name] = RowsOf(table);
            database->Begin();
            if (!ChangeTable(table, expected[name])) refused.insert(name);
            database->Commit();
        }
    }
    // Only tables of relationships, which another program keeps.
    EXPECT_EQ(refused.size(), GetParam() == "a2003-relations" ? 3U : 0U);

    const auto database = Database::Open(path_, Database::Access::ReadOnly);
    for (const auto& [name, rows] : expected) {
        SCOPED_TRACE(name);
        EXPECT_EQ(RowsOf(database->OpenTable(name)), rows);
        EXPECT_EQ(database->OpenTable(name).RowCount(), rows.size());
        if (RunCommand("command -v mdb-export").status == 0) {
            static const std::string kEnd = "=end of row=";
            const CommandResult read = RunCommand("mdb-export -H -b strip -R '" + kEnd + "' '" +
                                                  path_.string() + "' '" + name + "'");
            EXPECT_EQ(read.status, 0) << read.output;
            std::size_t count = 0;
            for (std::size_t at = 0; (at = read.output.find(kEnd, at)) != std::string::npos;
                 at += kEnd.size())
                ++count;
            EXPECT_EQ(count, rows.size()) << read.output.substr(0, 2000);
        }
    }
    const Checked checked = CheckAllIndexes(path_);
    EXPECT_GE(checked.indexes, 7);
    if (const char* checker = std::getenv("ZENVORA_MDBCHECK")) {
        const CommandResult result =
            RunCommand("python3 '" + std::string(checker) + "' '" + path_.string() + "'");
        EXPECT_EQ(result.status, 0) << result.output;
    }
}

}  // namespace
}  // namespace zenvora::jet

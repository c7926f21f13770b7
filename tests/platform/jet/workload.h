#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>

#include "platform/jet/database.h"
#include "sample_table.h"

namespace zenvora::jet::testing_support {

/// What a table holds: street to note and town.
struct Content {
    struct Row {
        std::string town, note;
        std::int32_t number = 0;
        friend bool operator==(const Row&, const Row&) = default;
    };
    std::map<std::string, Row> rows;
    std::size_t columns = 0;
    friend bool operator==(const Content&, const Content&) = default;
};

/// The table's content by a scan; every index must name the same rows, or the answer has a row "INDEX n".
inline Content ReadContent(Database& database) {
    Table& table = database.OpenTable("Sample");
    Content content;
    content.columns = table.Definition().columns.size();
    std::map<std::pair<std::uint32_t, unsigned>, std::string> byId;
    table.Scan([&](const RowView& view) {
        std::string street;
        Content::Row row;
        view.AppendText(0, street);
        view.AppendText(9, row.note);
        view.AppendText(13, row.town);
        row.number = static_cast<std::int32_t>(view.Number(4));
        byId[{view.Id().page, view.Id().slot}] = street;
        if (!content.rows.emplace(street, row).second) content.rows["TWICE " + street] = row;
        return true;
    });
    for (std::size_t index = 0; index < table.Definition().indexes.size(); ++index) {
        std::size_t entries = 0;
        table.ScanIndex(index, [&](RowId id) {
            ++entries;
            if (!byId.contains({id.page, id.slot})) content.rows["INDEX " + std::to_string(index)] = {};
            return true;
        });
        if (entries != byId.size()) content.rows["INDEX COUNT " + std::to_string(index)] = {};
    }
    for (const auto& [street, row] : content.rows) {
        const Value key = street;
        if (!table.Find(0, std::span(&key, 1))) content.rows["NOT FOUND " + street] = row;
        if (content.rows.size() > 2 * byId.size()) break;
    }
    if (table.RowCount() != byId.size()) content.rows["ROW COUNT"] = {};
    return content;
}

/// A fingerprint, to tell another process what the content is.
inline std::uint64_t Fingerprint(const Content& content) {
    std::uint64_t sum = 0xCBF29CE484222325U + content.columns;
    const auto add = [&](std::string_view text) {
        for (char c : text)
            sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        sum = (sum ^ 0x100U) * 0x100000001B3U;
    };
    for (const auto& [street, row] : content.rows) {
        add(street);
        add(row.town);
        add(row.note);
        add(std::to_string(row.number));
    }
    return sum;
}

/// Makes the database of the workload.
inline void PrepareWorkload(const std::filesystem::path& path, files::HostDisk& disk) {
    const auto database = Database::Create(path, kNow, disk);
    NewTable table = SampleTable();
    table.indexes[2].ignoreNulls = false;
    database->CreateTable(table, kNow);
}

/// Transactions of mixed changes, the same for the same seed. `committed` hears the content after each
/// commit, `committing` before it.
class Workload {
  public:
    Workload(Database& database, unsigned seed) : database_(database), random_(seed) {}

    void Run(int transactions, const std::function<void(const Content&)>& committed,
             const std::function<void(const Content&)>& committing = {}) {
        Table& table = database_.OpenTable("Sample");
        Content content = ReadContent(database_);
        std::map<std::string, RowId> ids;
        table.Scan([&](const RowView& view) {
            std::string street;
            view.AppendText(0, street);
            ids[street] = view.Id();
            return true;
        });
        for (int transaction = 0; transaction < transactions; ++transaction) {
            database_.Begin();
            Content next = content;
            if (transaction % 5 == 4) {
                table.AddColumn(TextColumn(("Column " + std::to_string(next.columns)).c_str(), 20));
                ++next.columns;
            }
            for (int change = 0; change < 12; ++change)
                Change(table, next, ids);
            if (committing) committing(next);
            database_.Commit();
            content = next;
            committed(content);
        }
    }

  private:
    std::string Text(std::size_t longest) {
        return std::string(random_() % (longest + 1), static_cast<char>('a' + random_() % 26));
    }

    void Change(Table& table, Content& content, std::map<std::string, RowId>& ids) {
        const auto kind = random_() % 10;
        if (kind < 6 || content.rows.empty()) {
            const Content::Row row{Text(200), Text(random_() % 4 == 0 ? 9000 : 40),
                                   static_cast<std::int32_t>(random_() % 2000000000)};
            const std::string street = std::to_string(random_()) + " " + Text(30);
            for (const auto& [other, each] : content.rows) {
                if (other == street || each.number == row.number) return;
            }
            std::vector<Value> values(table.Definition().columns.size());
            values[0] = street;
            values[4] = row.number;
            values[9] = row.note;
            values[13] = row.town;
            ids[street] = table.Insert(values);
            content.rows[street] = row;
            return;
        }
        auto victim = content.rows.begin();
        std::advance(victim, static_cast<std::ptrdiff_t>(random_() % content.rows.size()));
        const RowId id = ids.at(victim->first);
        if (kind < 8) {
            victim->second.town = Text(250);
            victim->second.note = Text(5000);
            const std::vector<std::size_t> columns{13, 9};
            const std::vector<Value> values{victim->second.town, victim->second.note};
            table.Update(id, columns, values);
        } else {
            table.Delete(id);
            ids.erase(victim->first);
            content.rows.erase(victim);
        }
    }

    Database& database_;
    std::mt19937 random_;
};

}  // namespace zenvora::jet::testing_support

#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "databook/template.h"
#include "platform/jet/database.h"
#include "platform/text/date.h"

/// Databooks to measure with. The records look like those of a large market: sales, listings, contracts and
/// cancelled listings over two years, one in twenty with something wrong. Each size is made once and removed
/// at the end of the program.
namespace zenvora::bench {

namespace fs = std::filesystem;

inline const text::Date kEffective = text::DayNumber(2010, 6, 30).value();

class Scratch {
  public:
    Scratch() : path_(fs::temp_directory_path() / ("zenvora-bench-" + std::to_string(getpid()))) {
        fs::create_directories(path_);
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    [[nodiscard]] const fs::path& Path() const { return path_; }

  private:
    fs::path path_;
};

inline const fs::path& Folder() {
    static const Scratch scratch;
    return scratch.Path();
}

class RecordMaker {
  public:
    explicit RecordMaker(jet::Table& table) : table_(table) {
        for (std::size_t i = 0; i < table.Definition().columns.size(); ++i) {
            defaults_.push_back(table.DefaultOf(i));
        }
    }

    void Add(int number) {
        values_ = defaults_;
        const int listed = 30 + Any(700);
        const double price = 1000.0 * (80 + Any(900));
        Set("CENTRALKEY", std::to_string(number) + " OAK STREET NORTH");
        Set("ADDRESS", std::to_string(number) + " Oak Street North");
        Set("CITY", std::string("Troy"));
        Set("ST", std::string("MI"));
        Set("ZIP", std::string("48083"));
        Set("ORIGLISTDATE", Back(listed));
        Set("ORIGLISTPRICE", price);
        if (Any(2) == 0) {
            Set("LASTLISTDATE", Back(listed - Any(30)));
            Set("LASTLISTPRICE", price - 1000.0 * Any(20));
        }
        const int left = listed - 1 - Any(listed < 200 ? listed - 1 : 200);
        switch (Any(10)) {
            case 0:
            case 1:
                break;
            case 2:
                Set("CONTRACTDATE", Back(left));
                break;
            case 3:
                Set("LISTCANCELDATE", Back(left));
                break;
            default:
                Set("SALEDATE", Back(left));
                if (Any(20) != 0) Set("SELLINGPR", price - 1000.0 * Any(30));
                break;
        }
        table_.Insert(values_);
    }

  private:
    int Any(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    static jet::Value Back(int days) { return jet::DateTime{kEffective - days}; }
    void Set(std::string_view column, jet::Value value) {
        values_[table_.Definition().FindColumn(column).value()] = std::move(value);
    }

    jet::Table& table_;
    std::mt19937 random_{1004};
    std::vector<jet::Value> defaults_;
    std::vector<jet::Value> values_;
};

/// A Databook of so many records that no run has judged.
inline fs::path FreshDatabook(int records) {
    static std::map<int, fs::path> made;
    if (const auto found = made.find(records); found != made.end()) return found->second;
    const fs::path path = Folder() / ("fresh-" + std::to_string(records) + ".mdb");
    databook::CreateTemplate(path, kEffective);
    const auto database = jet::Database::Open(path, jet::Database::Access::ReadWrite);
    RecordMaker maker{database->OpenTable("COMPS")};
    database->Begin();
    for (int number = 0; number < records; ++number) {
        maker.Add(number);
        if (number % 50000 == 49999) {
            database->Commit();
            database->Begin();
        }
    }
    database->Commit();
    return made[records] = path;
}

}  // namespace zenvora::bench

// Validity run and calculation over Databooks of 100,000 and 1,000,000 records.
//
// The records look like those of a large market: sales, listings, contracts and cancelled listings over two
// years, one in twenty with something wrong. The Databooks are made by the engine once for each size and
// removed at the end.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "analysis/calculation.h"
#include "analysis/validity.h"
#include "databook/template.h"
#include "platform/jet/database.h"
#include "platform/shell/clock.h"

namespace zenvora::analysis {
namespace {

namespace fs = std::filesystem;
using common::Date;

const Date kEffective = text::DayNumber(2010, 6, 30).value();

class SilentDesktop final : public controls::Desktop {
  public:
    controls::Answer Show(const controls::MessageBox&) override { return controls::Answer::Ok; }
    std::string Choose(const controls::FileDialog&) override { return {}; }
    void SetHourglass(bool) override {}
};

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

const fs::path& Folder() {
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
fs::path FreshDatabook(int records) {
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

/// A copy of a fresh Databook, opened as the main form opens one.
struct OpenDatabook {
    SilentDesktop desktop;
    shell::FixedClock clock{kEffective};
    ado::DatabasePool databooks;
    common::Session session{desktop, clock, databooks, {}};
    ado::Adodc adoDatabook{databooks, clock};

    explicit OpenDatabook(int records) {
        const fs::path copy = Folder() / "copy.mdb";
        fs::copy_file(FreshDatabook(records), copy, fs::copy_options::overwrite_existing);
        adoDatabook.Connectionstring =
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + copy.string() + ";Mode=ReadWrite;";
        adoDatabook.RecordSource = "SELECT * FROM COMPS ORDER BY CENTRALKEY";
        adoDatabook.Refresh();
    }

    void Check(Date effective) { CheckRecordValidity(session, adoDatabook, effective, "M", true); }
};

void CountRecords(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Half of the records get their current list values, one in ten its verdict.
void FirstValidityRun(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto databook = std::make_unique<OpenDatabook>(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        databook->Check(kEffective);
        state.PauseTiming();
        state.counters["valid"] = static_cast<double>(databook->session.validRecords);
        databook.reset();
        state.ResumeTiming();
    }
    CountRecords(state);
}

void ValidityRunAgain(benchmark::State& state) {
    OpenDatabook databook{static_cast<int>(state.range(0))};
    databook.Check(kEffective);
    for (auto _ : state)
        databook.Check(kEffective);
    CountRecords(state);
}

/// The user types another date: some sales grow too old, and come back.
void ValidityRunOfAnotherDay(benchmark::State& state) {
    OpenDatabook databook{static_cast<int>(state.range(0))};
    databook.Check(kEffective);
    bool later = true;
    for (auto _ : state) {
        databook.Check(kEffective + (later ? 7 : 0));
        later = !later;
    }
    CountRecords(state);
}

void CalculationPass(benchmark::State& state) {
    OpenDatabook databook{static_cast<int>(state.range(0))};
    databook.Check(kEffective);
    Results1004MC results;
    frmDataViewer viewer{databook.session, results};
    for (auto _ : state) {
        DoCalculations({databook.session, databook.adoDatabook, "06/30/2010", kEffective}, viewer);
    }
    double entries = 0;
    for (const SortedList& list : viewer.lstData)
        entries += list.ListCount();
    state.counters["entries"] = entries;
    CountRecords(state);
}

#define ZENVORA_SIZES ->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)
BENCHMARK(FirstValidityRun) ZENVORA_SIZES->Iterations(3);
BENCHMARK(ValidityRunAgain) ZENVORA_SIZES;
BENCHMARK(ValidityRunOfAnotherDay) ZENVORA_SIZES->Iterations(4);
BENCHMARK(CalculationPass) ZENVORA_SIZES;

}  // namespace
}  // namespace zenvora::analysis

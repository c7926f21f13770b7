// Validity run and calculation over Databooks of 100,000 and 1,000,000 records.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>
#include <string>

#include "analysis/calculation.h"
#include "analysis/validity.h"
#include "fresh_databook.h"
#include "platform/shell/clock.h"

namespace zenvora::analysis {
namespace {

namespace fs = std::filesystem;
using bench::Folder;
using bench::FreshDatabook;
using bench::kEffective;
using common::Date;

class SilentDesktop final : public controls::Desktop {
  public:
    controls::Answer Show(const controls::MessageBox&) override { return controls::Answer::Ok; }
    std::string Choose(const controls::FileDialog&) override { return {}; }
    void SetHourglass(bool) override {}
};

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

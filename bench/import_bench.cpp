// Reading and loading a delimited source of 32,000 rows with 12 mapped columns (all that go together).
//
// BM_Load makes a Databook in a temporary folder for each run; making it is not timed.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "databook/template.h"
#include "import/csv_wizard.h"
#include "import/delimited_source.h"
#include "import/unattended_import.h"
#include "platform/controls/desktop.h"
#include "platform/shell/clock.h"

namespace zenvora {
namespace {

constexpr int kRows = 32000;

/// A desktop that nobody looks at.
class QuietDesktop final : public controls::Desktop {
  public:
    controls::Answer Show(const controls::MessageBox&) override { return controls::Answer::Ok; }
    std::string Choose(const controls::FileDialog&) override { return {}; }
    void SetHourglass(bool) override {}
};

/// A store that takes everything.
class NoStore final : public importing::LoadTarget {
  public:
    void Open(std::string_view) override {}
    void Execute(std::string_view statement) override { benchmark::DoNotOptimize(statement.data()); }
    void Close() override {}
    void BeginTrial(std::string_view) override {}
    void EndTrial() noexcept override {}
    std::vector<importing::StoredField> FindRecord(std::string_view) override { return {}; }
};

constexpr const char* kMap =
    "Address <-> Address\r\nList Date <-> Original Listing Date\r\nList Price <-> Original Listing Price\r\n"
    "Change Date <-> Current Listing Date\r\nNew Price <-> Current Listing Price\r\n"
    "Under Contract <-> Contract Date\r\nOff Market <-> Listing Cancel Date\r\nSold <-> Sale Date\r\n"
    "Sold Price <-> Selling Price\r\nTown <-> City\r\nST <-> State\r\nPostcode <-> Zip\r\n";

std::string SourceOf(int rows) {
    std::string text =
        "MLS,Status,Address,Town,ST,Postcode,List Date,List Price,Change Date,New Price,Under Contract,Off "
        "Market,Sold,"
        "Sold Price,Remarks\r\n";
    for (int row = 0; row < rows; ++row) {
        // 7,919 is prime, so that the keys come in no order.
        const int price = 200 + row % 300;
        text.append("A").append(std::to_string(100000 + row)).append(",Closed,\"");
        text.append(std::to_string(row * 7919LL % 32003 + 1)).append(" Birchmere Ct, Unit ");
        text.append(std::to_string(row % 9)).append("\",Ashby Falls,MI,48901,01/30/2026,\"$");
        text.append(std::to_string(price)).append(",900\",02/15/2026,").append(std::to_string(price - 10));
        text.append("500.00,2026-03-01,,3/28/26,251000,Updated kitchen and roof\r\n");
    }
    return text;
}

void BM_Parse(benchmark::State& state) {
    const std::string text = SourceOf(kRows);
    for (auto _ : state) {
        importing::SourceGrid grid;
        importing::DelimitedFormat format;
        std::vector<std::uint32_t> lines;
        importing::ParseDelimitedText(text, "LISTINGS.CSV", true, grid, format, lines);
        benchmark::DoNotOptimize(grid.Rows());
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_Parse)->Unit(benchmark::kMillisecond);

/// A folder with the source, its map and room for Databooks.
struct Work {
    Work() {
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "L.csv", std::ios::binary) << SourceOf(kRows);
        std::ofstream(folder / "L.map", std::ios::binary) << kMap;
    }
    ~Work() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zenvora-bench-" + std::to_string(getpid()));
    QuietDesktop desktop;
    shell::FixedClock clock{*text::DayNumber(2026, 6, 30)};
};

/// All but the store: reading, statements and, with argument 1, the log.
void BM_Statements(benchmark::State& state) {
    Work work;
    for (auto _ : state) {
        NoStore store;
        ado::DatabasePool pool;
        common::Session session{work.desktop, work.clock, pool, {}};
        importing::frmCSVWizard wizard(session, store);
        wizard.CSVFilename = (work.folder / "L.csv").string();
        wizard.g_MapFileName = (work.folder / "L.map").string();
        wizard.LogWanted = state.range(0) != 0;
        wizard.RunUnattended(importing::SourceKind::Delimited);
        benchmark::DoNotOptimize(wizard.Outcome().written);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_Statements)->Arg(0)->Arg(1)->ArgName("log")->Unit(benchmark::kMillisecond);

/// The whole import, from the file to the closed Databook.
void BM_Load(benchmark::State& state) {
    Work work;
    for (auto _ : state) {
        state.PauseTiming();
        const std::filesystem::path databook = work.folder / "L.mdb";
        std::filesystem::remove(databook);
        databook::CreateTemplate(databook, work.clock.Now());
        {
            ado::DatabasePool pool;
            common::Session session{work.desktop, work.clock, pool, {}};
            importing::ImportJob job;
            job.source = (work.folder / "L.csv").string();
            job.map = (work.folder / "L.map").string();
            job.databook = databook.string();
            state.ResumeTiming();
            const auto result = importing::ImportFile(session, job, [] {});
            state.PauseTiming();
            if (result.outcome.written != kRows) state.SkipWithError("not every row was written");
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The same file into a keyed table of another program, when it is installed: what BM_Load is measured by.
void BM_LoadBySqlite3(benchmark::State& state) {
    Work work;
    const std::string folder = work.folder.string();
    const std::string command =
        "cd '" + folder +
        "' && rm -f L.db && sqlite3 L.db 'CREATE TABLE COMPS(MLS,Status,Address TEXT PRIMARY KEY,Town,ST,"
        "Postcode,a,b,c,d,e,f,g,h,Remarks)' '.import --csv --skip 1 L.csv COMPS'";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0) {
            state.SkipWithError("sqlite3 is not installed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_LoadBySqlite3)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace zenvora

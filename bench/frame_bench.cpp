// What the user of the main window waits for: a Databook opened to its filled grid, a keystroke in the date
// box, a record excluded, the grid scrolled. The screen's own work is not in these figures.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <string>

#include "databook/template.h"
#include "frame/zenvora_program.h"
#include "fresh_databook.h"
#include "platform/files/whole_file.h"

namespace zenvora::frame {
namespace {

using bench::Folder;

/// A user who presses "Go!" and chooses a file.
class ScriptedUser final : public controls::Desktop {
  public:
    std::string file;
    controls::Answer Show(const controls::MessageBox&) override { return controls::Answer::Yes; }
    std::string Choose(const controls::FileDialog&) override { return file; }
    void ShowForm(controls::Form& form, controls::Modality modality) override {
        if (auto* const go = dynamic_cast<controls::CommandButton*>(form.Find("cmdOK"))) go->Click();
        if (modality == controls::Modality::Modal && form.Visible()) form.Close();
    }
    void SetHourglass(bool) override {}
};

/// The program with a Databook of so many records open.
struct OpenProgram {
    explicit OpenProgram(int records) : databook(Folder() / ("frame-" + std::to_string(records) + ".mdb")) {
        const auto driveC = Folder() / "C";
        std::filesystem::create_directories(driveC / "Appraise");
        std::filesystem::create_directories(driveC / "ZVR/DATA");
        files::WriteWholeFile(driveC / "Appraise/ZVR.INI", "[DIRECTORIES]\nTABLE=COMPS\n");
        if (!std::filesystem::exists(driveC / "ZVR/NEWDATA.MDB"))
            databook::CreateTemplate(driveC / "ZVR/NEWDATA.MDB", bench::kEffective);
        std::filesystem::copy_file(bench::FreshDatabook(records), databook,
                                   std::filesystem::copy_options::overwrite_existing);
        user.file = databook.string();
        program.Start();
    }
    ~OpenProgram() { program.Main().Close(); }

    std::filesystem::path databook;
    ScriptedUser user;
    shell::FixedClock clock{bench::kEffective};
    ado::DatabasePool databooks;
    ZenvoraProgram program{{.desktop = user,
                            .clock = clock,
                            .databooks = databooks,
                            .machine = shell::NoShell(),
                            .drives = files::DriveMap(Folder() / "C"),
                            .share = {},
                            .services = {}}};
};

/// The cells of the rows that a screen shows.
void ReadScreen(const controls::Grid& grid, int first) {
    for (int row = first; row < std::min(first + 40, grid.RowCount()); ++row) {
        for (int column = 0; column < 10; ++column)
            benchmark::DoNotOptimize(grid.Shown(row, column));
    }
}

void OpenToFilledGrid(benchmark::State& state) {
    OpenProgram open(static_cast<int>(state.range(0)));
    frmMain& main = open.program.Main();
    for (auto _ : state) {
        main.DropFile(open.user.file);
        ReadScreen(main.tdbgData, 0);
    }
}
BENCHMARK(OpenToFilledGrid)->Arg(500)->Arg(100'000)->Unit(benchmark::kMillisecond);

void KeystrokeInTheDateBox(benchmark::State& state) {
    OpenProgram open(static_cast<int>(state.range(0)));
    frmMain& main = open.program.Main();
    int day = 0;
    for (auto _ : state) {
        main.txtBaseDate.SetText("6/1" + std::to_string(day++ % 10) + "/2010");
        ReadScreen(main.tdbgData, 0);
    }
}
BENCHMARK(KeystrokeInTheDateBox)->Arg(500)->Arg(100'000)->Unit(benchmark::kMillisecond);

void ExcludeARecord(benchmark::State& state) {
    OpenProgram open(static_cast<int>(state.range(0)));
    frmMain& main = open.program.Main();
    int row = 0;
    for (auto _ : state) {
        main.tdbgData.MoveTo(row++ % main.tdbgData.RowCount(), 0);
        main.tdbgData.DblClick();
        ReadScreen(main.tdbgData, 0);
    }
}
BENCHMARK(ExcludeARecord)->Arg(500)->Arg(100'000)->Unit(benchmark::kMillisecond);

void ScrollAPage(benchmark::State& state) {
    OpenProgram open(static_cast<int>(state.range(0)));
    frmMain& main = open.program.Main();
    int first = 0;
    for (auto _ : state) {
        ReadScreen(main.tdbgData, first);
        first = (first + 7919) % main.tdbgData.RowCount();
    }
}
BENCHMARK(ScrollAPage)->Arg(10)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zenvora::frame

#include "cli/command.h"
#include "cli/figures_output.h"
#include "cli/judged_databook.h"
#include "cli/table.h"

namespace zenvora::cli {

namespace {

class CalcCommand final : public Command {
  public:
    CalcCommand()
        : Command({"calc", "Work out the figures of Form 1004MC",
                   "LISTINGS.mdb --date 06/30/2010 --format json", true}) {}

    void Declare(CLI::App& arguments) override {
        databook_.Declare(arguments, "the calculation");
        arguments.add_flag("--lists", withLists_, "Add the eighteen lists with their five statistics");
    }

    Exit Run(Call& call) override {
        const auto opened = databook_.Open(call, "the figures are worked out");
        auto& control = *opened;

        analysis::Results1004MC results;
        analysis::frmDataViewer viewer(call.session, results);
        WorkOutFigures(call, control, viewer);
        const long count = control.Recordset().RecordCount();
        const auto valid = databook_.noCheck ? std::nullopt : std::optional<long>(call.session.validRecords);
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                out << CountLine(call.effectiveDate, count, valid) << '\n';
                WriteFiguresText(out, results);
                if (withLists_) WriteListsText(out, viewer);
                break;
            case OutputFormat::Csv:
                WriteFiguresCsv(out, results, withLists_ ? &viewer : nullptr);
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["effectiveDate"] = IsoDate(call.effectiveDate);
                json["records"] = count;
                json["valid"] = valid ? Json(*valid) : Json(nullptr);
                json["results"] = FiguresJson(results);
                if (withLists_) json["lists"] = ListsJson(viewer);
                out << Compact(json) << '\n';
                break;
            }
        }
        return Exit::Done;
    }

  private:
    JudgedDatabook databook_;
    bool withLists_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeCalcCommand() {
    return std::make_unique<CalcCommand>();
}

}  // namespace zenvora::cli

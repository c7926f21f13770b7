#include "analysis/calculation.h"
#include "cli/command.h"
#include "cli/figures_output.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "platform/text/number.h"

namespace zenvora::cli {

namespace {

class CalcCommand final : public Command {
  public:
    CalcCommand()
        : Command({"calc", "Work out the figures of Form 1004MC",
                   "LISTINGS.mdb --date 06/30/2010 --format json", true}) {}

    void Declare(CLI::App& arguments) override {
        arguments
            .add_option("DATABOOK", databook_,
                        "The Databook; the check before the calculation writes its verdicts into it")
            ->required();
        arguments.add_flag("--no-check", noCheck_,
                           "Trust the verdicts of the last check; nothing is written");
        arguments.add_flag("--lists", withLists_, "Add the eighteen lists with their five statistics");
    }

    Exit Run(Call& call) override {
        const auto opened = OpenJudgedDatabook(call.session, databook_, call.effectiveDate, noCheck_,
                                               "the figures are worked out");
        auto& control = *opened;

        analysis::Results1004MC results;
        analysis::frmDataViewer viewer(call.session, results);
        const std::string dateText = text::DateText(call.effectiveDate);
        analysis::DoCalculations({.session = call.session,
                                  .adoDatabook = control,
                                  .txtBaseDate = dateText,
                                  .effectiveDate = call.effectiveDate},
                                 viewer);
        const long count = control.Recordset().RecordCount();
        const auto valid = noCheck_ ? std::nullopt : std::optional<long>(call.session.validRecords);
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
    std::string databook_;
    bool noCheck_ = false;
    bool withLists_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeCalcCommand() {
    return std::make_unique<CalcCommand>();
}

}  // namespace zenvora::cli

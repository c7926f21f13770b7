#include "analysis/explanation.h"
#include "analysis/validity.h"
#include "cli/command.h"
#include "cli/json_lines.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/text/number.h"

namespace zenvora::cli {

namespace {

/// Key, flag and explanation of a record.
struct Verdict {
    jet::Value key;
    jet::Value selected;
    std::string explanation;
};

/// Walks the records in key order and judges each as it stands.
void ForEachVerdict(ado::Adodc& control, common::Date effectiveDate,
                    const std::function<void(const Verdict&)>& visit) {
    auto& records = control.Recordset();
    if (records.RecordCount() == 0) return;
    const int key = records.FieldIndex("CENTRALKEY");
    const int selected = records.FieldIndex("SELECTED");
    for (records.MoveFirst(); !records.Eof(); records.MoveNext()) {
        visit({records.Value(key), records.Value(selected),
               analysis::BuildInvalidExplanation(control, effectiveDate)});
    }
}

class CheckCommand final : public Command {
  public:
    CheckCommand()
        : Command({"check", "Check every record as of a date and write the verdicts",
                   "LISTINGS.mdb --date 06/30/2010", true}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook; verdicts and repairs are written into it")
            ->required();
    }

    Exit Run(Call& call) override {
        const auto opened = OpenDatabook(call.session, databook_, Access::Write);
        auto& control = *opened;
        analysis::CheckRecordValidity(call.session, control, call.effectiveDate, "M", true);

        const long count = control.Recordset().RecordCount();
        const long valid = call.session.validRecords;
        auto& out = call.io.out;
        if (call.format == OutputFormat::Json) {
            out << R"({"effectiveDate":")" << IsoDate(call.effectiveDate) << R"(","records":)"
                << text::IntegerText(count) << R"(,"valid":)" << text::IntegerText(valid)
                << R"(,"verdicts":[)";
            JsonLines lines(out);
            ForEachVerdict(control, call.effectiveDate, [&](const Verdict& verdict) {
                Json line = Json::object();
                line["CENTRALKEY"] = ToJson(verdict.key);
                line["SELECTED"] = ToJson(verdict.selected);
                line["explanation"] = verdict.explanation;
                lines.Add(line);
            });
            lines.End();
            return Exit::Done;
        }
        const std::vector<Column> columns{{"CENTRALKEY"}, {"SELECTED"}, {"explanation"}};
        const RowSource rows = [&](const auto& visit) {
            ForEachVerdict(control, call.effectiveDate, [&](const Verdict& verdict) {
                visit({ToCsv(verdict.key), ToCsv(verdict.selected), verdict.explanation});
            });
        };
        if (call.format == OutputFormat::Csv) {
            WriteCsv(out, columns, rows);
            return Exit::Done;
        }
        WriteText(out, columns, rows);
        out << '\n' << CountLine(call.effectiveDate, count, valid) << '\n';
        return Exit::Done;
    }

  private:
    std::string databook_;
};

}  // namespace

std::unique_ptr<Command> MakeCheckCommand() {
    return std::make_unique<CheckCommand>();
}

}  // namespace zenvora::cli

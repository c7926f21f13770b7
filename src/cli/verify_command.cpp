#include "cli/command.h"
#include "cli/failure.h"
#include "cli/json_lines.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/jet/verify.h"
#include "platform/text/number.h"

namespace zenvora::cli {

namespace {

using Finding = jet::VerifyFinding;

const char* SeverityText(const Finding& finding) {
    return finding.severity == Finding::Severity::Error ? "error" : "note";
}

std::string Counted(std::size_t count, const std::string& what) {
    return text::IntegerText(static_cast<long>(count)) + " " + what + (count == 1 ? "" : "s");
}

/// "page 17, row 3, table COMPS, index PrimaryKey"
std::string PlaceText(const Finding& finding) {
    std::string place;
    const auto add = [&](const std::string& part) { place += (place.empty() ? "" : ", ") + part; };
    if (finding.page >= 0) add("page " + text::IntegerText(finding.page));
    if (finding.row >= 0) add("row " + text::IntegerText(finding.row));
    if (!finding.table.empty()) add("table " + finding.table);
    if (!finding.index.empty()) add("index " + finding.index);
    return place;
}

/// Names come from the file: nothing in them may speak to the terminal.
std::string OneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return text;
}

class VerifyCommand final : public Command {
  public:
    VerifyCommand() : Command({"verify", "Look for damage in a Databook", "LISTINGS.mdb"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook; nothing in it is changed")->required();
    }

    Exit Run(Call& call) override {
        const jet::VerifyReport report = jet::Verify(HostPath(databook_));
        switch (call.format) {
            case OutputFormat::Text:
                PrintText(call.io.out, report);
                break;
            case OutputFormat::Json:
                PrintJson(call.io.out, report);
                break;
            case OutputFormat::Csv:
                PrintCsv(call.io.out, report);
                break;
        }
        if (report.Sound()) return Exit::Done;
        throw Failure{Exit::SomethingRefused,
                      databook_ + " is damaged: " + Counted(report.errors, "error") +
                          ". Go on with a backup copy, or repair it; change nothing in it before."};
    }

  private:
    void PrintText(std::ostream& out, const jet::VerifyReport& report) const {
        for (const Finding& finding : report.findings) {
            const std::string place = PlaceText(finding);
            out << OneLine(SeverityText(finding) + std::string(": ") + place + (place.empty() ? "" : ": ") +
                           finding.sentence)
                << '\n';
        }
        if (report.LeftOut() > 0)
            out << "and " << Counted(report.LeftOut(), "finding") << " of the same kinds\n";
        out << databook_ << (report.Sound() ? " is sound" : " is damaged") << ": "
            << Counted(report.errors, "error") << ", " << Counted(report.notes, "note") << '\n';
    }

    void PrintJson(std::ostream& out, const jet::VerifyReport& report) const {
        Json head = Json::object();
        head["databook"] = databook_;
        head["sound"] = report.Sound();
        head["errors"] = report.errors;
        head["notes"] = report.notes;
        std::string text = Compact(head);
        text.pop_back();
        out << text << R"(,"findings":[)";
        JsonLines lines(out);
        for (const Finding& finding : report.findings) {
            Json json = Json::object();
            json["severity"] = SeverityText(finding);
            json["page"] = finding.page < 0 ? Json() : Json(finding.page);
            json["table"] = finding.table.empty() ? Json() : Json(finding.table);
            json["index"] = finding.index.empty() ? Json() : Json(finding.index);
            json["row"] = finding.row < 0 ? Json() : Json(finding.row);
            json["sentence"] = finding.sentence;
            lines.Add(json);
        }
        lines.End();
    }

    static void PrintCsv(std::ostream& out, const jet::VerifyReport& report) {
        std::vector<std::vector<std::string>> rows;
        for (const Finding& finding : report.findings) {
            rows.push_back({SeverityText(finding), finding.page < 0 ? "" : text::IntegerText(finding.page),
                            finding.table, finding.index,
                            finding.row < 0 ? "" : text::IntegerText(finding.row), finding.sentence});
        }
        WriteCsv(out, {{"severity"}, {"page"}, {"table"}, {"index"}, {"row"}, {"sentence"}},
                 Rows(std::move(rows)));
    }

    std::string databook_;
};

}  // namespace

std::unique_ptr<Command> MakeVerifyCommand() {
    return std::make_unique<VerifyCommand>();
}

}  // namespace zenvora::cli

#include <algorithm>
#include <string_view>

#include "cli/command.h"
#include "cli/judged_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/text/number.h"
#include "transfer/audit_text.h"

namespace zenvora::cli {

namespace {

/// The lines of both parts: part, number of the line in it from 1, text.
std::vector<std::vector<std::string>> Lines(const transfer::AuditText& audit) {
    std::vector<std::vector<std::string>> rows;
    int part = 0;
    for (std::string_view text : {std::string_view(audit.part1), std::string_view(audit.part2)}) {
        ++part;
        for (int line = 1; !text.empty(); ++line) {
            constexpr std::string_view kLineEnd = "\r\n";
            const std::size_t end = std::min(text.find(kLineEnd), text.size());
            rows.push_back(
                {text::IntegerText(part), text::IntegerText(line), std::string(text.substr(0, end))});
            text.remove_prefix(std::min(end + kLineEnd.size(), text.size()));
        }
    }
    return rows;
}

class AddendumCommand final : public Command {
  public:
    AddendumCommand()
        : Command({"addendum", "Show the audit text for a text addendum of the report",
                   "LISTINGS.mdb --date 06/30/2010", true}) {}

    void Declare(CLI::App& arguments) override { databook_.Declare(arguments, "the text is made"); }

    Exit Run(Call& call) override {
        const auto opened = databook_.Open(call, "the text is made");
        const transfer::AuditText audit = transfer::BuildAuditText(*opened, call.effectiveDate);
        if (audit.leftOut > 0 && !call.quiet) {
            call.io.err << databook_.path << ": " << transfer::LeftOutText(audit.leftOut)
                        << " It takes 72 lines a part; the audit report of the command print has them all.\n";
        }
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                WriteText(out, {{"Part", true}, {"Line", true}, {"Text"}}, Rows(Lines(audit)));
                break;
            case OutputFormat::Csv:
                WriteCsv(out, {{"part"}, {"line"}, {"text"}}, Rows(Lines(audit)));
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["part1"] = audit.part1;
                json["part2"] = audit.part2;
                out << Compact(json) << '\n';
                break;
            }
        }
        return Exit::Done;
    }

  private:
    JudgedDatabook databook_;
};

}  // namespace

std::unique_ptr<Command> MakeAddendumCommand() {
    return std::make_unique<AddendumCommand>();
}

}  // namespace zenvora::cli

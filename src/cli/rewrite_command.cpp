#include <string>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/jet/compact.h"
#include "platform/jet/convert.h"

namespace zenvora::cli {

namespace {

std::string Counted(std::uint64_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

/// The two commands that write a Databook anew in its place.
class RewriteCommand final : public Command {
  public:
    enum class Kind { Compact, Convert };

    RewriteCommand(Kind kind, Verb verb) : Command(std::move(verb)), kind_(kind) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook; the original is kept as DATABOOK.bak")
            ->required();
    }

    Exit Run(Call& call) override {
        const auto rewrite = kind_ == Kind::Compact ? jet::Compact : jet::Convert;
        const auto report = rewrite(HostPath(databook_), call.session.clock.Now(), files::SystemDisk());
        switch (call.format) {
            case OutputFormat::Text:
                WriteSentence(call.io.out, report);
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, {{"table"}, {"rows"}}, Rows(TableRows(report)));
                break;
            case OutputFormat::Json:
                WriteJson(call.io.out, report);
                break;
        }
        if (report.contents.leftBehind.empty()) return Exit::Done;
        throw Failure{Exit::SomethingRefused,
                      databook_ + ": not carried over: " + Joined(report.contents.leftBehind) +
                          ". They stay in " + Shown(report.backup) + "; keep it if they are needed."};
    }

  private:
    static std::vector<std::vector<std::string>> TableRows(const jet::RewriteReport& report) {
        std::vector<std::vector<std::string>> rows;
        for (const auto& table : report.contents.tables)
            rows.push_back({table.name, std::to_string(table.rows)});
        return rows;
    }

    void WriteSentence(std::ostream& out, const jet::RewriteReport& report) const {
        std::uint64_t records = 0;
        for (const auto& table : report.contents.tables)
            records += table.rows;
        const std::string contents = Counted(report.contents.tables.size(), "table", "tables") + ", " +
                                     Counted(records, "record", "records");
        out << databook_ << ": ";
        if (kind_ == Kind::Compact) {
            out << "compacted from " << report.bytesBefore << " to " << report.bytesAfter << " bytes ("
                << contents << ")";
        } else {
            out << "converted from Access 97 to the format of Access 2000 to 2003 (" << contents << ")";
        }
        out << "; the original is kept as " << Shown(report.backup) << "\n";
    }

    void WriteJson(std::ostream& out, const jet::RewriteReport& report) const {
        Json json = Json::object();
        json["databook"] = databook_;
        json["backup"] = Shown(report.backup);
        json["bytesBefore"] = report.bytesBefore;
        json["bytesAfter"] = report.bytesAfter;
        json["tables"] = Json::array();
        for (const auto& table : report.contents.tables)
            json["tables"].push_back({{"name", table.name}, {"rows", table.rows}});
        json["notCarried"] = report.contents.leftBehind;
        out << Compact(json) << '\n';
    }

    Kind kind_;
    std::string databook_;
};

}  // namespace

std::unique_ptr<Command> MakeCompactCommand() {
    return std::make_unique<RewriteCommand>(
        RewriteCommand::Kind::Compact,
        Command::Verb{"compact", "Write a Databook anew, without the room that deleted records left behind",
                      "LISTINGS.mdb"});
}

std::unique_ptr<Command> MakeConvertCommand() {
    return std::make_unique<RewriteCommand>(
        RewriteCommand::Kind::Convert,
        Command::Verb{"convert", "Bring a Databook of Access 97 into the format that can be written",
                      "OLD.mdb"});
}

}  // namespace zenvora::cli

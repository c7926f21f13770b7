#include <filesystem>
#include <string>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/finished_file.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/jet/repair.h"

namespace zenvora::cli {

namespace {

std::string PlaceOf(const jet::RepairLoss& loss) {
    std::string place = loss.table;
    const auto add = [&](const std::string& part) { place += (place.empty() ? "" : ", ") + part; };
    if (loss.page >= 0) add("page " + std::to_string(loss.page));
    if (loss.row >= 0) add("row " + std::to_string(loss.row));
    return place;
}

class RepairCommand final : public Command {
  public:
    RepairCommand()
        : Command({"repair", "Save every record that can be read of a damaged Databook into a new one",
                   "LISTINGS.mdb --into SAVED.mdb"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The damaged Databook; it is only read")->required();
        arguments.add_option("--into", into_, "The Databook to make")->type_name("NEW")->required();
        arguments.add_flag("--force", force_, "Replace an existing file; it is kept as NEW.bak");
    }

    Exit Run(Call& call) override {
        std::error_code ignored;
        if (std::filesystem::equivalent(HostPath(databook_), HostPath(into_), ignored)) {
            throw Failure{Exit::BadCommandLine,
                          databook_ + " cannot be saved into itself. Name another file with --into."};
        }
        FinishedFile file(HostPath(into_), force_);
        const auto report = jet::Repair(HostPath(databook_), file.Path(), call.session.clock.Now());
        file.Finish();
        switch (call.format) {
            case OutputFormat::Text:
                WriteReport(call.io.out, report);
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, {{"table"}, {"saved"}, {"lost"}, {"cut"}, {"stated"}},
                         Rows(TableRows(report)));
                break;
            case OutputFormat::Json:
                WriteJson(call.io.out, report);
                break;
        }
        if (report.Complete() && report.leftBehind.empty()) return Exit::Done;
        std::string line = databook_ + ": ";
        if (!report.Complete()) {
            line += report.losses == 1 ? "one thing" : std::to_string(report.losses) + " things";
            line += " could not be saved as they stood";
            if (const auto& first = report.lost.front(); report.losses == 1)
                line += " (" + PlaceOf(first) + ": " + first.sentence + ")";
        }
        if (!report.leftBehind.empty()) {
            line += std::string(report.Complete() ? "" : "; ") + "not carried over: ";
            for (std::size_t i = 0; i < report.leftBehind.size(); ++i)
                line += (i == 0 ? "" : ", ") + report.leftBehind[i];
        }
        if (report.tables.empty()) {
            throw Failure{Exit::SomethingRefused, databook_ + ": no table of it could be saved, and " +
                                                      into_ + " is empty. Look for a backup copy."};
        }
        throw Failure{Exit::SomethingRefused,
                      line + ". Keep the damaged file until " + into_ + " has been looked through."};
    }

  private:
    static std::vector<std::vector<std::string>> TableRows(const jet::RepairReport& report) {
        std::vector<std::vector<std::string>> rows;
        for (const auto& table : report.tables) {
            rows.push_back({table.name, std::to_string(table.rows), std::to_string(table.rowsLost),
                            std::to_string(table.valuesCut), std::to_string(table.rowsStated)});
        }
        return rows;
    }

    static void WriteReport(std::ostream& out, const jet::RepairReport& report) {
        if (!report.tables.empty())
            WriteText(out,
                      {{"Table"}, {"Saved", true}, {"Lost", true}, {"Cut", true}, {"Stated before", true}},
                      Rows(TableRows(report)));
        if (report.lost.empty()) return;
        if (!report.tables.empty()) out << '\n';
        std::vector<std::vector<std::string>> losses;
        for (const auto& loss : report.lost)
            losses.push_back({PlaceOf(loss), loss.sentence});
        WriteText(out, {{"Where"}, {"What"}}, Rows(std::move(losses)));
        if (report.losses > report.lost.size())
            out << "and " << report.losses - report.lost.size() << " more\n";
    }

    void WriteJson(std::ostream& out, const jet::RepairReport& report) const {
        Json json = Json::object();
        json["databook"] = databook_;
        json["into"] = into_;
        json["tables"] = Json::array();
        for (const auto& table : report.tables) {
            json["tables"].push_back({{"name", table.name},
                                      {"saved", table.rows},
                                      {"lost", table.rowsLost},
                                      {"cut", table.valuesCut},
                                      {"stated", table.rowsStated}});
        }
        json["losses"] = report.losses;
        json["lost"] = Json::array();
        for (const auto& loss : report.lost) {
            json["lost"].push_back({{"table", loss.table},
                                    {"page", loss.page < 0 ? Json(nullptr) : Json(loss.page)},
                                    {"row", loss.row < 0 ? Json(nullptr) : Json(loss.row)},
                                    {"what", loss.sentence}});
        }
        json["notCarried"] = report.leftBehind;
        out << Compact(json) << '\n';
    }

    std::string databook_;
    std::string into_;
    bool force_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeRepairCommand() {
    return std::make_unique<RepairCommand>();
}

}  // namespace zenvora::cli

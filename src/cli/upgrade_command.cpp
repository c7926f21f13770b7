#include <string>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "common/error_rule.h"
#include "databook/schema_upgrade.h"

namespace zenvora::cli {

namespace {

class UpgradeCommand final : public Command {
  public:
    UpgradeCommand()
        : Command({"upgrade", "Bring an old Databook up to date: add the listing columns and fill them",
                   "OLD.mdb"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook; the old file is kept as DATABOOK.bak")
            ->required();
    }

    Exit Run(Call& call) override {
        const auto control = ControlOf(call.session, databook_, Access::Write);
        Write(call, Upgrade(call.session, *control));
        return Exit::Done;
    }

  private:
    databook::UpgradeOutcome Upgrade(common::Session& session, ado::Adodc& control) const {
        try {
            return databook::Check4NewListingFieldsMain(session, control, databook_);
        } catch (const Fault& fault) {
            if (fault.number != fault::kNoSuchTable) throw;
            throw Failure{Exit::FileTrouble, databook_ + " is no Databook: it has no table " + session.table +
                                                 ". Name the Databook that is to be upgraded."};
        } catch (const common::ProgramEnds&) {
            throw Failure{Exit::FileTrouble,
                          databook_ + " is no Databook: its table " + session.table +
                              " has no column CENTRALKEY. Name the Databook that is to be upgraded."};
        }
    }

    void Write(Call& call, const databook::UpgradeOutcome& outcome) const {
        auto& out = call.io.out;
        const std::string records = std::to_string(outcome.records);
        switch (call.format) {
            case OutputFormat::Text:
                out << databook_ << ": ";
                if (outcome.upgraded) {
                    out << "upgraded, " << records << (outcome.records == 1 ? " record" : " records");
                } else {
                    out << "up to date already";
                }
                if (!outcome.backup.empty()) out << "; the old file is kept as " << Shown(outcome.backup);
                out << '\n';
                break;
            case OutputFormat::Csv:
                WriteCsv(out, {{"databook"}, {"converted"}, {"upgraded"}, {"records"}, {"backup"}},
                         Rows({{databook_, outcome.converted ? "1" : "0", outcome.upgraded ? "1" : "0",
                                records, Shown(outcome.backup)}}));
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["databook"] = databook_;
                json["converted"] = outcome.converted;
                json["upgraded"] = outcome.upgraded;
                json["records"] = outcome.records;
                json["backup"] = outcome.backup.empty() ? Json(nullptr) : Json(Shown(outcome.backup));
                out << Compact(json) << '\n';
                break;
            }
        }
    }

    std::string databook_;
};

}  // namespace

std::unique_ptr<Command> MakeUpgradeCommand() {
    return std::make_unique<UpgradeCommand>();
}

}  // namespace zenvora::cli

#include "analysis/selection_toggle.h"
#include "cli/command.h"
#include "cli/failure.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "databook/selection.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace {

class SelectCommand final : public Command {
  public:
    SelectCommand()
        : Command({"select", "Exclude a valid record from the figures, or include it",
                   "LISTINGS.mdb \"12 OAK ST\" exclude"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook")->required();
        arguments.add_option("KEY", key_, "The record's key, in any case")->required();
        arguments.add_option("STATE", wanted_, "exclude or include")
            ->required()
            ->check(CLI::IsMember({"exclude", "include"}).description(""));
    }

    Exit Run(Call& call) override {
        const auto opened = OpenDatabook(call.session, databook_, Access::Write);
        auto& control = *opened;
        auto& records = control.Recordset();
        const std::string key = text::Trim(key_);
        if (records.RecordCount() > 0) records.Find(databook::KeyCriterion(key));
        if (records.Eof()) {
            throw Failure{Exit::SomethingRefused, databook_ + " has no record with the key \"" + key +
                                                      "\". \"zenvora-cli records\" lists the keys."};
        }
        const bool include = wanted_ == "include";
        const auto outcome = analysis::SetInclusion(
            call.session, control, include ? analysis::Inclusion::Included : analysis::Inclusion::Excluded);
        if (outcome == analysis::SelectionOutcome::Refused) {
            throw Failure{Exit::SomethingRefused,
                          databook_ + ": the record \"" + key +
                              "\" is invalid or was never checked, so it can be neither excluded "
                              "nor included. \"zenvora-cli check\" tells why."};
        }
        const auto storedKey = records.Value("CENTRALKEY");
        const auto flag = records.Value("SELECTED");
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                out << ToCsv(storedKey) << ": " << (include ? "included" : "excluded") << " (SELECTED "
                    << ToCsv(flag) << ")\n";
                break;
            case OutputFormat::Csv:
                WriteCsv(out, {{"CENTRALKEY"}, {"SELECTED"}}, Rows({{ToCsv(storedKey), ToCsv(flag)}}));
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["CENTRALKEY"] = ToJson(storedKey);
                json["SELECTED"] = ToJson(flag);
                out << Compact(json) << '\n';
                break;
            }
        }
        return Exit::Done;
    }

  private:
    std::string databook_;
    std::string key_;
    std::string wanted_;
};

}  // namespace

std::unique_ptr<Command> MakeSelectCommand() {
    return std::make_unique<SelectCommand>();
}

}  // namespace zenvora::cli

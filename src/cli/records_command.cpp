#include "cli/command.h"
#include "cli/open_databook.h"
#include "cli/recordset_output.h"
#include "cli/table.h"
#include "cli/values.h"

namespace zenvora::cli {

namespace {

class RecordsCommand final : public Command {
  public:
    RecordsCommand() : Command({"records", "Show the records in key order", "LISTINGS.mdb --format csv"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook")->required();
    }

    Exit Run(Call& call) override {
        auto control = OpenDatabook(call.session, databook_, Access::Read);
        auto& records = control->Recordset();
        switch (call.format) {
            case OutputFormat::Text:
                WriteText(call.io.out, ColumnsOf(records), RowsOf(records, ToGridText));
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, ColumnsOf(records), RowsOf(records, ToCsv));
                break;
            case OutputFormat::Json:
                WriteRecordsJson(call.io.out, records);
                break;
        }
        return Exit::Done;
    }

  private:
    std::string databook_;
};

}  // namespace

std::unique_ptr<Command> MakeRecordsCommand() {
    return std::make_unique<RecordsCommand>();
}

}  // namespace zenvora::cli

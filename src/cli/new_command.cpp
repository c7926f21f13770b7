#include "cli/command.h"
#include "cli/finished_file.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "databook/template.h"

namespace zenvora::cli {

namespace {

class NewCommand final : public Command {
  public:
    NewCommand() : Command({"new", "Make an empty Databook", "LISTINGS.mdb"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The file to make")->required();
        arguments.add_flag("--force", force_, "Replace an existing file; it is kept as DATABOOK.bak");
    }

    Exit Run(Call& call) override {
        FinishedFile file(HostPath(databook_), force_);
        file.Make([&](const auto& path) { databook::CreateTemplate(path, call.session.clock.Now()); });
        file.Finish();
        switch (call.format) {
            case OutputFormat::Text:
                call.io.out << databook_ << ": an empty Databook\n";
                break;
            case OutputFormat::Json:
                call.io.out << R"({"databook":)" << Compact(databook_) << "}\n";
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, {{"databook"}}, Rows({{databook_}}));
                break;
        }
        return Exit::Done;
    }

  private:
    std::string databook_;
    bool force_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeNewCommand() {
    return std::make_unique<NewCommand>();
}

}  // namespace zenvora::cli

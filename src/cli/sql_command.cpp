#include "cli/command.h"
#include "cli/failure.h"
#include "cli/open_databook.h"
#include "cli/recordset_output.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/ado/connection.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace {

/// True for a statement whose first word is SELECT.
bool IsSelect(std::string_view statement) {
    const auto start = statement.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) return false;
    const auto end = statement.find_first_of(" \t\r\n*[", start);
    return text::EqualsNoCase(statement.substr(start, end == std::string_view::npos ? end : end - start),
                              "SELECT");
}

class SqlCommand final : public Command {
  public:
    SqlCommand()
        : Command({"sql", "Run one statement: SELECT, INSERT, ALTER TABLE",
                   "LISTINGS.mdb \"SELECT CENTRALKEY, SELECTED FROM COMPS WHERE CITY = 'Troy'\""}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("DATABOOK", databook_, "The Databook")->required();
        arguments
            .add_option(
                "STATEMENT", statement_,
                "SELECT list-or-* FROM table [WHERE column = literal] [ORDER BY column], INSERT INTO, "
                "ALTER TABLE ADD, or ALTER TABLE ALTER COLUMN SET DEFAULT")
            ->required();
    }

    Exit Run(Call& call) override {
        try {
            return IsSelect(statement_) ? Select(call) : Execute(call);
        } catch (const Fault& fault) {
            if (IsFileFault(fault)) throw;
            throw Failure{Exit::SomethingRefused, FaultLine(fault, databook_)};
        }
    }

  private:
    Exit Select(Call& call) const {
        auto control = ControlOf(call.session, databook_, Access::Read);
        control->RecordSource = statement_;
        control->Refresh();
        auto& records = control->Recordset();
        switch (call.format) {
            case OutputFormat::Text:
                WriteText(call.io.out, ColumnsOf(records), RowsOf(records, jet::ValueText));
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, ColumnsOf(records), RowsOf(records, ToCsv));
                break;
            case OutputFormat::Json:
                WriteRowsJson(call.io.out, records);
                break;
        }
        return Exit::Done;
    }

    Exit Execute(Call& call) const {
        ado::Connection connection(call.session.databooks, call.session.clock, AlwaysTo(databook_));
        connection.Open(ConnectionText(Access::Write));
        const long affected = connection.Execute(statement_);
        connection.Close();
        const std::string text = text::IntegerText(affected);
        switch (call.format) {
            case OutputFormat::Text:
                call.io.out << "records affected: " << text << '\n';
                break;
            case OutputFormat::Json:
                call.io.out << R"({"affected":)" << text << "}\n";
                break;
            case OutputFormat::Csv:
                WriteCsv(call.io.out, {{"affected"}}, Rows({{text}}));
                break;
        }
        return Exit::Done;
    }

    std::string databook_;
    std::string statement_;
};

}  // namespace

std::unique_ptr<Command> MakeSqlCommand() {
    return std::make_unique<SqlCommand>();
}

}  // namespace zenvora::cli

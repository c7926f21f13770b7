// queue_driver COMMAND [SHELL COMMAND]: does one thing with the default printer, for print_queue.sh, and says
// what came of it.
//   probe    what the start of the program would find
//   audit    the Print button of the first page, over three records
//   calc     the Print button of the second page
// With a shell command audit and calc run it in the middle: after the probe, and audit again after its first
// texts.

#include <QApplication>
#include <QLabel>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/connection.h"
#include "platform/page/qt_form_print.h"
#include "platform/page/qt_printer.h"
#include "printing/audit_report.h"
#include "printing/calculation_print.h"
#include "support/temp_folder.h"

namespace zenvora {
namespace {

const text::Date kToday = *text::DayNumber(2010, 6, 30);

/// Says on standard output what it is told.
class SpokenDesktop final : public controls::Desktop {
  public:
    controls::Answer Show(const controls::MessageBox& message) override {
        std::printf("message: %s\n", message.text.c_str());
        return controls::Answer::Ok;
    }
    std::string Choose(const controls::FileDialog& /*dialog*/) override { return {}; }
    void SetHourglass(bool /*on*/) override {}
    /// Runs the shell command when the walk over the records begins.
    void Progress(long done, long total) override {
        if (done == 0 && total > 0 && !midway.empty()) RunShell(std::exchange(midway, {}));
    }
    static void RunShell(const std::string& command) {
        if (std::system(command.c_str()) != 0) std::printf("failed: %s\n", command.c_str());
    }

    std::string midway;
};

int Run(const std::string& command, const std::string& shell) {
    const auto printer = page::MakeDefaultPrinter("Zenvora");
    const auto defaults = printing::ProbePrinter(*printer);
    if (!defaults) {
        std::printf("no printer\n");
        return 0;
    }
    std::printf("printer %s, %.0f underscores wide\n", defaults->deviceName.c_str(),
                defaults->lineWidth / printer->TextWidth("_"));
    if (command == "probe") return 0;

    SpokenDesktop desktop;
    const shell::FixedClock clock(kToday);
    ado::DatabasePool databooks;
    common::Session session{desktop, clock, databooks, {}};
    if (command == "calc") {
        if (!shell.empty()) SpokenDesktop::RunShell(shell);
        QLabel window("Absorption Rate 18.67");
        window.resize(600, 300);
        printing::cmdPrintCalc(session, *page::MakeFormPrint(window, "Zenvora"));
        return 0;
    }
    const testing_support::TempFolder folder;
    const auto file = folder / "BOOK.mdb";
    databook::CreateTemplate(file, kToday);
    const auto source = databook::OneShotConnectionString(file.string());
    {
        ado::Connection connection(databooks, clock);
        connection.Open(source);
        for (const char* values :
             {"('12 OAK ST', '12 Oak St', #1/1/1900#, '1')", "('14 OAK ST', '14 Oak St', #6/1/2010#, '1')",
              "('16 OAK ST', '16 Oak St', #6/1/2010#, '0')"}) {
            connection.Execute(
                std::string("INSERT INTO COMPS (CENTRALKEY, ADDRESS, SALEDATE, SELECTED) VALUES ") + values);
        }
    }
    ado::Adodc control(databooks, clock);
    control.Connectionstring = source;
    databook::AdoSelect(control, "COMPS", databook::kMainFieldList, databook::kKeyOrder);
    desktop.midway = shell;
    printing::cmdPrintAudit(
        {.session = session, .adoDatabook = control, .effectiveDate = kToday, .databookName = "BOOK.MDB"},
        *printer, *defaults);
    return 0;
}

}  // namespace
}  // namespace zenvora

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    if (count < 2) return 2;
    try {
        return zenvora::Run(arguments[1], count > 2 ? arguments[2] : "");
    } catch (const std::exception& failure) {
        std::printf("fault: %s\n", failure.what());
        return 1;
    }
}

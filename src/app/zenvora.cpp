// zenvora: the desktop program on the machine's own screen, clock and disk. Wiring only.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "common/error_rule.h"
#include "common/fault_text.h"
#include "desktop/application.h"
#include "desktop/end_signals.h"
#include "desktop/views.h"
#include "frame/provisioning.h"
#include "frame/zenvora_program.h"
#include "platform/link/make_link.h"
#include "platform/page/qt_form_print.h"
#include "platform/page/qt_pdf.h"
#include "platform/page/qt_printer.h"
#include "platform/shell/system_shell.h"

namespace {

using namespace zenvora;

constexpr std::string_view kHelp =
    R"(Zenvora: the figures of Form 1004MC, the Market Conditions Addendum, from comparable sales and listings

usage: zenvora [/V] [/F PATH] [option...]

  /V                   show the statistics window too; must come first
  /F PATH              go through the opening of that file without the start dialog, and end; no blanks in it
  --with-standin FILE  let krn-standin show the reports of FILE in the place of KRN
  --help               this text
  --version            the version

Options of the toolkit (-platform, -style, ...) are taken too.
Settings, the template for new Databooks and the help files lie in the folder ZENVORA_HOME,
else in $XDG_DATA_HOME/zenvora or ~/.local/share/zenvora.
)";

constexpr std::string_view kWithStandin = "--with-standin";

/// The command line as the rules read it: what the user typed behind the program's name, without the options
/// that the rules know nothing of.
std::string CommandLine(int argc, char** argv) {
    std::string line;
    for (int at = 1; at < argc; ++at) {
        if (argv[at] == kWithStandin) {
            ++at;
            continue;
        }
        if (!line.empty()) line += ' ';
        line += argv[at];
    }
    return line;
}

/// The way to KRN, or to the stand-in of the file that the command line names.
link::LinkSettings WayToKrn(int argc, char** argv) {
    link::LinkSettings settings = link::LinkSettingsOfEnvironment();
    for (int at = 1; at + 1 < argc; ++at) {
        if (argv[at] == kWithStandin) settings.standinFile = argv[at + 1];
    }
    return settings;
}

/// The last resort, when no window can tell: a fault in words on the error stream.
int Told(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const Fault& fault) {
        std::cerr << "zenvora: " << common::FaultLine(fault) << '\n';
    } catch (const common::ProgramEnds&) {
        // The rule that ended the program has said why.
    } catch (const std::exception& problem) {
        std::cerr << "zenvora: " << problem.what() << '\n';
    } catch (...) {
        std::cerr << "zenvora: an unknown failure\n";
    }
    return 1;
}

int Run(int argc, char** argv) {
    desktop::Application application(argc, argv);
    const shell::SystemClock clock;
    ado::DatabasePool databooks;
    const files::DriveMap drives(files::DriveCFolder());
    shell::SystemShell machine(shell::LockFolder(drives.DriveC()));
    desktop::QtDesktop screen;
    desktop::RegisterViews(screen);
    const auto link = link::MakeLink(WayToKrn(argc, argv));
    const auto printer = page::MakeDefaultPrinter("Zenvora");
    controls::Form* mainWindow = nullptr;  // known once the program is made
    frame::ZenvoraProgram program(
        {.desktop = screen,
         .clock = clock,
         .databooks = databooks,
         .machine = machine,
         .drives = drives,
         .share = frame::ShareFolder(),
         // The toolkit has taken its own options out of it.
         .services = {
             .commandLine = CommandLine(argc, argv),
             .link = link.get(),
             .printer = printer.get(),
             .makePdf = page::QtPdfMaker(),
             .mainWindow = [&] { return page::MakeFormPrint(*screen.WindowOf(*mainWindow), "Zenvora"); }}});
    mainWindow = &program.Main();
    controls::Forms& forms = program.Session().forms;
    application.OnStray([&](const std::exception_ptr& failure) {
        screen.User(forms, [&] { std::rethrow_exception(failure); });
    });
    const auto endSession = [&] { screen.EndSession(forms); };
    const desktop::EndSignals asked(endSession);
    application.OnSessionEnd(endSession);
    if (program.Start()) screen.Run();
    return program.ExitStatus();
}

}  // namespace

int main(int argc, char** argv) {
    // Asked without a screen, and answered without one.
    for (int at = 1; at < argc; ++at) {
        const std::string_view argument = argv[at];
        if (argument == "--help" || argument == "-h") {
            std::cout << kHelp;
            return 0;
        }
        if (argument == "--version") {
            std::cout << "zenvora " << ZENVORA_VERSION << '\n';
            return 0;
        }
        if (argument != kWithStandin) continue;
        std::error_code unreadable;
        if (++at == argc || !std::filesystem::is_regular_file(argv[at], unreadable)) {
            std::cerr << "zenvora: " << kWithStandin << " needs a file of reports"
                      << (at == argc ? "" : std::string("; there is none at ") + argv[at])
                      << ". samples/KRN.txt is one.\n";
            return 2;
        }
    }
    try {
        return Run(argc, argv);
    } catch (...) {
        return Told(std::current_exception());
    }
}

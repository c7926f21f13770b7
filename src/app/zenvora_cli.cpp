// zenvora-cli: hands the machine's streams, clock and disk to the commands.

#include <iostream>
#include <string>
#include <vector>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "cli/program.h"
#include "platform/link/make_link.h"
#ifdef ZENVORA_HAS_PAGES
#include "platform/page/qt_pdf.h"
#endif

namespace {

bool ErrIsTerminal() {
#ifdef _WIN32
    return _isatty(2) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const zenvora::shell::SystemClock clock;
    zenvora::ado::DatabasePool databooks;
    const auto link = zenvora::link::MakeLink(zenvora::link::LinkSettingsOfEnvironment());
    const zenvora::cli::Environment environment{
        .io = {std::cin, std::cout, std::cerr},
        .clock = clock,
        .databooks = databooks,
        .errIsTerminal = ErrIsTerminal(),
        .link = *link,
#ifdef ZENVORA_HAS_PAGES
        .makePdf = zenvora::page::QtPdfMaker(),
#endif
    };
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(zenvora::cli::RunProgram(arguments, environment));
}

#pragma once

#include <string>
#include <vector>

#include "cli/streams.h"
#include "platform/ado/pool.h"
#include "platform/link/carrier.h"
#include "platform/page/pdf.h"
#include "platform/shell/clock.h"

namespace zenvora::cli {

/// What a run needs of the machine. `app/` hands in the real things, tests their own.
struct Environment {
    Streams io;
    const shell::Clock& clock;
    ado::DatabasePool& databooks;
    bool errIsTerminal = false;               ///< progress may be drawn
    link::Carrier& link = link::NoCarrier();  ///< the way to the appraisal program
    page::PdfMaker makePdf{};                 ///< empty in a build without printing
};

/// Runs one command line (without the program's name). Raises nothing: whatever goes wrong ends in a status,
/// and its reason is the last line on `err`.
[[nodiscard]] Exit RunProgram(const std::vector<std::string>& arguments, const Environment& environment);

}  // namespace zenvora::cli

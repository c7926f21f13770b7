#pragma once

#include <memory>
#include <string>

#include "platform/page/printer.h"

namespace zenvora::page {

/// The page surface of the system's default printer. Which one that is, is asked anew for each document, so
/// that the surface may be made once and a printer may come and go. Pages are kept until EndDoc and then
/// sent at once as one job of that name. Making it raises nothing; the toolkit's application object must
/// stand.
[[nodiscard]] std::unique_ptr<Printer> MakeDefaultPrinter(const std::string& jobName);

}  // namespace zenvora::page

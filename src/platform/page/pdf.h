#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/page/printer.h"

namespace zenvora::page {

/// Makes a page surface that writes a PDF document of that title, on Letter paper, into `bytes`, which
/// EndDoc fills and which must live until then. Its whole page can be printed on. Fault 482: the machine has
/// no font.
using PdfMaker = std::function<std::unique_ptr<Printer>(const std::string& title, std::string& bytes)>;

}  // namespace zenvora::page

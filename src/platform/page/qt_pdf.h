#pragma once

#include "platform/page/pdf.h"

namespace zenvora::page {

/// PDF documents by the toolkit. It needs no screen: without an application object of the toolkit it makes
/// one of its own that shows nothing and stays to the end of the program.
[[nodiscard]] PdfMaker QtPdfMaker();

}  // namespace zenvora::page

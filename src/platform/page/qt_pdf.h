#pragma once

#include "platform/page/pdf.h"

namespace zenvora::page {

/// PDF documents by the toolkit. It needs no screen: in a program without an application object of the
/// toolkit it makes one of its own with the first document, which shows nothing and goes with the last copy
/// of the maker. A surface must not outlive the maker.
[[nodiscard]] PdfMaker QtPdfMaker();

}  // namespace zenvora::page

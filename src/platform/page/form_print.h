#pragma once

#include <string>

namespace zenvora::page {

/// The form print: a window as it stands on the screen, on a page of its own. Landscape; a window that is
/// larger than the page is made smaller to fit.
class FormPrint {
  public:
    virtual ~FormPrint() = default;
    /// On the default printer. Fault 482: there is none, or it does not take it.
    virtual void PrintForm() = 0;
    /// As a PDF document of that title: its bytes. Its text can be selected. Fault 482: it cannot be drawn.
    [[nodiscard]] virtual std::string PdfOfForm(const std::string& title) = 0;
};

}  // namespace zenvora::page

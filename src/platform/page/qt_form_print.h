#pragma once

#include <memory>

#include "platform/page/form_print.h"

class QWidget;

namespace zenvora::page {

/// The form print of a window of the toolkit, which must outlive it. The window is drawn as it stands at the
/// call; it need not be visible.
[[nodiscard]] std::unique_ptr<FormPrint> MakeFormPrint(QWidget& window, const std::string& jobName);

}  // namespace zenvora::page

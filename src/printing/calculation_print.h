#pragma once

#include "common/session.h"
#include "platform/page/form_print.h"

namespace zenvora::printing {

/// The button Print of the second page: the main window with its figures, as it stands on the screen, on the
/// default printer. When there is none (fault 482) the user is told so; any other failure passes without a
/// message. Faults: none.
void cmdPrintCalc(common::Session& session, page::FormPrint& mainWindow);

}  // namespace zenvora::printing

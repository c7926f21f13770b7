#pragma once

#include <QWidget>

#include "desktop/binder.h"
#include "transfer/frm_text.h"

namespace zenvora::desktop {

/// The window of "Transfer Audit Report": the five addenda, each with what it holds, and the two buttons.
[[nodiscard]] QWidget* FrmTextView(transfer::frmText& form, Binder& bind, QWidget* parent);

}  // namespace zenvora::desktop

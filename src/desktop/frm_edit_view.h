#pragma once

#include <QWidget>

#include "desktop/binder.h"
#include "records/frm_edit.h"

namespace zenvora::desktop {

/// The window of the record editor. F4 and Alt+Down in a date field open its calendar.
[[nodiscard]] QWidget* FrmEditView(records::frmEdit& form, Binder& bind, QWidget* parent);

}  // namespace zenvora::desktop

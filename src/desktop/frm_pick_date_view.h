#pragma once

#include <QWidget>

#include "desktop/binder.h"
#include "records/frm_pick_date.h"

namespace zenvora::desktop {

/// The window of the calendar. Arrows and page keys move the date, Enter accepts it, Escape cancels.
[[nodiscard]] QWidget* FrmPickDateView(records::frmPickDate& form, Binder& bind, QWidget* parent);

}  // namespace zenvora::desktop

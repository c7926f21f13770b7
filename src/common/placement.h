#pragma once

#include "common/session.h"
#include "platform/controls/form.h"

namespace zenvora::common {

/// Stores where a form stands under its name in section FORMS of ZVR.INI: four keys NAMETOP, NAMELEFT,
/// NAMEHEIGHT, NAMEWIDTH in twips. Nothing reads them back. Faults: none.
void SaveWindowPlacement(Session& session, const controls::Form& form);

/// Moves a form to the upper left corner of the screen.
void ResetFormPosition(controls::Form& form);

}  // namespace zenvora::common

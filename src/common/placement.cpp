#include "common/placement.h"

#include "common/ini.h"
#include "common/primitives.h"
#include "platform/text/number.h"

namespace zenvora::common {

void SaveWindowPlacement(Session& session, const controls::Form& form) {
    const std::string name = UpTrim(form.Name());
    const controls::Placement& place = form.Placement();
    WriteIni(session, session.settings.settingsFile, "FORMS",
             {{name + "TOP", text::SingleText(place.top)},
              {name + "LEFT", text::SingleText(place.left)},
              {name + "HEIGHT", text::SingleText(place.height)},
              {name + "WIDTH", text::SingleText(place.width)}});
}

void ResetFormPosition(controls::Form& form) {
    controls::Placement place = form.Placement();
    place.left = 0;
    place.top = 0;
    form.SetPlacement(place);
}

}  // namespace zenvora::common

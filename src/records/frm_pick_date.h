#pragma once

#include <string_view>

#include "common/session.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/form.h"
#include "platform/controls/month_view.h"

namespace zenvora::records {

/// The calendar dialog. OK and Cancel hide it, so that the chosen date can be read; after Cancel that date is
/// day zero, which is no date to choose.
class frmPickDate final : public controls::Form {
  public:
    explicit frmPickDate(common::Session& session);

    controls::MonthView calCalendar{"calCalendar"};
    controls::CommandButton cmdLastMonth{"cmdLastMonth"};
    controls::CommandButton cmdLastWeek{"cmdLastWeek"};
    controls::CommandButton cmdYesterDay{"cmdYesterDay"};
    controls::CommandButton cmdToday{"cmdToday"};
    controls::CommandButton cmdTomorrow{"cmdTomorrow"};
    controls::CommandButton cmdNextWeek{"cmdNextWeek"};
    controls::CommandButton cmdNextMonth{"cmdNextMonth"};
    controls::CheckBox ckbQuickExit{"ckbQuickExit"};  ///< ticked: each button above is also an OK
    controls::CommandButton cmdCancel{"cmdCancel"};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::CommandButton cmdDayZero{"cmdDayZero"};  ///< hidden

  protected:
    void OnLoad() override;
    void OnActivate() override;
    /// The close box is a Cancel.
    void OnQueryUnload(bool& cancel) override;
    void OnUnload() override;

  private:
    void LayOut();
    void SetRules();
    void Move(std::string_view name, const std::function<void()>& step);
    void MoveMonths(int back);
    void CheckExit();

    common::Session& session_;
};

}  // namespace zenvora::records

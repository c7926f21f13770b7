#include "desktop/frm_pick_date_view.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace zenvora::desktop {

QWidget* FrmPickDateView(records::frmPickDate& form, Binder& bind, QWidget* parent) {
    auto* const window = new QDialog(parent);
    auto* const rows = new QVBoxLayout(window);
    QCalendarWidget* const calendar = bind.Bind(form.calCalendar);
    Binder::Name(*calendar, "Calendar");
    calendar->setGridVisible(true);
    rows->addWidget(calendar, 1);

    auto* const moves = new QHBoxLayout;
    for (controls::CommandButton* button :
         {&form.cmdLastMonth, &form.cmdLastWeek, &form.cmdYesterDay, &form.cmdToday, &form.cmdTomorrow,
          &form.cmdNextWeek, &form.cmdNextMonth})
        moves->addWidget(bind.Bind(*button), 1);
    rows->addLayout(moves);

    auto* const answers = new QHBoxLayout;
    answers->addWidget(bind.Bind(form.ckbQuickExit));
    answers->addStretch(1);
    answers->addWidget(bind.Bind(form.cmdCancel));
    answers->addWidget(bind.Bind(form.cmdOK));
    rows->addLayout(answers);
    return window;
}

}  // namespace zenvora::desktop

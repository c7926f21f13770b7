#include "desktop/kinds_form.h"

#include <QMainWindow>
#include <QVBoxLayout>

namespace zenvora::testing_support {

QWidget* LayOut(KindsForm& form, desktop::Binder& bind, QWidget* parent) {
    auto* const window = new QMainWindow(parent);
    auto* const body = new QWidget;
    auto* const layout = new QVBoxLayout(body);
    auto* const first = bind.Bind(form.txtFirst);
    layout->addWidget(bind.Bind(form.lblName, *first));
    layout->addWidget(first);
    for (controls::TextBox& cell : form.txtCell)
        layout->addWidget(bind.Bind(cell));
    layout->addWidget(bind.BindLink(form.lblLink));
    layout->addWidget(bind.Bind(form.cmdCancel));
    layout->addWidget(bind.Bind(form.cmdOK));
    layout->addWidget(bind.Bind(form.chkFlag));
    layout->addWidget(bind.Bind(form.optOne));
    layout->addWidget(bind.Bind(form.optTwo));
    layout->addWidget(bind.Bind(form.cboText));
    layout->addWidget(bind.Bind(form.cboPick));
    layout->addWidget(bind.Bind(form.lstOne));
    layout->addWidget(bind.Bind(form.lstMany));
    auto* const group = bind.Bind(form.fraGroup);
    (new QVBoxLayout(group))->addWidget(bind.Bind(form.txtInside));
    layout->addWidget(group);
    layout->addWidget(bind.Bind(form.imgCalendar, 16));
    layout->addWidget(bind.Bind(form.tabs));
    layout->addWidget(bind.Bind(form.tdbgRows));
    layout->addWidget(bind.Bind(form.bar));
    layout->addWidget(bind.Bind(form.mvwDate));
    layout->addWidget(bind.Bind(form.rtbHelp));
    bind.BindMenus(*window->menuBar());
    window->setCentralWidget(body);
    return window;
}

}  // namespace zenvora::testing_support

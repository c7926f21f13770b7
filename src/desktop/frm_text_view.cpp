#include "desktop/frm_text_view.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace zenvora::desktop {

QWidget* FrmTextView(transfer::frmText& form, Binder& bind, QWidget* parent) {
    auto* const window = new QDialog(parent);
    auto* const rows = new QVBoxLayout(window);
    QGroupBox* const group = bind.Bind(form.fraText);
    auto* const options = new QVBoxLayout(group);
    for (controls::OptionButton& option : form.optText)
        options->addWidget(bind.Bind(option));
    rows->addWidget(group);
    rows->addStretch(1);

    auto* const answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(bind.Bind(form.cmdTransfer));
    answers->addWidget(bind.Bind(form.cmdExit));
    rows->addLayout(answers);
    return window;
}

}  // namespace zenvora::desktop

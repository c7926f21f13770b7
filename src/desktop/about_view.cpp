#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {

QWidget* AboutView(frame::frmAbout& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(24, 22, 24, 18);
    layout->setSpacing(16);
    QLabel* const name = bind.Bind(form.lblProgram);
    QFont large = name->font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.8);
    name->setFont(large);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(name);
    for (controls::Label* label : {&form.lblVersion, &form.lblPurpose, &form.lblSystem, &form.lblFolder}) {
        QLabel* const text = bind.Bind(*label);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texts->addWidget(text);
    }
    auto* const top = new QHBoxLayout;
    top->setSpacing(20);
    constexpr int kPictureHeight = 72;
    top->addWidget(bind.Bind(form.aicAlphaImage1, kPictureHeight), 0, Qt::AlignTop);
    top->addLayout(texts, 1);
    layout->addLayout(top);
    layout->addStretch();
    layout->addLayout(Row({nullptr, bind.Bind(form.cmdOK)}));
    return window;
}

}  // namespace zenvora::desktop

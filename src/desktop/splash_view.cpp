#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {

QWidget* SplashView(frame::frmSplash1& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    constexpr int kPictureHeight = 190;
    layout->addWidget(bind.Bind(form.aicAlphaImage1, kPictureHeight));

    QPushButton* const go = Wide(Accented(bind.Bind(form.cmdOK)), 16);
    auto* const start = Row({bind.Bind(form.cbShowDetailedMapping), nullptr, go});
    start->setContentsMargins(24, 20, 24, 12);
    layout->addLayout(start);
    auto* const help = Row({bind.BindLink(form.Label1), bind.BindLink(form.lblHelpLink), nullptr});
    help->setContentsMargins(20, 0, 24, 14);
    layout->addLayout(help);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    return window;
}

}  // namespace zenvora::desktop

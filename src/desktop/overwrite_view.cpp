#include <QStyle>
#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/picture_box.h"
#include "desktop/views.h"

namespace zenvora::desktop {

QWidget* OverwriteView(frame::frmOverwrite& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(20, 18, 20, 16);
    layout->setSpacing(14);

    auto* const text = new QVBoxLayout;
    QLabel* const warning = bind.Bind(form.lblOverwrite);
    QLineEdit* const file = Wide(bind.Bind(form.txtFileName), 48);
    Binder::Name(*file, "File");
    text->addWidget(warning);
    text->addWidget(file);
    auto* const top = new QHBoxLayout;
    top->setSpacing(16);
    auto* const sign =
        new PictureBox(window->style()->standardIcon(QStyle::SP_MessageBoxWarning), QSize(40, 40));
    top->addWidget(sign, 0, Qt::AlignTop);
    top->addLayout(text);
    layout->addLayout(top);

    QLabel* const message = bind.Bind(form.lblmsg);
    QFont bold = message->font();
    bold.setBold(true);
    message->setFont(bold);
    // Its room stays while it says nothing.
    message->setMinimumHeight(message->fontMetrics().height());
    layout->addWidget(message);
    layout->addStretch();
    layout->addLayout(Row({nullptr, bind.Bind(form.cmdExit[0]), bind.Bind(form.cmdOverwrite[1]),
                           bind.Bind(form.cmdExit[2]), bind.Bind(form.cmdExit[3])}));
    return window;
}

}  // namespace zenvora::desktop

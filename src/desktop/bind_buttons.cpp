#include <QToolButton>

#include "desktop/binder.h"
#include "desktop/picture_box.h"
#include "desktop/pictures.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

QPushButton* Binder::Bind(controls::CommandButton& control) {
    auto* const button = new QPushButton;
    // Enter and Escape are the binder's; here the default button is only marked.
    button->setAutoDefault(false);
    button->setDefault(control.Default());
    const auto show = [button, &control](Property property) {
        if (property != Property::Text) return;
        button->setText(Shown(control.Caption()));
        Name(*button, control.Caption());
    };
    Attach(control, *button, show);
    show(Property::Text);
    connect(button, &QPushButton::clicked, context_, [this, &control] { User([&] { control.Click(); }); });
    return button;
}

QCheckBox* Binder::Bind(controls::CheckBox& control) {
    auto* const box = new QCheckBox;
    const auto show = [box, &control](Property property) {
        if (property == Property::Text) box->setText(Shown(control.Caption()));
        if (property != Property::Value) return;
        const bool gray = control.Value() == controls::CheckBox::kGrayed;
        box->setTristate(gray);
        box->setCheckState(gray                                              ? Qt::PartiallyChecked
                           : control.Value() == controls::CheckBox::kChecked ? Qt::Checked
                                                                             : Qt::Unchecked);
    };
    Attach(control, *box, show);
    show(Property::Text);
    show(Property::Value);
    connect(box, &QCheckBox::clicked, context_, [this, &control, show] {
        User([&] { control.Toggle(); });
        // The widget has turned itself already; the control decides.
        if (attached_) show(Property::Value);
    });
    return box;
}

QRadioButton* Binder::Bind(controls::OptionButton& control) {
    auto* const button = new QRadioButton;
    const auto show = [button, &control](Property property) {
        if (property == Property::Text) button->setText(Shown(control.Caption()));
        if (property != Property::Value) return;
        // Within a group the toolkit refuses to clear the one that is set.
        button->setAutoExclusive(false);
        button->setChecked(control.Value());
        button->setAutoExclusive(true);
    };
    Attach(control, *button, show);
    show(Property::Text);
    show(Property::Value);
    connect(button, &QRadioButton::clicked, context_, [this, &control, show] {
        User([&] { control.Select(); });
        if (attached_) show(Property::Value);
    });
    return button;
}

QWidget* Binder::Bind(controls::Image& control, int height) {
    QSize size = DrawnSize(control.Picture());
    size.scale(height * 4, height, Qt::KeepAspectRatio);
    QWidget* widget = nullptr;
    if (control.HasClickRule()) {
        auto* const button = new QToolButton;
        button->setIcon(Picture(control.Picture()));
        button->setIconSize(size);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::StrongFocus);
        connect(button, &QToolButton::clicked, context_,
                [this, &control] { User([&] { control.Click(); }); });
        widget = button;
    } else {
        widget = new PictureBox(Picture(control.Picture()), size);
    }
    const auto show = [widget, &control](Property property) {
        if (property == Property::Text) Name(*widget, control.Caption());
        // A picture without a tip of its own says by it what it does.
        if (control.ToolTipText().empty() && control.HasClickRule())
            widget->setToolTip(Shown(controls::PlainCaption(control.Caption())));
    };
    Attach(control, *widget, show);
    show(Property::Text);
    return widget;
}

}  // namespace zenvora::desktop

#include <QMouseEvent>
#include <algorithm>
#include <limits>

#include "desktop/binder.h"
#include "desktop/event_watch.h"
#include "desktop/link_button.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

namespace {

/// Shows a text and leaves the caret where the user has it.
void ShowText(QLineEdit& edit, const QString& text, int maxLength) {
    // Texts of the program are not cut; the user's limit holds for typing.
    constexpr int kNoLimit = std::numeric_limits<int>::max();
    const int length = static_cast<int>(text.size());
    const int limit = maxLength == 0 ? kNoLimit : std::max(maxLength, length);
    // Only when it is another one: the toolkit sets the text anew, with the caret at its end.
    if (edit.maxLength() != limit) edit.setMaxLength(limit);
    if (edit.text() == text) return;
    const bool atEnd = edit.cursorPosition() == edit.text().size();
    const int place = edit.cursorPosition();
    edit.setText(text);
    if (!edit.hasFocus()) {
        edit.setCursorPosition(0);
    } else if (!atEnd) {
        edit.setCursorPosition(std::min(place, length));
    }
}

}  // namespace

QLineEdit* Binder::Bind(controls::TextBox& control) {
    auto* const edit = new QLineEdit;
    if (form_.TakesFiles()) edit->setAcceptDrops(false);
    const auto show = [edit, &control](Property property) {
        if (property == Property::Text) ShowText(*edit, Shown(control.Text()), control.MaxLength());
        if (property == Property::Locked) edit->setReadOnly(control.Locked());
        if (property == Property::Selection) edit->selectAll();
    };
    Attach(control, *edit, show);
    show(Property::Text);
    show(Property::Locked);
    connect(edit, &QLineEdit::textChanged, context_, [this, edit, &control](const QString& text) {
        if (text == Shown(control.Text())) return;
        User([&] { control.SetText(Stored(text)); });
        if (!attached_) return;
        // A rule that ended the program before it began leaves the old text.
        ShowText(*edit, Shown(control.Text()), control.MaxLength());
    });
    OnMouse(*edit, QEvent::MouseButtonRelease, [&control] { control.Click(); });
    return edit;
}

void Binder::OnMouse(QWidget& widget, QEvent::Type type, const std::function<void()>& rule) {
    auto* const watch = new EventWatch(&widget, [this, &widget, type, rule](QEvent& event) {
        if (event.type() != type || !attached_) return false;
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        if (mouse.button() != Qt::LeftButton || widget.childAt(mouse.position().toPoint()) != nullptr)
            return false;
        QMetaObject::invokeMethod(
            context_, [this, rule] { User(rule); }, Qt::QueuedConnection);
        return false;
    });
    widget.installEventFilter(watch);
}

QLabel* Binder::Bind(controls::Label& control) {
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    const auto show = [label, &control](Property property) {
        if (property == Property::Text) label->setText(Shown(controls::PlainCaption(control.Caption())));
    };
    Attach(control, *label, show);
    show(Property::Text);
    OnMouse(*label, QEvent::MouseButtonDblClick, [&control] { control.DblClick(); });
    return label;
}

QAbstractButton* Binder::BindLink(controls::Label& control) {
    auto* const link = new LinkButton;
    const auto show = [link, &control](Property property) {
        if (property != Property::Text) return;
        link->setText(Shown(control.Caption()));
        link->updateGeometry();
        Name(*link, control.Caption());
    };
    Attach(control, *link, show);
    show(Property::Text);
    connect(link, &QAbstractButton::clicked, context_, [this, &control] { User([&] { control.Click(); }); });
    OnMouse(*link, QEvent::MouseButtonDblClick, [&control] { control.DblClick(); });
    return link;
}

QLabel* Binder::Bind(controls::Label& control, QWidget& named) {
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(&named);
    const auto show = [label, &control, &named](Property property) {
        if (property != Property::Text) return;
        label->setText(Shown(control.Caption()));
        Name(named, control.Caption());
    };
    Attach(control, *label, show);
    show(Property::Text);
    OnMouse(*label, QEvent::MouseButtonRelease, [&control] { control.Click(); });
    OnMouse(*label, QEvent::MouseButtonDblClick, [&control] { control.DblClick(); });
    return label;
}

}  // namespace zenvora::desktop

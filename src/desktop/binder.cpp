#include "desktop/binder.h"

#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QScreen>
#include <algorithm>

#include "desktop/qt_desktop.h"
#include "desktop/shades.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Control;
using controls::Property;

namespace {

/// The file of this computer that is dragged, empty for anything else: a list of places may also be empty.
QString FileIn(const QMimeData& dragged) {
    const QList<QUrl> places = dragged.urls();
    return places.isEmpty() ? QString() : places.constFirst().toLocalFile();
}

}  // namespace

QString ObjectName(const Control& control) {
    const QString name = Shown(control.Name());
    return control.Index() == Control::kNoIndex ? name
                                                : name + QLatin1Char('_') + QString::number(control.Index());
}

Binder::Binder(QtDesktop& screen, controls::Form& form)
    : screen_(screen), form_(form), context_(new QObject(this)) {}

void Binder::User(const std::function<void()>& rule) {
    if (attached_) screen_.User(form_.Program(), rule);
}

void Binder::Detach() {
    attached_ = false;
    observations_.clear();
    formObservation_.reset();
    delete std::exchange(context_, nullptr);
    for (const std::function<void()>& part : partings_)
        part();
    partings_.clear();
    themes_.clear();
    ties_.clear();
    watched_.clear();
}

QWidget* Binder::WidgetOf(const Control& control) const {
    const auto found =
        std::find_if(ties_.begin(), ties_.end(), [&](const Tie& tie) { return tie.control == &control; });
    return found == ties_.end() ? nullptr : found->widget;
}

void Binder::Name(QWidget& widget, const std::string& name) {
    widget.setAccessibleName(Shown(controls::PlainCaption(name)));
}

// ---- what all controls have in common ----

void Binder::Attach(Control& control, QWidget& widget, Show show) {
    widget.setObjectName(ObjectName(control));
    ties_.push_back({&control, &widget});
    Watch(control, widget);
    for (const Property property :
         {Property::Enabled, Property::Visible, Property::BackColor, Property::ToolTipText}) {
        ShowCommon(control, widget, property);
    }
    observations_.push_back(
        control.Observe([this, &control, &widget, show = std::move(show)](Property property) {
            ShowCommon(control, widget, property);
            show(property);
        }));
}

void Binder::Watch(Control& control, QWidget& widget) {
    // The focus of a composite widget is that of the part which takes it.
    QWidget* const taker = widget.focusProxy() == nullptr ? &widget : widget.focusProxy();
    taker->installEventFilter(this);
    watched_.insert(taker, &control);
}

void Binder::ShowCommon(const Control& control, QWidget& widget, Property property) {
    switch (property) {
        case Property::Enabled:
            widget.setEnabled(control.Enabled());
            break;
        case Property::Visible:
            // One that is in no window yet would become a window itself; it comes up with the one it is laid
            // out in.
            if (!control.Visible() || widget.parentWidget() != nullptr) widget.setVisible(control.Visible());
            break;
        case Property::BackColor:
            ShowBackColor(control, widget);
            break;
        case Property::ToolTipText: {
            // A tip is plain text, whatever signs it holds.
            const QString tip = Shown(control.ToolTipText());
            widget.setToolTip(Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip);
            break;
        }
        case Property::Focus:
            widget.setFocus(Qt::OtherFocusReason);
            break;
        default:
            break;
    }
}

void Binder::ShowBackColor(const Control& control, QWidget& widget) const {
    if (IsPlain(control.BackColor())) {
        if (widget.testAttribute(Qt::WA_SetPalette)) widget.setPalette(QPalette());
        return;
    }
    const Shade shade = ShadeOf(control.BackColor(), QGuiApplication::palette());
    QPalette palette;
    // Not more than the ground and the text: scroll bars and arrows keep the colours of the theme.
    const bool isButton = qobject_cast<QAbstractButton*>(&widget) != nullptr;
    const bool isPanel =
        qobject_cast<QLabel*>(&widget) != nullptr || qobject_cast<QGroupBox*>(&widget) != nullptr;
    palette.setColor(isButton ? QPalette::Button : isPanel ? QPalette::Window : QPalette::Base, shade.back);
    palette.setColor(isButton  ? QPalette::ButtonText
                     : isPanel ? QPalette::WindowText
                               : QPalette::Text,
                     shade.text);
    widget.setPalette(palette);
    if (qobject_cast<QLabel*>(&widget) != nullptr) widget.setAutoFillBackground(true);
}

// ---- the window ----

void Binder::SetWindow(QWidget& window) {
    window_ = &window;
    window.setObjectName(Shown(form_.Name()));
    window.setAcceptDrops(form_.TakesFiles());
    QWidget* before = nullptr;
    for (const Control* control : form_.Controls()) {
        QWidget* const widget = WidgetOf(*control);
        if (widget == nullptr || widget->focusPolicy() == Qt::NoFocus) continue;
        if (before != nullptr) QWidget::setTabOrder(before, widget);
        before = widget;
    }
    window.setWindowTitle(Shown(form_.Caption()));
    // What was laid out in a frame that had no parent yet counts as hidden until it is shown, and takes no
    // room.
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->testAttribute(Qt::WA_LaidOut) && !widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
            widget->show();
    }
    ShowPlacement();
    window.installEventFilter(this);
    formObservation_ = form_.Observe([this](controls::Form::Change change) {
        if (change == controls::Form::Change::Caption) window_->setWindowTitle(Shown(form_.Caption()));
        if (change == controls::Form::Change::Placement) ShowPlacement();
    });
}

void Binder::GiveFocus() {
    if (Control* const active = form_.ActiveControl(); active != nullptr) {
        if (QWidget* const widget = WidgetOf(*active); widget != nullptr) return widget->setFocus();
    }
    for (Control* control : form_.Controls()) {
        QWidget* const widget = WidgetOf(*control);
        if (widget == nullptr || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
        if (!widget->isEnabledTo(window_) || !widget->isVisibleTo(window_)) continue;
        return User([&] { form_.SetFocus(*control); });
    }
}

void Binder::ShowPlacement() {
    const controls::Placement& placement = form_.Placement();
    placing_ = true;
    const QSize designed(PixelsOf(placement.width), PixelsOf(placement.height));
    // The designed size is that of another font: it may be too small, and the screen too.
    QSize size = designed.expandedTo(window_->sizeHint());
    if (const QScreen* const screen = window_->screen(); screen != nullptr)
        size = size.boundedTo(screen->availableSize());
    if (!window_->isVisible() || designed != window_->size()) window_->resize(size);
    const QPoint place(PixelsOf(placement.left), PixelsOf(placement.top));
    // A dialog that was given no place of its own stands in front of the window below it.
    const bool isDialog = qobject_cast<QDialog*>(window_) != nullptr;
    if (!place.isNull() || !isDialog) {
        const QScreen* const screen = window_->screen();
        window_->move(place + (screen == nullptr ? QPoint() : screen->availableGeometry().topLeft()));
    }
    placing_ = false;
}

void Binder::TellPlacement() {
    if (!attached_ || placing_ || !window_->isVisible()) return;
    const QScreen* const screen = window_->screen();
    const QPoint place =
        window_->pos() - (screen == nullptr ? QPoint() : screen->availableGeometry().topLeft());
    constexpr float kTwips = 15;
    form_.PlacementIs({.left = static_cast<float>(place.x()) * kTwips,
                       .top = static_cast<float>(place.y()) * kTwips,
                       .width = static_cast<float>(window_->width()) * kTwips,
                       .height = static_cast<float>(window_->height()) * kTwips});
}

// ---- what the user does ----

bool Binder::eventFilter(QObject* watched, QEvent* event) {
    if (!attached_) return false;
    if (watched == window_) return WindowEvent(*event);
    const auto found = watched_.constFind(watched);
    if (found == watched_.constEnd()) return false;
    if (event->type() == QEvent::FocusIn) {
        // Coming back to a window or out of a menu gives the focus to the control that has it: no rule runs.
        User([&] { form_.SetFocus(**found); });
        // A rule may have sent the focus elsewhere; the widget must not think that it came.
        return QApplication::focusWidget() != watched;
    }
    return false;
}

bool Binder::WindowEvent(QEvent& event) {
    switch (event.type()) {
        case QEvent::Close:
            event.ignore();
            screen_.CloseWhenIdle(form_);
            return true;
        case QEvent::KeyPress:
            return KeyPressed(static_cast<const QKeyEvent&>(event));
        case QEvent::Move:
        case QEvent::Resize:
            TellPlacement();
            return false;
        case QEvent::WindowActivate:
            screen_.WindowActivated(form_);
            return false;
        case QEvent::ApplicationPaletteChange:
            for (const Tie& tie : ties_) {
                if (!IsPlain(tie.control->BackColor())) ShowBackColor(*tie.control, *tie.widget);
            }
            for (const std::function<void()>& follow : themes_)
                follow();
            return false;
        case QEvent::DragEnter: {
            auto& drag = static_cast<QDragEnterEvent&>(event);
            if (!FileIn(*drag.mimeData()).isEmpty()) drag.acceptProposedAction();
            return true;
        }
        case QEvent::Drop: {
            auto& drop = static_cast<QDropEvent&>(event);
            const QString path = FileIn(*drop.mimeData());
            if (path.isEmpty()) return true;
            drop.acceptProposedAction();
            // Later, so that the program it comes from need not wait for what is done with it.
            QMetaObject::invokeMethod(
                context_, [this, path] { User([&] { form_.DropFile(Stored(path)); }); },
                Qt::QueuedConnection);
            return true;
        }
        default:
            return false;
    }
}

bool Binder::KeyPressed(const QKeyEvent& key) {
    const bool plain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain) return false;
    switch (key.key()) {
        case Qt::Key_F1:
            User([this] { form_.Help(); });
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* const button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
                button != nullptr && !button->isCheckable()) {
                button->click();
                return true;
            }
            Pressed(&controls::CommandButton::Default);
            return true;
        case Qt::Key_Escape:
            Pressed(&controls::CommandButton::Cancel);
            return true;
        default:
            return false;
    }
}

void Binder::Pressed(bool (controls::CommandButton::*which)() const noexcept) {
    for (Control* control : form_.Controls()) {
        auto* const button = dynamic_cast<controls::CommandButton*>(control);
        if (button == nullptr || !(button->*which)()) continue;
        // As with the mouse: the focus goes there first, so that the rule of leaving has run.
        if (QWidget* const widget = WidgetOf(*button); widget != nullptr && widget->isEnabled()) {
            if (widget->isVisible()) widget->setFocus(Qt::ShortcutFocusReason);
            return User([button] { button->Click(); });
        }
    }
}

}  // namespace zenvora::desktop

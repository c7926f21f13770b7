#pragma once

#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktop/qt_desktop.h"
#include "platform/controls/forms.h"

namespace zenvora::testing_support {

/// Processes what is under way.
inline void Settle() {
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Does something once the program waits in a loop of its own: in a modal dialog, say.
inline void Soon(std::function<void()> user) {
    QTimer::singleShot(0, QCoreApplication::instance(), std::move(user));
}

/// The widget of a control; throws when there is none.
template <class Widget>
Widget& WidgetNamed(const QWidget& window, const char* name) {
    auto* const widget = window.findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr) throw std::runtime_error(std::string("no widget ") + name);
    return *widget;
}

/// Counts the paint events of a widget.
class PaintCount final : public QObject {
  public:
    PaintCount(QWidget& widget, int& count) : count_(count) { widget.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count_;
        return false;
    }

  private:
    int& count_;
};

}  // namespace zenvora::testing_support

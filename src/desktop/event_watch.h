#pragma once

#include <QEvent>
#include <QObject>
#include <functional>
#include <utility>

namespace zenvora::desktop {

/// Looks at the events of a widget before it does; true takes one away from it.
class EventWatch final : public QObject {
  public:
    EventWatch(QObject* parent, std::function<bool(QEvent&)> look)
        : QObject(parent), look_(std::move(look)) {}
    bool eventFilter(QObject* /*watched*/, QEvent* event) override { return look_(*event); }

  private:
    std::function<bool(QEvent&)> look_;
};

}  // namespace zenvora::desktop

#pragma once

#include <QIcon>
#include <QPainter>
#include <QWidget>
#include <utility>

namespace zenvora::desktop {

/// A picture that is only looked at, drawn anew for the screen it stands on.
class PictureBox final : public QWidget {
  public:
    PictureBox(QIcon picture, QSize size) : picture_(std::move(picture)), size_(size) {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    }
    [[nodiscard]] QSize sizeHint() const override { return size_; }
    [[nodiscard]] QSize minimumSizeHint() const override { return size_; }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        picture_.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    }

  private:
    QIcon picture_;
    QSize size_;
};

}  // namespace zenvora::desktop

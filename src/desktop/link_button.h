#pragma once

#include <QAbstractButton>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace zenvora::desktop {

/// A button that looks like a link.
class LinkButton final : public QAbstractButton {
  public:
    LinkButton() {
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::StrongFocus);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }
    [[nodiscard]] QSize sizeHint() const override {
        return fontMetrics().size(Qt::TextShowMnemonic, text()) + QSize(6, 6);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        QFont underlined = font();
        underlined.setUnderline(underMouse() || hasFocus());
        painter.setFont(underlined);
        painter.setPen(palette().color(isEnabled() ? QPalette::Link : QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
        if (!hasFocus()) return;
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
    void enterEvent(QEnterEvent* event) override {
        QAbstractButton::enterEvent(event);
        update();
    }
    void leaveEvent(QEvent* event) override {
        QAbstractButton::leaveEvent(event);
        update();
    }
};

}  // namespace zenvora::desktop

#include "desktop/look.h"

#include <QPainter>
#include <QPainterPath>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>
#include <memory>

#include "desktop/pictures.h"
#include "desktop/shades.h"

namespace zenvora::desktop {
namespace {

constexpr double kRound = 5;

/// A colour between two others; 0 is the first.
QColor Between(const QColor& one, const QColor& other, double part) {
    const auto mix = [part](float first, float second) {
        return static_cast<float>(first + (second - first) * part);
    };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

QColor Edge(const QPalette& palette, double strength = 0.22) {
    return Between(palette.color(QPalette::Window), palette.color(QPalette::WindowText), strength);
}

void DrawRound(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& edge,
               double width = 1) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill.isValid() ? QBrush(fill) : Qt::NoBrush);
    painter.setPen(edge.isValid() ? QPen(edge, width) : Qt::NoPen);
    const double inset = width / 2;
    painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kRound, kRound);
    painter.restore();
}

/// The toolkit's plain style with flat buttons, soft corners and more air.
class Look final : public QProxyStyle {
  public:
    Look() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
            case PM_LayoutLeftMargin:
            case PM_LayoutRightMargin:
            case PM_LayoutTopMargin:
            case PM_LayoutBottomMargin:
                return 12;
            case PM_LayoutHorizontalSpacing:
            case PM_LayoutVerticalSpacing:
                return 8;
            case PM_ButtonMargin:
                return 12;
            // Air around the texts of cells and headers.
            case PM_FocusFrameHMargin:
                return 5;
            case PM_HeaderMargin:
                return 6;
            case PM_TabBarTabHSpace:
                return 28;
            case PM_TabBarTabVSpace:
                return 14;
            case PM_TabBarBaseOverlap:
            case PM_TabBarTabShiftVertical:
                return 0;
            default:
                return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        // Buttons without pictures, and mnemonics underlined only where the user asks for them by Alt.
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
        if (type == CT_PushButton) result = result.expandedTo(QSize(72, option->fontMetrics.height() + 13));
        if (type == CT_LineEdit || type == CT_ComboBox)
            result = result.expandedTo(QSize(0, option->fontMetrics.height() + 11));
        return result;
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_PushButtonBevel) {
            if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option))
                return DrawButton(*button, *painter, widget);
        }
        if (element == CE_PushButtonLabel) {
            if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
                button != nullptr && IsAccent(*button, widget)) {
                QStyleOptionButton accent(*button);
                accent.palette.setColor(QPalette::ButtonText,
                                        button->palette.color(QPalette::HighlightedText));
                return QProxyStyle::drawControl(element, &accent, painter, widget);
            }
        }
        if (element == CE_HeaderSection) return DrawHeader(*option, *painter);
        if (element == CE_TabBarTabShape) return DrawTab(*option, *painter);
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const QPalette& palette = option->palette;
        switch (element) {
            case PE_FrameTabWidget:
                painter->setPen(Edge(palette, 0.12));
                return painter->drawLine(option->rect.topLeft(), option->rect.topRight());
            case PE_FrameTabBarBase:
                return;
            case PE_FrameGroupBox:
                return DrawRound(
                    *painter, option->rect,
                    Between(palette.color(QPalette::Window), palette.color(QPalette::Base), 0.55),
                    Edge(palette, 0.12));
            case PE_PanelLineEdit: {
                if (const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                    frame != nullptr && frame->lineWidth == 0) {
                    break;
                }
                const bool enabled = (option->state & State_Enabled) != 0;
                const bool focused = (option->state & State_HasFocus) != 0;
                return DrawRound(
                    *painter, option->rect, palette.color(enabled ? QPalette::Base : QPalette::Window),
                    focused ? palette.color(QPalette::Highlight) : Edge(palette), focused ? 1.6 : 1);
            }
            case PE_IndicatorCheckBox:
            case PE_IndicatorRadioButton:
                // The toolkit's edges are darker than the window: on a dark one there would be none.
                QProxyStyle::drawPrimitive(element, option, painter, widget);
                return DrawIndicatorEdge(*option, *painter, element == PE_IndicatorRadioButton);
            default:
                break;
        }
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        if (control == CC_ComboBox) {
            if (const auto* const box = qstyleoption_cast<const QStyleOptionComboBox*>(option))
                return DrawComboBox(*box, *painter, widget);
        }
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override {
        const QRect rect = QProxyStyle::subElementRect(element, option, widget);
        return element == SE_LineEditContents ? rect.adjusted(5, 0, -5, 0) : rect;
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override {
        QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
        // The caption stands above its frame.
        if (control == CC_GroupBox && part == SC_GroupBoxFrame) {
            const auto* const box = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
            if (box != nullptr && !box->text.isEmpty()) rect.setTop(option->fontMetrics.height() + 5);
        }
        // As far from the frame on every side, so that boxes with and without a caption line up.
        if (control == CC_GroupBox && part == SC_GroupBoxContents)
            return subControlRect(control, option, SC_GroupBoxFrame, widget).adjusted(3, 3, -3, -3);
        return rect;
    }

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override {
        switch (icon) {
            case SP_MessageBoxInformation:
                return Picture("information");
            case SP_MessageBoxWarning:
                return Picture("warning");
            case SP_MessageBoxCritical:
                return Picture("critical");
            case SP_MessageBoxQuestion:
                return Picture("question");
            default:
                return QProxyStyle::standardIcon(icon, option, widget);
        }
    }

  private:
    void DrawComboBox(const QStyleOptionComboBox& box, QPainter& painter, const QWidget* widget) const {
        const QPalette& palette = box.palette;
        const bool enabled = (box.state & State_Enabled) != 0;
        const bool focused = (box.state & State_HasFocus) != 0;
        const QColor fill =
            !enabled       ? palette.color(QPalette::Window)
            : box.editable ? palette.color(QPalette::Base)
                           : Between(palette.color(QPalette::Button), palette.color(QPalette::Base), 0.7);
        DrawRound(painter, box.rect, fill, focused ? palette.color(QPalette::Highlight) : Edge(palette),
                  focused ? 1.6 : 1);
        const QRect arrow = proxy()->subControlRect(CC_ComboBox, &box, SC_ComboBoxArrow, widget);
        const QPointF middle = QRectF(arrow).center();
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(palette.color(QPalette::ButtonText), 1.5);
        pen.setCapStyle(Qt::RoundCap);
        pen.setJoinStyle(Qt::RoundJoin);
        painter.setPen(pen);
        const QPointF chevron[] = {middle + QPointF(-3.5, -1.5), middle + QPointF(0, 2),
                                   middle + QPointF(3.5, -1.5)};
        painter.drawPolyline(chevron, 3);
        painter.restore();
    }

    static void DrawTab(const QStyleOption& option, QPainter& painter) {
        const QPalette& palette = option.palette;
        const bool selected = (option.state & State_Selected) != 0;
        const bool hovered = (option.state & State_MouseOver) != 0 && (option.state & State_Enabled) != 0;
        if (hovered && !selected) painter.fillRect(option.rect, Edge(palette, 0.06));
        if (!selected) return;
        QRect bar = option.rect;
        bar.setTop(bar.bottom() - 2);
        painter.fillRect(bar, palette.color(QPalette::Highlight));
    }

    static void DrawIndicatorEdge(const QStyleOption& option, QPainter& painter, bool round) {
        const bool enabled = (option.state & State_Enabled) != 0;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Edge(option.palette, enabled ? 0.6 : 0.25), 1));
        painter.setBrush(Qt::NoBrush);
        const QRectF edge = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
        const double radius = round ? edge.height() / 2 : 2;
        painter.drawRoundedRect(edge, radius, radius);
        painter.restore();
    }

    static bool IsAccent(const QStyleOptionButton& button, const QWidget* widget) {
        const bool main = (button.features & QStyleOptionButton::DefaultButton) != 0 ||
                          (widget != nullptr && widget->property("accent").toBool());
        return main && (button.state & State_Enabled) != 0;
    }

    static void DrawButton(const QStyleOptionButton& button, QPainter& painter, const QWidget* widget) {
        const QPalette& palette = button.palette;
        if ((button.features & QStyleOptionButton::Flat) != 0 && (button.state & State_Sunken) == 0) return;
        const bool enabled = (button.state & State_Enabled) != 0;
        const bool accent = IsAccent(button, widget);
        QColor fill = accent ? palette.color(QPalette::Highlight)
                             : Between(palette.color(QPalette::Button), palette.color(QPalette::Base),
                                       IsDark(palette) ? 0.0 : 0.7);
        const QColor ink = palette.color(accent ? QPalette::HighlightedText : QPalette::ButtonText);
        if (!enabled) fill = palette.color(QPalette::Window);
        if ((button.state & (State_Sunken | State_On)) != 0) {
            fill = Between(fill, ink, 0.16);
        } else if (enabled && (button.state & State_MouseOver) != 0) {
            fill = Between(fill, ink, 0.07);
        }
        DrawRound(painter, button.rect, fill,
                  accent ? Between(fill, Qt::black, 0.15) : Edge(palette, enabled ? 0.25 : 0.12));
        if ((button.state & State_HasFocus) != 0 && (button.state & State_KeyboardFocusChange) != 0) {
            const QColor ring = accent ? ink : palette.color(QPalette::Highlight);
            DrawRound(painter, button.rect.adjusted(2, 2, -2, -2), QColor(), ring, 1.6);
        }
    }

    static void DrawHeader(const QStyleOption& option, QPainter& painter) {
        const QPalette& palette = option.palette;
        painter.fillRect(option.rect, palette.color(QPalette::Window));
        painter.setPen(Edge(palette));
        painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
        painter.setPen(Edge(palette, 0.12));
        painter.drawLine(option.rect.topRight() + QPoint(0, 5), option.rect.bottomRight() - QPoint(0, 5));
    }
};

QPalette Colors(QColor window, QColor base, QColor alternate, QColor button, QColor text, QColor dimmed,
                QColor accent, QColor link) {
    QPalette palette(text, button, button.lighter(120), button.darker(140), button.darker(115), text, base);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::AlternateBase, alternate);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, link);
    palette.setColor(QPalette::LinkVisited, link);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, dimmed);
    palette.setColor(QPalette::Shadow, window.darker(200));
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dimmed);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, Between(accent, window, 0.6));
    palette.setColor(QPalette::Disabled, QPalette::Base, window);
    return palette;
}

}  // namespace

QPalette LightColors() {
    return Colors(QColor(0xF4, 0xF6, 0xF8), Qt::white, QColor(0xF6, 0xF9, 0xFC), QColor(0xEC, 0xEF, 0xF3),
                  QColor(0x1C, 0x25, 0x30), QColor(0x8A, 0x94, 0xA0), QColor(0x1F, 0x66, 0xB5),
                  QColor(0x1A, 0x5C, 0xA8));
}

QPalette DarkColors() {
    return Colors(QColor(0x22, 0x27, 0x2E), QColor(0x1A, 0x1E, 0x24), QColor(0x20, 0x25, 0x2C),
                  QColor(0x33, 0x3A, 0x44), QColor(0xE4, 0xE9, 0xEF), QColor(0x80, 0x8A, 0x96),
                  QColor(0x2F, 0x72, 0xBF), QColor(0x7F, 0xB8, 0xF2));
}

void SetLook(QApplication& application) {
    // A theme of the user's desktop has colours of its own; the toolkit's standard colours say that there is
    // none.
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette standard = plain->standardPalette();
    const QColor ground = application.palette().color(QPalette::Window);
    application.setStyle(new Look);
    if (ground == standard.color(QPalette::Window) || !IsDark(application.palette())) {
        application.setPalette(LightColors());
    } else {
        application.setPalette(DarkColors());
    }
}

}  // namespace zenvora::desktop

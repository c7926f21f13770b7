#pragma once

#include <QBoxLayout>
#include <QDialog>
#include <QFont>
#include <QLabel>
#include <QPushButton>

/// Small things that the views lay out alike.
namespace zenvora::desktop {

/// A dialog without the question mark of old.
[[nodiscard]] inline QDialog* NewDialog(QWidget* parent) {
    return new QDialog(
        parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
}

/// The button that the window is for: drawn in the accent colour, whichever one Enter presses.
inline QPushButton* Accented(QPushButton* button) {
    button->setProperty("accent", true);
    return button;
}

/// A heading in a font of that many times the usual size.
inline QLabel* Heading(const QString& text, double scale = 1) {
    auto* const label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * scale);
    label->setFont(font);
    return label;
}

/// Widgets side by side; a null is a stretch.
inline QHBoxLayout* Row(std::initializer_list<QWidget*> widgets) {
    auto* const row = new QHBoxLayout;
    for (QWidget* widget : widgets) {
        if (widget == nullptr) {
            row->addStretch();
        } else {
            row->addWidget(widget);
        }
    }
    return row;
}

/// A widget of at least so many characters of the usual width.
template <class Widget>
Widget* Wide(Widget* widget, int characters) {
    widget->setMinimumWidth(widget->fontMetrics().averageCharWidth() * characters);
    return widget;
}

}  // namespace zenvora::desktop

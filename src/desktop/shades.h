#pragma once

#include <QColor>
#include <QPalette>

#include "platform/controls/control.h"

/// How a control's back colour is shown in the user's theme.
namespace zenvora::desktop {

struct Shade {
    QColor back;
    QColor text;
};

/// Lightness contrast of two colours, 1 (none) to 21 (black on white).
[[nodiscard]] double Contrast(const QColor& one, const QColor& other);

/// Whether the theme has light text on dark ground.
[[nodiscard]] bool IsDark(const QPalette& palette);

/// Whether a back colour means the theme's own ground.
[[nodiscard]] bool IsPlain(controls::Color color);

/// A text colour of that hue which can be read on the ground (contrast 4.5 or more).
[[nodiscard]] QColor ReadableOn(const QColor& back, const QColor& color);

/// A back colour of the dialogs and a text colour that reads well on it (contrast 7 or more). The dialogs'
/// colours are those of a light theme: they are shown as they are there, and as a dark tint of the same hue
/// in a dark theme. A plain one is the ground of the theme.
[[nodiscard]] Shade ShadeOf(controls::Color color, const QPalette& palette);

}  // namespace zenvora::desktop

#pragma once

#include <QApplication>
#include <QPalette>

/// The look of the program: calm, flat, and made of the colours of the theme.
namespace zenvora::desktop {

/// Gives the application the program's style.
void SetLook(QApplication& application);

/// The program's own light and dark colours; it takes those of the user's theme when there is one.
[[nodiscard]] QPalette LightColors();
[[nodiscard]] QPalette DarkColors();

}  // namespace zenvora::desktop

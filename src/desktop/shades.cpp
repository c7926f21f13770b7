#include "desktop/shades.h"

#include <algorithm>
#include <cmath>

namespace zenvora::desktop {
namespace {

double Linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
    return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
    const double first = Luminance(one);
    const double second = Luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

bool IsDark(const QPalette& palette) {
    return Luminance(palette.color(QPalette::Active, QPalette::Base)) <
           Luminance(palette.color(QPalette::Active, QPalette::Text));
}

bool IsPlain(controls::Color color) {
    return color == controls::kWhite || color >= controls::kSystemColor;
}

QColor ReadableOn(const QColor& back, const QColor& color) {
    constexpr double kReadsWell = 4.5;
    if (Contrast(back, color) >= kReadsWell) return color;
    const bool lighter = Contrast(back, Qt::white) > Contrast(back, Qt::black);
    const float saturation = color.hslSaturationF();
    QColor changed = color;
    for (float lightness = color.lightnessF(); lightness >= 0 && lightness <= 1;
         lightness += lighter ? 0.05F : -0.05F) {
        changed = QColor::fromHslF(std::max(color.hslHueF(), 0.0F), saturation, lightness);
        if (Contrast(back, changed) >= kReadsWell) return changed;
    }
    return lighter ? Qt::white : Qt::black;
}

Shade ShadeOf(controls::Color color, const QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    if (IsPlain(color)) return {palette.color(QPalette::Active, QPalette::Base), text};
    QColor back = QColor::fromRgb(static_cast<QRgb>(color));
    if (IsDark(palette)) {
        // The same hue, as dark as the ground around it; a grey stays grey.
        const float saturation = back.hslSaturationF() * 0.45F;
        back = QColor::fromHslF(std::max(back.hslHueF(), 0.0F), saturation, 0.19F);
    }
    constexpr double kReadsWell = 7;
    if (Contrast(back, text) >= kReadsWell) return {back, text};
    const bool dark = Contrast(back, Qt::black) > Contrast(back, Qt::white);
    return {back, dark ? Qt::black : Qt::white};
}

}  // namespace zenvora::desktop

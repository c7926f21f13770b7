#include "platform/page/qt_faces.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/fault.h"

namespace zenvora::page {
namespace {

constexpr double kTwipsPerPoint = 20;
constexpr int kFirstPrintable = 0x20;
constexpr int kLastPrintable = 0x7E;

/// A font of the reports: the families to take, the font itself first, then those of the same measures, then
/// any that look alike; the kind of font to look for without any of them; and how wide the 95 printable ASCII
/// characters are together, in thousandths of the size.
struct KnownFont {
    const char* name;
    std::array<const char*, 9> families;
    QFont::StyleHint hint;
    double width;
    double boldWidth;
};

constexpr std::array<KnownFont, 2> kKnownFonts{{
    {"Times New Roman",
     {"Times New Roman", "Liberation Serif", "Tinos", "Nimbus Roman", "TeX Gyre Termes", "Times", "FreeSerif",
      "Noto Serif", "DejaVu Serif"},
     QFont::Serif,
     48458,
     50845},
    {"Arial Narrow",
     {"Arial Narrow", "Liberation Sans Narrow", "Nimbus Sans Narrow", "TeX Gyre Heros Cn", "Arial",
      "Liberation Sans", "Helvetica", "Noto Sans", "DejaVu Sans"},
     QFont::SansSerif,
     41051,
     42941},
}};

/// Fonts that are made for the same measures differ by less, from rounding.
constexpr double kSameWidth = 1.002;

QString PrintableAscii() {
    QString text;
    for (int character = kFirstPrintable; character <= kLastPrintable; ++character)
        text += QChar(character);
    return text;
}

int Twips(double points) {
    return std::max(1, static_cast<int>(std::lround(points * kTwipsPerPoint)));
}

Face MakeFace(const PageFont& wanted) {
    Face face;
    const auto* known = std::find_if(kKnownFonts.begin(), kKnownFonts.end(),
                                     [&](const KnownFont& font) { return wanted.Name == font.name; });
    if (known == kKnownFonts.end()) {
        face.font.setFamily(QString::fromStdString(wanted.Name));
    } else {
        face.font.setStyleHint(known->hint);
        // A list would do as well, but for the substitutions that the system makes for its first entry.
        for (const char* family : known->families) {
            if (!QFontDatabase::hasFamily(family)) continue;
            face.font.setFamily(family);
            break;
        }
    }
    face.font.setPixelSize(Twips(wanted.Size));
    face.font.setBold(wanted.Bold);
    face.font.setHintingPreference(QFont::PreferNoHinting);
    // The list of families is not empty even then: it holds the generic names.
    if (QFontInfo(face.font).family().isEmpty()) {
        throw Fault{fault::kPrinter,
                    "This machine has no font to print with. Install one, such as those of the package "
                    "fonts-liberation."};
    }
    const QFontMetricsF metrics(face.font);
    face.ascent = metrics.ascent();
    face.height = metrics.height();
    if (known != kKnownFonts.end()) {
        const double full = (wanted.Bold ? known->boldWidth : known->width) / 1000 * face.font.pixelSize();
        const double actual = metrics.horizontalAdvance(PrintableAscii());
        if (actual > full * kSameWidth) face.xScale = full / actual;
    }
    return face;
}

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

const Face& Faces::Of(const PageFont& font) {
    const auto key = std::make_tuple(font.Name, Twips(font.Size), font.Bold);
    auto found = faces_.find(key);
    if (found == faces_.end()) found = faces_.emplace(key, MakeFace(font)).first;
    return found->second;
}

double Faces::TextWidth(const PageFont& font, std::string_view text) {
    const Face& face = Of(font);
    return QFontMetricsF(face.font).horizontalAdvance(ToQString(text)) * face.xScale;
}

double Faces::LineHeight(const PageFont& font) {
    return Of(font).height;
}

void Faces::Draw(QPainter& painter, double x, double y, const PageFont& font, std::string_view text) {
    const Face& face = Of(font);
    painter.save();
    painter.translate(x, y + face.ascent);
    painter.scale(face.xScale, 1);
    painter.setFont(face.font);
    painter.drawText(QPointF(0, 0), ToQString(text));
    painter.restore();
}

}  // namespace zenvora::page

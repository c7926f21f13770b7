#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/page/printer.h"

/// What the printouts take for granted: the probe at start-up, the print defaults and the measures that the
/// report is laid out by.
namespace zenvora::printing {

/// The old platform's number of a division by zero.
inline constexpr int kDivisionByZero = 11;

/// The print defaults. Set once at start-up when a printer is found, and for each PDF document by itself.
/// Margins and widths in twips.
struct PrintDefaults {
    std::int16_t orientation = page::kLandscape;
    page::PageFont font;
    std::string deviceName;
    float leftMargin = 0;
    float rightMargin = 0;
    float topMargin = 0;
    float bottomMargin = 0;
    float lastLine = 0;   ///< from the top of the page; nothing reads it
    float lineWidth = 0;  ///< the width of 110 digits in the default font
};

/// True when the default printer tells its name. Faults: none; every failure reads as no printer.
[[nodiscard]] bool PrinterPresent(page::Printer& printer);
/// The print defaults for a printer. The printer keeps the default font. Fault 482: there is no printer.
[[nodiscard]] PrintDefaults InitPrinterDefaults(page::Printer& printer);
/// Both as one for the start of the program: the defaults, or nothing without a printer (both Print buttons
/// then stay unavailable). Faults: none.
[[nodiscard]] std::optional<PrintDefaults> ProbePrinter(page::Printer& printer);

/// Sets the printer to the default font and to the left margin, with `setTop` to the top margin too.
void ApplyPrintDefaults(page::Printer& printer, const PrintDefaults& defaults, bool setTop);
/// Width of a text, upper-cased and trimmed, in twips; of the 110 digits when nothing is left of it. The
/// printer keeps the font.
[[nodiscard]] double MeasurePrintWidth(page::Printer& printer, std::string_view text,
                                       std::string_view fontName, double fontSize, bool fontBold);
/// How many copies of a character fill the line width in the printer's current font. Fault 11: the character
/// has no width.
[[nodiscard]] int CountCharsAcross(page::Printer& printer, const PrintDefaults& defaults,
                                   std::string_view character);
/// A measure divided by another, both taken as whole numbers first, halves to even; the whole part. Fault 11:
/// the divisor is 0.
[[nodiscard]] int WholeDivision(double measure, double divisor);

}  // namespace zenvora::printing

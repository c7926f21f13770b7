#include "printing/print_defaults.h"

#include <cmath>
#include <exception>

#include "common/primitives.h"
#include "platform/fault.h"
#include "platform/text/number.h"

namespace zenvora::printing {
namespace {

constexpr std::string_view kDigits110 =
    "12345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234"
    "567"
    "890";
constexpr std::string_view kFontName = "Times New Roman";
constexpr double kFontSize = 11;
constexpr float kMargin = 1008;  // 0.7 inch

}  // namespace

bool PrinterPresent(page::Printer& printer) {
    try {
        static_cast<void>(printer.DeviceName());
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

PrintDefaults InitPrinterDefaults(page::Printer& printer) {
    PrintDefaults defaults;
    defaults.lineWidth =
        static_cast<float>(MeasurePrintWidth(printer, kDigits110, kFontName, kFontSize, false));
    defaults.orientation = page::kLandscape;
    defaults.font = {std::string(kFontName), kFontSize, false};
    defaults.deviceName = printer.DeviceName();
    defaults.leftMargin = defaults.rightMargin = defaults.topMargin = defaults.bottomMargin = kMargin;
    defaults.lastLine = static_cast<float>(printer.Height()) - defaults.bottomMargin;
    return defaults;
}

std::optional<PrintDefaults> ProbePrinter(page::Printer& printer) {
    if (!PrinterPresent(printer)) return std::nullopt;
    try {
        return InitPrinterDefaults(printer);
    } catch (const std::exception&) {
        return std::nullopt;  // it went away between two questions, or the machine has no font
    }
}

void ApplyPrintDefaults(page::Printer& printer, const PrintDefaults& defaults, bool setTop) {
    printer.Font = defaults.font;
    printer.CurrentX = defaults.leftMargin;
    if (setTop) printer.CurrentY = defaults.topMargin;
}

double MeasurePrintWidth(page::Printer& printer, std::string_view text, std::string_view fontName,
                         double fontSize, bool fontBold) {
    printer.Font = {std::string(fontName), fontSize, fontBold};
    const std::string measured = common::UpTrim(text);
    return printer.TextWidth(measured.empty() ? kDigits110 : measured);
}

int CountCharsAcross(page::Printer& printer, const PrintDefaults& defaults, std::string_view character) {
    return WholeDivision(defaults.lineWidth, printer.TextWidth(character));
}

int WholeDivision(double measure, double divisor) {
    const double whole = text::RoundHalfEven(divisor);
    if (whole == 0) throw Fault{kDivisionByZero, "A text on the page has no size."};
    return static_cast<int>(std::trunc(text::RoundHalfEven(measure) / whole));
}

}  // namespace zenvora::printing

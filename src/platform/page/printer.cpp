#include "platform/page/printer.h"

#include <algorithm>
#include <utility>

#include "platform/text/number.h"

namespace zenvora::page {
namespace {

/// Calls `take` with each line of a text, the empty ones too.
template <class Take>
void ForEachLine(std::string_view text, const Take& take) {
    for (;;) {
        const auto end = text.find_first_of("\r\n");
        take(text.substr(0, end));
        if (end == std::string_view::npos) return;
        const bool isPair = text.substr(end, 2) == "\r\n";
        text.remove_prefix(end + (isPair ? 2 : 1));
    }
}

}  // namespace

Printer::Printer(std::unique_ptr<PageDevice> device) : device_(std::move(device)) {}

Printer::~Printer() = default;

void Printer::SetOrientation(int orientation) {
    if (orientation == orientation_) return;
    device_->SetOrientation(orientation);
    orientation_ = orientation;
    Font = {std::string(kDeviceFontName), kDeviceFontSize, false};
}

std::string Printer::DeviceName() {
    return device_->DeviceName();
}

double Printer::Width() {
    return device_->Width();
}

double Printer::Height() {
    return device_->Height();
}

double Printer::TextWidth(std::string_view text) {
    double widest = 0;
    ForEachLine(text, [&](std::string_view line) {
        if (!line.empty()) widest = std::max(widest, device_->TextWidth(Font, line));
    });
    return widest;
}

double Printer::TextHeight(std::string_view text) {
    const double line = device_->LineHeight(Font);
    double height = 0;
    ForEachLine(text, [&](std::string_view) { height += line; });
    return height;
}

void Printer::Print(std::string_view text) {
    const double height = device_->LineHeight(Font);
    ForEachLine(text, [&](std::string_view line) {
        if (!line.empty()) device_->Draw(CurrentX, CurrentY, Font, line);
        CurrentX = 0;
        CurrentY += height;
    });
}

void Printer::NewPage() {
    device_->NewPage();
    CurrentX = 0;
    CurrentY = 0;
}

void Printer::EndDoc() {
    CurrentX = 0;
    CurrentY = 0;
    device_->EndDoc();
}

void Printer::KillDoc() {
    CurrentX = 0;
    CurrentY = 0;
    device_->KillDoc();
}

std::string PrintedDate(text::Date date) {
    return text::FormatDate(date, "m/d/yyyy");
}

std::string PrintedNumber(double number) {
    return (number < 0 ? "" : " ") + text::DoubleText(number) + " ";
}

}  // namespace zenvora::page

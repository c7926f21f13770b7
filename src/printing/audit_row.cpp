#include "printing/audit_row.h"

#include <algorithm>
#include <cmath>

#include "common/dates.h"
#include "databook/field_access.h"

namespace zenvora::printing {
namespace {

enum class Kind { Text, Date, Price };

/// A column: its part of the heading, which is also its width, and where its values come from.
struct AuditColumn {
    std::string_view heading;
    std::string_view field;
    Kind kind;
};

constexpr std::array<AuditColumn, 12> kColumns{{
    {"Address                              ", "ADDRESS", Kind::Text},
    {"City                  ", "CITY", Kind::Text},
    {"State  ", "ST", Kind::Text},
    {"Zip         ", "ZIP", Kind::Text},
    {"Orig List Dt  ", "ORIGLISTDATE", Kind::Date},
    {"Orig List $  ", "ORIGLISTPRICE", Kind::Price},
    {"Curr List Dt  ", "LASTLISTDATE", Kind::Date},
    {"Curr List $  ", "LASTLISTPRICE", Kind::Price},
    {"Cont Dt     ", "CONTRACTDATE", Kind::Date},
    {"List Cancel Dt  ", "LISTCANCELDATE", Kind::Date},
    {"Sale Dt     ", "SALEDATE", Kind::Date},
    {"Sale $    ", "SELLINGPR", Kind::Price},
}};

constexpr double kSmallestStep = 0.05;  // points: one twip
constexpr double kSmallestSize = 1;

std::string PrintedValue(ado::Adodc& adoDatabook, const AuditColumn& column) {
    switch (column.kind) {
        case Kind::Text:
            break;
        case Kind::Date: {
            const auto date = databook::adogetfieldDate(adoDatabook, column.field);
            return date == common::kDayZero ? "" : page::PrintedDate(date);
        }
        case Kind::Price: {
            const double price = databook::adogetfieldDouble(adoDatabook, column.field);
            return price == 0 ? "" : page::PrintedNumber(price);
        }
    }
    return databook::adogetfield(adoDatabook, column.field);
}

/// Prints a text no wider than `room`, on the lower edge of its row, with the font made smaller if need be.
void PrintFitted(page::Printer& printer, const std::string& text, double room) {
    const double fullHeight = printer.TextHeight("W");
    const double width = printer.TextWidth(text);
    if (width > room) {
        printer.Font.Size = std::floor(printer.Font.Size * room / width / kSmallestStep) * kSmallestStep;
        while (printer.Font.Size > kSmallestSize && printer.TextWidth(text) > room)
            printer.Font.Size -= kSmallestStep;
        printer.Font.Size = std::max(printer.Font.Size, kSmallestSize);
        printer.CurrentY += fullHeight - printer.TextHeight("W");
    }
    printer.Print(text);
    printer.Font.Size = kRowSize;
}

}  // namespace

void PrintAuditHeader(page::Printer& printer, const PrintDefaults& defaults, const std::string& rule) {
    printer.CurrentX = defaults.leftMargin;
    printer.Font = {std::string(kRowFont), kRowSize, true};
    std::string heading;
    for (const AuditColumn& column : kColumns)
        heading += column.heading;
    printer.Print(heading);
    ApplyPrintDefaults(printer, defaults, false);
    printer.Print(rule);
}

void MeasureAuditColumns(page::Printer& printer, const PrintDefaults& defaults, ColumnPositions& columnX) {
    printer.Font = {std::string(kRowFont), kRowSize, true};
    double x = defaults.leftMargin;
    for (std::size_t column = 0; column < columnX.size(); ++column) {
        x += printer.TextWidth(kColumns.at(column).heading);
        columnX.at(column) = x;
    }
}

void PrintAuditRow(page::Printer& printer, const PrintDefaults& defaults, ado::Adodc& adoDatabook,
                   double rowY, const ColumnPositions& columnX, LongText longText) {
    printer.Font.Size = kRowSize;
    printer.Font.Name = kRowFont;
    printer.CurrentX = defaults.leftMargin;
    const double below = rowY + printer.TextHeight("W");
    const double gap = printer.TextWidth(" ");
    for (std::size_t column = 0; column < kColumns.size(); ++column) {
        if (column > 0) {
            printer.CurrentX += columnX.at(column - 1);
            printer.CurrentY = rowY;
        }
        const std::string value = PrintedValue(adoDatabook, kColumns.at(column));
        if (longText == LongText::RunsOn) {
            printer.Print(value);
            continue;
        }
        const double end =
            column < columnX.size() ? columnX.at(column) : printer.Width() - defaults.rightMargin;
        PrintFitted(printer, value, end - gap - printer.CurrentX);
    }
    if (longText == LongText::Shrinks) printer.CurrentY = below;
}

}  // namespace zenvora::printing

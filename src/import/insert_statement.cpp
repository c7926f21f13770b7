#include "import/insert_statement.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

constexpr std::size_t kMostColumns = 255;
constexpr std::string_view kMissingDate = "1/1/1900";
constexpr std::string_view kClearedDate = "1/1/1900 00:00:00";

bool IsFilled(std::string_view date) {
    return !date.empty() && date != kMissingDate;
}

/// Digits run together: 03152009 becomes 03/15/2009.
std::string WithSlashes(std::string_view value) {
    std::string text = text::Left(value, 2);
    text.append("/").append(text::Mid(value, 3, 2)).append("/").append(text::Mid(value, 5, 4));
    return text;
}

Place InField(const char* caption) {
    Place place;
    place.column = caption;
    return place;
}

void StripNonNumeric(std::string& value) {
    const auto isDropped = [](char c) { return c != '.' && (c < '0' || c > '9'); };
    value.erase(std::remove_if(value.begin(), value.end(), isDropped), value.end());
}

}  // namespace

InsertStatement::InsertStatement(LoadPlan plan) : plan_(std::move(plan)), values_(plan_.columns.size()) {
    if (plan_.columns.size() > kMostColumns) {
        throw Fault{fault::kSubscript,
                    "More than 255 columns of the source are mapped, because several have the same "
                    "name. Give the columns names of their own and import again."};
    }
}

void InsertStatement::Build(const SourceGrid& grid, int row, LoadLog* log) {
    Collect(grid, row, log);
    text_ = "INSERT INTO COMPS (";
    if (log != nullptr) {
        log->AddItem("");
        log->AddItem("INSERT INTO COMPS");
        log->AddItem("(");
    }
    AppendColumns(log);
    text_ += ") VALUES (";
    if (log != nullptr) {
        log->AddItem(") ");
        log->AddItem("VALUES");
        log->AddItem("(");
    }
    AppendValues(log);
    Append(")", "", "", log);
}

void InsertStatement::Append(std::string_view first, std::string_view second, std::string_view third,
                             LoadLog* log) {
    const std::size_t start = text_.size();
    text_.append(first).append(second).append(third);
    if (log != nullptr) log->AddItem(std::string_view(text_).substr(start));
}

void InsertStatement::Collect(const SourceGrid& grid, int row, LoadLog* log) {
    for (std::size_t k = 0; k < values_.size(); ++k) {
        const MappedColumn& mapped = plan_.columns[k];
        const std::string_view cell = grid.TextMatrix(row, mapped.gridColumn);
        std::string& value = values_[k];
        value = text::TrimView(cell);
        if (value.empty()) {
            if (mapped.field.type == FieldType::Date) value = kMissingDate;
            if (mapped.field.type == FieldType::Number) value.assign(1, '0');
        } else if (mapped.field.type == FieldType::Date && value.find_first_of("/-") == std::string::npos) {
            value = WithSlashes(value);
        }
        if (log == nullptr) continue;
        std::string line = mapped.field.column;
        log->AddItem(line.append(" loaded with ").append(cell));
    }
}

void InsertStatement::AppendColumns(LoadLog* log) {
    for (std::size_t k = 0; k < values_.size(); ++k) {
        const DestinationField& field = plan_.columns[k].field;
        if (field.type == FieldType::Number) StripNonNumeric(values_[k]);
        const bool isLast = k + 1 == values_.size();
        const bool isDaysOnMarket = field.column == "DAYSONMARKET";
        if (isLast && isDaysOnMarket) Append("ORIGLISTDATE, ", "", "", log);
        Append(field.column, isLast ? "" : ",", "", log);
        if (isLast) continue;
        // An address that stands last in the source gets no ADDRESS beside it.
        if (field.column == "CENTRALKEY") Append("ADDRESS, ", "", "", log);
        if (isDaysOnMarket) Append("ORIGLISTDATE, ", "", "", log);
    }
}

void InsertStatement::AppendValues(LoadLog* log) {
    saleDate_.clear();
    contractDate_.clear();
    daysOnMarket_.clear();
    for (std::size_t k = 0; k < values_.size(); ++k) {
        const std::string& column = plan_.columns[k].field.column;
        if (column == "SALEDATE") saleDate_ = values_[k];
        if (column == "CONTRACTDATE") contractDate_ = values_[k];
        if (column == "DAYSONMARKET") daysOnMarket_ = values_[k];
    }
    for (std::size_t k = 0; k < values_.size(); ++k)
        AppendValue(k, k + 1 == values_.size(), log);
}

void InsertStatement::AppendValue(std::size_t k, bool isLast, LoadLog* log) {
    const DestinationField& field = plan_.columns[k].field;
    const std::string& value = values_[k];
    if (isLast && value.empty()) {
        if (log != nullptr) log->AddItem("");
        return;
    }
    if (field.type == FieldType::Number) {
        const bool isDaysOnMarket = field.column == "DAYSONMARKET";
        if (isLast && isDaysOnMarket) Append("\"", ListingDate(value), "\", ", log);
        Append(value, isLast ? "" : ",", "", log);
        if (!isLast && isDaysOnMarket) Append("\"", ListingDate(value), "\", ", log);
    } else if (field.column == "LISTCANCELDATE") {
        // A contract clears the cancel date only where other columns follow it; a sale clears it everywhere.
        const bool isCleared = IsFilled(saleDate_) || (!isLast && IsFilled(contractDate_));
        Append("\"", isCleared ? kClearedDate : std::string_view(value), "\"", nullptr);
        if (!isLast) text_ += isCleared ? ", " : ",";
    } else {
        Append("\"", value, isLast ? "\"" : "\",", log);
        if (!isLast && field.column == "CENTRALKEY") Append("\"", value, "\", ", log);
    }
}

std::string InsertStatement::ListingDate(std::string_view value) {
    const auto dayLess = [&](text::Date day, std::string_view days) {
        const text::Date result = text::DayPart(day) - text::LeadingNumber(days);
        if (result >= text::kFirstDate && result < text::kLastDate + 1) {
            listingDay_ = result;
        } else if (!catching_) {
            throw Fault{
                fault::kOverflow,
                "The days on market, " + std::string(days) +
                    ", lead to a listing date that no calendar has. Correct the row and import again.",
                InField("Days On Market")};
        }
    };
    if (IsFilled(saleDate_) && !daysOnMarket_.empty()) {
        if (const std::optional<text::Date> saleDay = text::TextToDate(saleDate_, plan_.currentYear)) {
            dayLess(*saleDay, daysOnMarket_);
        } else if (!catching_) {
            throw Fault{fault::kTypeMismatch,
                        "\"" + saleDate_ +
                            "\" is no date, and the listing date of days on market is counted from it. "
                            "Correct the sale date or map another column, and import again.",
                        InField("Sale Date")};
        }
    } else {
        listingDay_ = 0;
    }
    if (listingDay_ == 0 && !value.empty()) dayLess(plan_.fileDate, value);
    return text::FormatDate(listingDay_, "mm/dd/yyyy");
}

}  // namespace zenvora::importing

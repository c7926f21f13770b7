#include "databook/field_access.h"

#include <cmath>

#include "common/error_rule.h"
#include "common/primitives.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::databook {
namespace {

constexpr std::size_t kFilenumberLength = 10;
/// Whole numbers up to here are exact in a double.
constexpr double kLargestExact = 9007199254740992.0;

bool IsText(jet::ColumnType type) {
    return type == jet::ColumnType::Text || type == jet::ColumnType::Memo;
}

/// True for the faults that read as a missing value.
bool MeansMissing(const Fault& fault) {
    return fault.number == fault::kNoCurrentRecord || fault.number == fault::kInvalidUseOfNull;
}

jet::ColumnType TypeOf(const ado::Recordset& records, int field) {
    return records.Fields()[static_cast<std::size_t>(field)].type;
}

/// The field's position. Fault 3265.
int FieldOf(const ado::Recordset& records, std::string_view name) {
    const int field = records.FieldIndex(name);
    // Asked by name, the store says in its own words that there is no such field.
    if (field < 0) static_cast<void>(records.Value(name));
    return field;
}

Date ReadDate(const ado::Recordset& records, int field, const shell::Clock& clock) {
    if (records.IsNull(field)) return common::kDayZero;
    if (TypeOf(records, field) == jet::ColumnType::DateTime) {
        // The text of such a day is a date and reads back as the same number: the text is left out.
        constexpr Date kFirstPlainDay = 1.0;
        const Date date = records.Number(field);
        if (date >= kFirstPlainDay && date <= text::kLastDate && date == std::floor(date)) return date;
    }
    return common::ConvDate(std::string_view{text::Trim(records.Text(field))}, clock);
}

double WholeDollars(double value) {
    if (std::fabs(value) < kLargestExact && value == std::floor(value)) return value;
    return text::NumericValue(text::FormatNumber(value, "0")).value_or(0);
}

double ReadDouble(const ado::Recordset& records, int field) {
    if (!IsText(TypeOf(records, field))) return WholeDollars(records.Number(field));
    if (records.IsNull(field)) return 0;
    const std::string text = records.Text(field);
    const std::optional<double> number = text::NumericValue(text);
    if (!number) {
        const std::string& name = records.Fields()[static_cast<std::size_t>(field)].name;
        Place place;
        place.column = name;
        throw Fault{fault::kTypeMismatch,
                    "The field " + name + " holds \"" + text + "\", which is no number.", place};
    }
    return WholeDollars(*number);
}

}  // namespace

std::string adogetfield(ado::Adodc& control, std::string_view name) {
    try {
        ado::Recordset& records = control.Recordset();
        const std::string text = text::Trim(records.Text(FieldOf(records, name)));
        return name == "FILENUMBER" ? MakeFilenumber(text) : text;
    } catch (const Fault&) {
        // What cannot be read shows as empty: the screens ask for fields all the time, with or without a
        // record.
        return {};
    }
}

std::string MakeFilenumber(std::string_view text) {
    return text::Trim(text::Left(text::Upper(text::TrimView(text)), kFilenumberLength));
}

Date FieldDate(const ado::Recordset& records, int field, const shell::Clock& clock) {
    if (field < 0) return common::kDayZero;
    try {
        return ReadDate(records, field, clock);
    } catch (const Fault& fault) {
        if (!MeansMissing(fault)) throw;
        return common::kDayZero;
    }
}

double FieldDouble(const ado::Recordset& records, int field) {
    if (field < 0) return 0;
    try {
        return ReadDouble(records, field);
    } catch (const Fault& fault) {
        if (!MeansMissing(fault)) throw;
        return 0;
    }
}

Date adogetfieldDate(ado::Adodc& control, std::string_view name) {
    const ado::Recordset& records = control.Recordset();
    return FieldDate(records, FieldOf(records, name), control.Clock());
}

double adogetfieldDouble(ado::Adodc& control, std::string_view name) {
    const ado::Recordset& records = control.Recordset();
    return FieldDouble(records, FieldOf(records, name));
}

int AdoGetSize(common::Session& session, ado::Adodc& control, std::string_view name) {
    int size = 0;
    common::WithErrorRule(session, "AdoGetSize", [&] {
        const ado::Recordset& records = control.Recordset();
        size = records.Fields()[static_cast<std::size_t>(FieldOf(records, name))].definedSize;
    });
    return size;
}

std::string AdoTrim(common::Session& session, ado::Adodc& control, std::string_view value,
                    std::string_view name) {
    const int size = AdoGetSize(session, control, name);
    const std::string_view trimmed = text::TrimView(value);
    // A Memo has no width to cut to.
    if (size <= 0) return std::string(trimmed);
    return text::Trim(text::Left(trimmed, static_cast<std::size_t>(size)));
}

void AdoSetField(common::Session& session, ado::Adodc& control, std::string_view value,
                 std::string_view name) {
    common::WithErrorRule(session, "AdoSetField", [&] {
        control.Recordset().SetValue(name, AdoTrim(session, control, value, name));
    });
}

void AdoSetFieldDouble(common::Session& session, ado::Adodc& control, double value, std::string_view name) {
    common::WithErrorRule(session, "AdoSetFieldDouble", [&] {
        const double single = common::CDouble(text::DoubleText(value));
        control.Recordset().SetValue(name, text::FormatNumber(single, "#,##0"));
    });
}

void AdoSetFieldDate(common::Session& session, ado::Adodc& control, Date value, std::string_view name) {
    common::WithErrorRule(session, "AdoSetFieldDate", [&] {
        const std::string text = text::FormatDate(value, "mm/dd/yyyy");
        control.Recordset().SetValue(
            name, jet::DateTime{common::ConvDate(std::string_view{text}, control.Clock())});
    });
}

void AdoSetFieldDate(common::Session& session, ado::Adodc& control, std::string_view value,
                     std::string_view name) {
    const std::optional<Date> date = text::TextToDate(text::TrimView(value), control.Clock().Year());
    AdoSetFieldDate(session, control, date.value_or(common::kDayZero), name);
}

bool AdoFieldexists(common::Session& session, ado::Adodc& control, std::string_view name) {
    bool exists = false;
    common::WithErrorRule(session, "AdoFieldexists", [&] {
        const std::string wanted = common::UpTrim(name);
        ado::Recordset& records = control.Recordset();
        if (records.RecordCount() == 0) {
            exists = AdoFieldexists2(control, wanted);
            return;
        }
        try {
            static_cast<void>(records.Value(wanted));
            exists = true;
        } catch (const Fault& fault) {
            if (fault.number != fault::kItemNotFound && fault.number != fault::kNoSuchColumn) throw;
        }
    });
    return exists;
}

bool AdoFieldexists2(ado::Adodc& control, std::string_view name) {
    const std::string wanted = common::UpTrim(name);
    for (const ado::FieldInfo& field : control.Recordset().Fields()) {
        if (common::UpTrim(field.name) == wanted) return true;
    }
    return false;
}

bool AdodbFExists(const ado::Recordset& records, std::string_view name) {
    return records.FieldIndex(common::UpTrim(name)) >= 0;
}

}  // namespace zenvora::databook

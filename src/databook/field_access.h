#pragma once

#include <string>
#include <string_view>

#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"

/// All access of the program to a field of the current record.
namespace zenvora::databook {

using common::Date;

/// The trimmed value as text; Null, no current record and any other failure give the empty text. The field
/// FILENUMBER goes through MakeFilenumber.
[[nodiscard]] std::string adogetfield(ado::Adodc& control, std::string_view name);
[[nodiscard]] std::string MakeFilenumber(std::string_view text);
/// Null, a value that is no date, and no current record give day zero.
[[nodiscard]] Date adogetfieldDate(ado::Adodc& control, std::string_view name);
/// Whole dollars, rounded half away from zero; Null and no current record give 0.
[[nodiscard]] double adogetfieldDouble(ado::Adodc& control, std::string_view name);

/// The same by field position, for walks over many records. `field` may be -1 (no such column): day zero, 0.
[[nodiscard]] Date FieldDate(const ado::Recordset& records, int field, const shell::Clock& clock);
[[nodiscard]] double FieldDouble(const ado::Recordset& records, int field);

/// Stores the trimmed value, cut to the column's width.
void AdoSetField(common::Session& session, ado::Adodc& control, std::string_view value,
                 std::string_view name);
[[nodiscard]] std::string AdoTrim(common::Session& session, ado::Adodc& control, std::string_view value,
                                  std::string_view name);
[[nodiscard]] int AdoGetSize(common::Session& session, ado::Adodc& control, std::string_view name);
/// Stores a price: single precision, whole dollars.
void AdoSetFieldDouble(common::Session& session, ado::Adodc& control, double value, std::string_view name);
/// Stores the day of a date; a text that is no date is stored as day zero.
void AdoSetFieldDate(common::Session& session, ado::Adodc& control, Date value, std::string_view name);
void AdoSetFieldDate(common::Session& session, ado::Adodc& control, std::string_view value,
                     std::string_view name);

/// Is there such a column? AdoFieldexists by fetching, AdoFieldexists2 by walking the names.
[[nodiscard]] bool AdoFieldexists(common::Session& session, ado::Adodc& control, std::string_view name);
[[nodiscard]] bool AdoFieldexists2(ado::Adodc& control, std::string_view name);
[[nodiscard]] bool AdodbFExists(const ado::Recordset& records, std::string_view name);

}  // namespace zenvora::databook

#pragma once

#include <string>
#include <string_view>

#include "common/session.h"
#include "platform/ado/adodc.h"

/// Pointing a data control at a Databook and selecting its records.
namespace zenvora::databook {

/// The projection that the grid, the calculation pass and the printouts work on, always in this order.
inline constexpr std::string_view kMainFieldList =
    "CENTRALKEY, ADDRESS, ADDRESS2, CITY, ST, ZIP, SELLINGPR, PRICEFLD, SALEDATE, ORIGLISTPRICE, "
    "ORIGLISTDATE, "
    "LASTLISTPRICE, LASTLISTDATE, CONTRACTDATE, LISTCANCELDATE, SELECTED, LISTINGDOM, OTHERAREA2";
inline constexpr std::string_view kKeyOrder = "ORDER BY CENTRALKEY";

/// Sets the control's connection string; opens nothing yet.
void AdoConnect(ado::Adodc& control, std::string_view directory, std::string_view file);
/// Sets the SELECT text (empty `fields` means all) and refreshes.
void AdoSelect(ado::Adodc& control, std::string_view table, std::string_view fields, std::string_view tail);
void AdoConnectSelect(ado::Adodc& control, std::string_view directory, std::string_view file,
                      std::string_view table, std::string_view fields, std::string_view tail);
/// The connection string of statements that stand alone (ALTER, INSERT).
[[nodiscard]] std::string OneShotConnectionString(std::string_view path);

/// True when the text holds a single quote or an asterisk.
[[nodiscard]] bool DoIllegalSqlCharsExist(std::string_view text);
[[nodiscard]] std::string DoubleUp(std::string_view text, char character);
/// Single quotes, then asterisks doubled.
[[nodiscard]] std::string SqlDoubleUp(std::string_view text);
/// The criterion that finds a record by its key.
[[nodiscard]] std::string KeyCriterion(std::string_view key);

}  // namespace zenvora::databook

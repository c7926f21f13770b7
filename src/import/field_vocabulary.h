#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The names under which exports of listing systems and portals carry the destination fields.
namespace zenvora::importing {

/// What a source field is, as its name tells it.
enum class Meaning {
    Address,
    Street,  ///< the line without its unit
    StreetNumber,
    DirectionBefore,
    StreetName,
    StreetSuffix,
    DirectionAfter,
    Unit,
    ListDate,
    OnMarketDate,  ///< a list date where the file has no better one, else the date of the last change
    OriginalPrice,
    CurrentListDate,
    ListPrice,
    ContractDate,
    ContractOrListDate,  ///< "Contract Date": of the sale in most systems, of the listing in some
    CancelDate,
    OffMarketDate,  ///< filled on a contract and a sale as well
    SaleDate,
    SalePrice,
    AnyPrice,  ///< the list price of a listing, the sale price of a sale
    City,
    State,
    Zip,
    DaysOnMarket,
    Status,
};

/// A name as the vocabulary compares it: lower case, letters, digits and "#" only.
[[nodiscard]] std::string PlainName(std::string_view name);

/// How well a name tells that meaning: 0 is the best name for it, nothing when it is none. A name that the
/// vocabulary lacks is understood word by word ("Sale Dt", "Orig List $") when each word of it is known; it
/// ranks behind the names of the vocabulary.
[[nodiscard]] std::optional<int> RankOf(std::string_view name, Meaning meaning);

}  // namespace zenvora::importing

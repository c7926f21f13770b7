#include "import/suggested_map.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>

#include "import/destination_fields.h"
#include "import/field_vocabulary.h"
#include "import/joined_fields.h"
#include "import/mapping.h"
#include "platform/text/date.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

/// Rows that are looked at: enough to know a column by, whatever the file's length.
constexpr int kMostRows = 5000;
constexpr std::size_t kStateWidth = 2;

/// What the values of a column look like.
struct ColumnFacts {
    int filled = 0;
    int dates = 0;  ///< without a time of day
    int times = 0;  ///< dates with one
    int numbers = 0;
    int zips = 0;
    int abbreviations = 0;  ///< of states
    int words = 0;          ///< at least one letter
};

bool IsDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool HasLetter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               (static_cast<unsigned char>(c) & 0x80U) != 0;
    });
}

/// A date as the load understands it: digits run together are month, day, year.
std::optional<text::Date> DateOf(std::string_view value, int currentYear) {
    if (value.find_first_of("/-") == std::string_view::npos && IsDigits(value) &&
        (value.size() == 6 || value.size() == 8)) {
        const std::string digits(value);
        return text::TextToDate(digits.substr(0, 2) + "/" + digits.substr(2, 2) + "/" + digits.substr(4),
                                currentYear);
    }
    const std::optional<text::Date> date = text::TextToDate(value, currentYear);
    constexpr text::Date kFirstPlainDay = 1;  // what lies before is a time alone
    return date && (*date >= kFirstPlainDay || *date < 0) ? date : std::nullopt;
}

bool IsZip(std::string_view value) {
    const std::size_t hyphen = value.find('-');
    const std::string_view five = value.substr(0, hyphen);
    if (IsDigits(five) && (five.size() == 4 || five.size() == 5)) return true;
    // Canada: A1A 1A1
    return (value.size() == 6 || value.size() == 7) && HasLetter(value.substr(0, 1)) &&
           IsDigits(value.substr(1, 1)) && HasLetter(value.substr(2, 1));
}

ColumnFacts FactsOf(const SourceGrid& grid, int col, int currentYear) {
    ColumnFacts facts;
    for (int row = 1; row < std::min(grid.Rows(), kMostRows + 1); ++row) {
        const std::string_view value = text::TrimView(grid.TextMatrix(row, col));
        if (value.empty()) continue;
        ++facts.filled;
        if (const auto date = DateOf(value, currentYear))
            ++(text::SecondOfDay(*date) == 0 ? facts.dates : facts.times);
        if (text::IsNumeric(value)) ++facts.numbers;
        if (IsZip(value)) ++facts.zips;
        if (text::Length(value) == kStateWidth && HasLetter(value)) ++facts.abbreviations;
        if (HasLetter(value)) ++facts.words;
    }
    return facts;
}

/// Do the values go where a field of that meaning goes? An empty column says nothing against it.
bool Fits(const ColumnFacts& facts, Meaning meaning) {
    const auto most = [&](int count) { return 2 * count >= facts.filled; };
    switch (meaning) {
        case Meaning::ListDate:
        case Meaning::OnMarketDate:
        case Meaning::CurrentListDate:
        case Meaning::ContractDate:
        case Meaning::ContractOrListDate:
        case Meaning::CancelDate:
        case Meaning::OffMarketDate:
        case Meaning::SaleDate:
            return most(facts.dates);
        case Meaning::OriginalPrice:
        case Meaning::ListPrice:
        case Meaning::SalePrice:
        case Meaning::AnyPrice:
        case Meaning::DaysOnMarket:
            return most(facts.numbers);
        case Meaning::Zip:
            return most(facts.zips);
        case Meaning::State:
            return most(facts.abbreviations);
        case Meaning::City:
        case Meaning::Address:
        case Meaning::Street:
        case Meaning::StreetName:
            return most(facts.words);
        default:
            return true;
    }
}

/// Is a record with this status still for sale, as far as the status alone can say it?
bool IsForSale(std::string_view status) {
    static constexpr std::array kForSale{
        "active", "a",   "act",     "new",        "pcg",        "bom",           "ext",
        "rac",    "bmp", "forsale", "mlslisting", "comingsoon", "activekickout", "activeoptioncontract"};
    const std::string plain = PlainName(status);
    return std::find(kForSale.begin(), kForSale.end(), plain) != kForSale.end();
}

class Suggestion {
  public:
    Suggestion(const SourceGrid& grid, const std::vector<std::string>& mapped, int currentYear)
        : grid_(grid), currentYear_(currentYear) {
        for (int col = 0; col < grid.Cols(); ++col)
            ++named_[std::string(grid.TextMatrix(0, col))];
        for (const std::string& row : mapped)
            TakeOver(row);
    }

    SuggestedMap Make() {
        ProposeAddress();
        ProposeSale();
        ProposePrices();
        ProposeDates();
        Propose("City", Best({Meaning::City}));
        ProposeState();
        Propose("Zip", Best({Meaning::Zip}));
        ProposeDaysOnMarket();
        NoteWhatIsMissing();
        SuggestedMap result;
        for (const DestinationField& field : DestinationFields()) {
            if (const auto found = proposed_.find(field.caption); found != proposed_.end())
                result.mappings.push_back({found->second, field.caption});
        }
        result.notes = std::move(notes_);
        return result;
    }

  private:
    static constexpr int kNone = -1;

    void TakeOver(const std::string& row) {
        const std::optional<Mapping> mapping = SplitMapping(row);
        if (!mapping) return;
        taken_.insert(std::string(mapping->destination));
        if (const int col = grid_.FindColumn(mapping->source); col >= 0) used_.insert(col);
        for (const int col : JoinedColumns(grid_, mapping->source).value_or(std::vector<int>{}))
            used_.insert(col);
        if (mapping->destination == "Sale Date") saleDate_ = grid_.FindColumn(mapping->source);
    }

    [[nodiscard]] std::string NameOf(int col) const { return std::string(grid_.TextMatrix(0, col)); }
    /// A name that several columns bear would load all of them, and one that holds an arrow reads wrong.
    [[nodiscard]] bool CanBeNamed(int col) const {
        const std::string name = NameOf(col);
        return !name.empty() && named_.at(name) == 1 && name.find("<->") == std::string::npos;
    }
    const ColumnFacts& Facts(int col) {
        const auto found = facts_.find(col);
        return found != facts_.end() ? found->second
                                     : facts_.emplace(col, FactsOf(grid_, col, currentYear_)).first->second;
    }
    [[nodiscard]] bool IsEmpty(int col) { return Facts(col).filled == 0; }
    [[nodiscard]] bool IsOpen(std::string_view caption) const {
        return !taken_.contains(std::string(caption)) && !proposed_.contains(std::string(caption));
    }
    [[nodiscard]] bool IsMappedOrProposed(std::string_view caption) const { return !IsOpen(caption); }

    /// The unused column that one of the meanings suits best: the first meaning before the second, the better
    /// name before the worse, the fuller column before the emptier; but any before a column without a value.
    int Best(std::initializer_list<Meaning> meanings) {
        int best = kNone;
        std::array<int, 3> bestOrder{};
        int order = 0;
        for (const Meaning meaning : meanings) {
            for (int col = 0; col < grid_.Cols(); ++col) {
                if (used_.contains(col) || !CanBeNamed(col)) continue;
                const std::optional<int> rank = RankOf(NameOf(col), meaning);
                if (!rank || !SuitsOrNote(col, meaning)) continue;
                const std::array<int, 3> place{IsEmpty(col) ? 1 : 0, order + *rank, -Facts(col).filled};
                if (best != kNone && !(place < bestOrder)) continue;
                best = col;
                bestOrder = place;
            }
            order += 10000;
        }
        return best;
    }

    bool SuitsOrNote(int col, Meaning meaning) {
        const ColumnFacts& facts = Facts(col);
        if (Fits(facts, meaning)) return true;
        if (2 * facts.times >= facts.filled && facts.times > 0) {
            Note("\"" + NameOf(col) +
                 "\" holds times of day beside its dates. Such dates are not valid "
                 "ones: export it as dates alone.");
        }
        return false;
    }

    void Note(std::string note) {
        if (std::find(notes_.begin(), notes_.end(), note) == notes_.end()) notes_.push_back(std::move(note));
    }

    bool Propose(std::string_view caption, int col) {
        if (col == kNone || !IsOpen(caption)) return false;
        used_.insert(col);
        proposed_.emplace(caption, NameOf(col));
        return true;
    }

    // ---- address ----

    void ProposeAddress() {
        if (!IsOpen("Address")) return;
        const int whole = Best({Meaning::Address});
        if (whole != kNone && !IsEmpty(whole)) {
            Propose("Address", whole);
            return;
        }
        if (ProposeJoined(
                {Best({Meaning::StreetNumber}), Best({Meaning::DirectionBefore}), Best({Meaning::StreetName}),
                 Best({Meaning::StreetSuffix}), Best({Meaning::DirectionAfter}), Best({Meaning::Unit})},
                {0, 2})) {
            return;
        }
        const int street = Best({Meaning::Street});
        if (ProposeJoined({street, Best({Meaning::Unit})}, {0, 1})) return;
        Propose("Address", street != kNone && !IsEmpty(street) ? street : whole);
    }

    /// Proposes the columns that are there as one field, when the ones that it needs are among them.
    bool ProposeJoined(const std::vector<int>& columns, std::initializer_list<std::size_t> needed) {
        for (const std::size_t part : needed) {
            if (columns[part] == kNone) return false;
        }
        std::vector<std::string> names;
        for (const int col : columns) {
            if (col != kNone) names.push_back(NameOf(col));
        }
        for (const int col : columns)
            used_.insert(col);
        proposed_.emplace("Address", JoinedName(names));
        return true;
    }

    // ---- sale and prices ----

    void ProposeSale() {
        if (const int col = Best({Meaning::SaleDate}); Propose("Sale Date", col)) {
            saleDate_ = col;
            if (PlainName(NameOf(col)) == "lastsolddate") {
                Note("\"" + NameOf(col) + "\" of a home that is for sale is the date of an earlier sale.");
            }
        }
        Propose("Selling Price", Best({Meaning::SalePrice}));
    }

    void ProposePrices() {
        ProposePriceOfEitherKind();
        Propose("Original Listing Price", Best({Meaning::OriginalPrice}));
        const int listPrice = Best({Meaning::ListPrice});
        if (listPrice == kNone) return;
        if (Propose(IsOpen("Original Listing Price") ? "Original Listing Price" : "Current Listing Price",
                    listPrice) &&
            proposed_.contains("Original Listing Price") &&
            proposed_["Original Listing Price"] == NameOf(listPrice)) {
            Note("\"" + NameOf(listPrice) +
                 "\" is the only list price of the source: the current price is "
                 "taken over from it when the records are checked.");
        }
    }

    /// One price column for both kinds of record: what it is depends on what most records are.
    void ProposePriceOfEitherKind() {
        const int price = Best({Meaning::AnyPrice});
        if (price == kNone) return;
        const int sold = saleDate_ == kNone ? 0 : Facts(saleDate_).filled;
        const int rows = Facts(price).filled;
        const bool isSales = 2 * sold > rows;
        const bool isProposed = isSales ? Propose("Selling Price", price)
                                        : Best({Meaning::ListPrice, Meaning::OriginalPrice}) == kNone &&
                                              Propose("Original Listing Price", price);
        if (isProposed && sold > 0 && sold < rows) {
            Note("\"" + NameOf(price) + "\" is a list price or a sale price, record by record, and " +
                 text::IntegerText(sold) + " of " + text::IntegerText(rows) +
                 " records have a sale date. Where the others are listings, import them as a file of their "
                 "own.");
        }
    }

    // ---- dates ----

    void ProposeDates() {
        ProposeListDate();
        ProposeCurrentListDate();
        if (!Propose("Contract Date", Best({Meaning::ContractDate}))) ProposeContractOrListDate();
        if (Propose("Listing Cancel Date", Best({Meaning::CancelDate}))) return;
        // Elsewhere it would make a pending sale a cancelled listing.
        const int offMarket = Best({Meaning::OffMarketDate});
        if (offMarket == kNone) return;
        if (IsMappedOrProposed("Sale Date") && IsMappedOrProposed("Contract Date")) {
            Propose("Listing Cancel Date", offMarket);
        } else {
            Note("\"" + NameOf(offMarket) +
                 "\" is not proposed as the cancel date: without a contract date "
                 "and a sale date, a sale would pass for a cancelled listing.");
        }
    }

    void ProposeListDate() {
        if (!IsOpen("Original Listing Date")) return;
        if (Propose("Original Listing Date", Best({Meaning::ListDate}))) {
            listDateIsPlain_ = true;
            return;
        }
        if (Propose("Original Listing Date", Best({Meaning::OnMarketDate}))) return;
        const int contract = Best({Meaning::ContractOrListDate});
        if (contract == kNone || IsEmpty(contract)) return;
        // A file of sales alone has no use for a list date of which nothing tells that it is one.
        if (Best({Meaning::ContractDate}) == kNone && 2 * ForSaleWith(contract) <= ForSale()) return;
        if (Propose("Original Listing Date", contract)) {
            Note("\"" + NameOf(contract) +
                 "\" is proposed as the listing date, since listings have it and no "
                 "other field is one.");
        }
    }

    void ProposeCurrentListDate() {
        if (!IsOpen("Current Listing Date")) return;
        const int listed = ListDateColumn();
        int current = Best({Meaning::CurrentListDate});
        if ((current == kNone || IsEmpty(current)) && listDateIsPlain_) {
            if (const int onMarket = Best({Meaning::OnMarketDate}); onMarket != kNone) current = onMarket;
        }
        if (current != kNone && (listed == kNone || IsSeldomBefore(current, listed)))
            Propose("Current Listing Date", current);
    }

    void ProposeContractOrListDate() {
        const int contract = Best({Meaning::ContractOrListDate});
        if (contract == kNone || !IsOpen("Contract Date")) return;
        if (ForSale() > 0 && 2 * ForSaleWith(contract) > ForSale()) {
            Note("\"" + NameOf(contract) +
                 "\" is not proposed as the contract date: most records that are "
                 "still for sale have one.");
            return;
        }
        Propose("Contract Date", contract);
    }

    [[nodiscard]] int ListDateColumn() {
        const auto found = proposed_.find("Original Listing Date");
        return found == proposed_.end() ? kNone : grid_.FindColumn(found->second);
    }

    /// A current list date before the original one makes a record invalid.
    bool IsSeldomBefore(int later, int earlier) {
        int both = 0;
        int before = 0;
        for (int row = 1; row < std::min(grid_.Rows(), kMostRows + 1); ++row) {
            const auto a = DateOf(text::TrimView(grid_.TextMatrix(row, earlier)), currentYear_);
            const auto b = DateOf(text::TrimView(grid_.TextMatrix(row, later)), currentYear_);
            if (!a || !b) continue;
            ++both;
            if (*b < *a) ++before;
        }
        return 20 * before <= both;
    }

    /// Records that are for sale by their status, and those of them with a value in a column.
    [[nodiscard]] int ForSale() { return CountForSale(kNone); }
    [[nodiscard]] int ForSaleWith(int col) { return CountForSale(col); }
    int CountForSale(int with) {
        int status = kNone;
        for (int col = 0; col < grid_.Cols() && status == kNone; ++col) {
            if (RankOf(NameOf(col), Meaning::Status)) status = col;
        }
        if (status == kNone) return 0;
        int count = 0;
        for (int row = 1; row < std::min(grid_.Rows(), kMostRows + 1); ++row) {
            if (!IsForSale(grid_.TextMatrix(row, status))) continue;
            if (with == kNone || !text::TrimView(grid_.TextMatrix(row, with)).empty()) ++count;
        }
        return count;
    }

    // ---- the rest ----

    void ProposeState() {
        if (Propose("State", Best({Meaning::State})) || !IsOpen("State")) return;
        for (int col = 0; col < grid_.Cols(); ++col) {
            if (!used_.contains(col) && RankOf(NameOf(col), Meaning::State) && !IsEmpty(col)) {
                Note("\"" + NameOf(col) +
                     "\" is not proposed as the state: the Databook takes abbreviations "
                     "of two letters.");
            }
        }
    }

    void ProposeDaysOnMarket() {
        if (IsMappedOrProposed("Original Listing Date")) return;
        const int days = Best({Meaning::DaysOnMarket});
        if (days == kNone || IsEmpty(days)) return;
        Propose("Days On Market", days);
    }

    void NoteWhatIsMissing() {
        const auto note = [&](const char* caption, const std::string& what) {
            if (IsOpen(caption)) Note("No field of the source is known to be " + what + ".");
        };
        note("Address", "the address, without which no record is loaded");
        if (IsOpen("Days On Market"))
            note("Original Listing Date", "the listing date, without which records are invalid");
        note("Original Listing Price", "the listing price, without which records are invalid");
    }

    const SourceGrid& grid_;
    int currentYear_;
    std::map<std::string, int> named_;  ///< columns by name
    std::map<int, ColumnFacts> facts_;
    std::set<int> used_;
    std::set<std::string> taken_;  ///< captions that the user has mapped
    std::map<std::string, std::string> proposed_;
    std::vector<std::string> notes_;
    int saleDate_ = kNone;
    bool listDateIsPlain_ = false;  ///< by a name of its own, not as the on-market date
};

}  // namespace

SuggestedMap SuggestMap(const SourceGrid& grid, const std::vector<std::string>& mapped, int currentYear) {
    return Suggestion(grid, mapped, currentYear).Make();
}

}  // namespace zenvora::importing

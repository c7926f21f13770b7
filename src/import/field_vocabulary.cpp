#include "import/field_vocabulary.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

struct Entry {
    Meaning meaning;
    /// Plain names, the best first, one blank between them.
    std::string_view names;
};

// Standard names of the data dictionary first, then those of systems and portals, then abbreviations and the
// names of our own columns.
constexpr std::array kVocabulary{
    Entry{Meaning::Address,
          "unparsedaddress fulladdress address fullstreetline streetaddress propertyaddress listingaddress "
          "siteaddress addressfull centralkey addr"},
    Entry{Meaning::Street, "street"},
    Entry{Meaning::StreetNumber,
          "streetnumber streetnumbernumeric street# st# streetno streetnum streetnumdisplay housenumber "
          "houseno house#"},
    Entry{Meaning::DirectionBefore, "streetdirprefix streetdirectionprefix cp"},
    Entry{Meaning::StreetName, "streetname strname stname street"},
    Entry{Meaning::StreetSuffix, "streetsuffix stsuffix sfx abbr"},
    Entry{Meaning::DirectionAfter, "streetdirsuffix streetdirectionsuffix dir"},
    Entry{Meaning::Unit, "unitnumber apartmentnumber suite spacenumber unit# unitno unit apt#"},
    Entry{Meaning::ListDate,
          "listingcontractdate listingdate listdate dateoflisting agreementdate origlistdate "
          "originallistdate originallistingdate datelisted ld"},
    Entry{Meaning::OnMarketDate,
          "onmarketdate entrydate originalentrytimestamp inputdate datetimecreated createddate"},
    Entry{Meaning::OriginalPrice,
          "originallistprice originalprice origlistpr origlistprice priceorig originallistingprice olp"},
    Entry{Meaning::CurrentListDate,
          "pricechangetimestamp pricechangedatetime pricechange pricechangedate backonmarketdate "
          "lastlistdate"},
    Entry{Meaning::ListPrice,
          "listprice askingprice pricelisted pricelisting pricelist listingprice currentprice lastlistprice "
          "currentlistprice lp"},
    Entry{Meaning::ContractDate,
          "purchasecontractdate undercontractdate pendingdate datepending contingentdate pendingtimestamp "
          "ucd"},
    Entry{Meaning::ContractOrListDate, "contractdate cd"},
    Entry{Meaning::CancelDate,
          "cancellationdate canceldate listcanceldate withdrawndate withdrawaldate cncldate"},
    Entry{Meaning::OffMarketDate, "offmarketdate dateoffmarket offmktdt offmktdate"},
    Entry{Meaning::SaleDate,
          "closedate solddate datesold coedate coe closeddate closingdate sellingdate saledate lastsolddate "
          "sd"},
    Entry{Meaning::SalePrice,
          "closeprice soldprice saleprice sellingprice pricesold purchaseprice soldpr salesprice "
          "lastsoldprice sellingpr propertyprice amount sp"},
    Entry{Meaning::AnyPrice, "price"},
    Entry{Meaning::City, "city postalcity municipality town"},
    Entry{Meaning::State, "stateorprovince state st"},
    Entry{Meaning::Zip, "postalcode zipcode zip ziporpostalcode"},
    Entry{Meaning::DaysOnMarket,
          "daysonmarket dom adom listingdaysonmarket ldom doml activedaysonmarket agentdaysonmarket "
          "daysonmls lmt cumulativedaysonmarket cdom pdom propertydaysonmarket domp cumulativedom mt "
          "cdomdaysonmarket simpledaysonmarket daysinmls daysonsite"},
    Entry{Meaning::Status, "standardstatus mlsstatus listingstatus status stat statusshort lsc saletype"},
};

/// What a word of a name stands for; a name is the set of its words.
enum Word : unsigned {
    kOriginal = 1U,
    kCurrent = 2U,
    kList = 4U,
    kSale = 8U,
    kContract = 16U,
    kCancel = 32U,
    kDate = 64U,
    kPrice = 128U,
    kNothing = 256U,  ///< says nothing about the field
};

struct WordEntry {
    Word word;
    std::string_view spellings;
};

constexpr std::array kWords{
    WordEntry{kOriginal, "original orig initial first"},
    WordEntry{kCurrent, "current curr"},
    WordEntry{kList, "list listing listed lst asking ask"},
    WordEntry{kSale, "sale sales sold selling close closed closing settled settlement sld"},
    WordEntry{kContract, "contract contr"},
    WordEntry{kCancel, "cancel canceled cancelled cancellation withdrawn canc cncl"},
    WordEntry{kDate, "date dt dte"},
    WordEntry{kPrice, "price pr px prc amt amount $"},
    WordEntry{kNothing, "the of in usd mm dd yyyy yy property"},
};

struct Phrase {
    Meaning meaning;
    unsigned words;
};

constexpr std::array kPhrases{
    Phrase{Meaning::ListDate, kList | kDate},
    Phrase{Meaning::ListDate, kOriginal | kList | kDate},
    Phrase{Meaning::OriginalPrice, kOriginal | kPrice},
    Phrase{Meaning::OriginalPrice, kOriginal | kList | kPrice},
    Phrase{Meaning::CurrentListDate, kCurrent | kList | kDate},
    Phrase{Meaning::ListPrice, kList | kPrice},
    Phrase{Meaning::ListPrice, kCurrent | kPrice},
    Phrase{Meaning::ListPrice, kCurrent | kList | kPrice},
    Phrase{Meaning::ContractOrListDate, kContract | kDate},
    Phrase{Meaning::ContractDate, kSale | kContract | kDate},
    Phrase{Meaning::CancelDate, kCancel | kDate},
    Phrase{Meaning::CancelDate, kList | kCancel | kDate},
    Phrase{Meaning::SaleDate, kSale | kDate},
    Phrase{Meaning::SalePrice, kSale | kPrice},
};

/// Behind every name of the vocabulary.
constexpr int kPhraseRank = 1000;

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (static_cast<unsigned char>(c) & 0x80U) != 0;
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

/// Calls `each` for the blank-separated words of a list, in order, until it returns true.
template <class Each>
bool AnyOf(std::string_view list, const Each& each) {
    for (int rank = 0; !list.empty(); ++rank) {
        const std::size_t end = std::min(list.find(' '), list.size());
        if (each(list.substr(0, end), rank)) return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

/// The words of a name, in lower case: cut where no letter stands and in front of a capital behind a small
/// letter. "$" is a word.
std::vector<std::string> WordsOf(std::string_view name) {
    std::vector<std::string> words;
    bool goesOn = false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        const bool isPart = IsLetter(c) || IsDigit(c);
        if (c == '$') words.emplace_back("$");
        if (isPart) {
            const bool isCapital = i > 0 && IsUpper(c) && IsLetter(name[i - 1]) && !IsUpper(name[i - 1]);
            if (!goesOn || isCapital) words.emplace_back();
            words.back().push_back(c);
        }
        goesOn = isPart;
    }
    for (std::string& word : words)
        word = text::Lower(word);
    return words;
}

/// The words of a name together; nothing when one of them is unknown.
std::optional<unsigned> PhraseOf(std::string_view name) {
    unsigned phrase = 0;
    for (const std::string& word : WordsOf(name)) {
        const auto known = std::find_if(kWords.begin(), kWords.end(), [&](const WordEntry& entry) {
            return AnyOf(entry.spellings, [&](std::string_view spelling, int) { return spelling == word; });
        });
        if (known == kWords.end()) return std::nullopt;
        phrase |= known->word;
    }
    return phrase & ~static_cast<unsigned>(kNothing);
}

/// "Sold date (MM/DD/YYYY)" without what stands in brackets.
std::string_view WithoutBrackets(std::string_view name) {
    const std::size_t open = name.find('(');
    return open == std::string_view::npos ? name : name.substr(0, open);
}

std::optional<int> RankOfPlain(std::string_view plain, Meaning meaning) {
    std::optional<int> found;
    for (const Entry& entry : kVocabulary) {
        if (entry.meaning != meaning) continue;
        AnyOf(entry.names, [&](std::string_view candidate, int rank) {
            if (candidate != plain) return false;
            found = rank;
            return true;
        });
    }
    return found;
}

}  // namespace

std::string PlainName(std::string_view name) {
    std::string plain;
    for (const char c : text::Lower(name)) {
        if (IsLetter(c) || IsDigit(c) || c == '#') plain.push_back(c);
    }
    return plain;
}

std::optional<int> RankOf(std::string_view name, Meaning meaning) {
    if (const auto rank = RankOfPlain(PlainName(name), meaning)) return rank;
    const std::string_view bare = WithoutBrackets(name);
    if (const auto rank = RankOfPlain(PlainName(bare), meaning)) return rank;
    const std::optional<unsigned> phrase = PhraseOf(bare);
    if (!phrase) return std::nullopt;
    const bool isSaid = std::any_of(kPhrases.begin(), kPhrases.end(), [&](const Phrase& known) {
        return known.meaning == meaning && known.words == *phrase;
    });
    return isSaid ? std::optional{kPhraseRank} : std::nullopt;
}

}  // namespace zenvora::importing

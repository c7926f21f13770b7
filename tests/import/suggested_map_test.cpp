#include "import/suggested_map.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "import/delimited_source.h"
#include "import/mapping.h"
#include "import/source_text.h"
#include "import/xml_source.h"

namespace zenvora::importing {
namespace {

using Rows = std::vector<std::string>;

/// The proposed map of a source with ";" between its fields.
SuggestedMap Suggested(const std::string& text, const Rows& mapped = {}) {
    SourceGrid grid;
    DelimitedFormat format;
    std::vector<std::uint32_t> lines;
    ParseDelimitedText(text, "L.CSV", true, grid, format, lines);
    return SuggestMap(grid, mapped, 2026);
}
Rows RowsOf(const SuggestedMap& map) {
    Rows rows;
    for (const ProposedMapping& mapping : map.mappings)
        rows.push_back(MappingText(mapping.source, mapping.destination));
    return rows;
}
Rows Map(const std::string& text, const Rows& mapped = {}) {
    return RowsOf(Suggested(text, mapped));
}
bool HasNote(const SuggestedMap& map, const std::string& part) {
    for (const std::string& note : map.notes) {
        if (note.find(part) != std::string::npos) return true;
    }
    return false;
}

TEST(SuggestedMap, FollowsTheNamesOfTheFields) {
    EXPECT_EQ(
        Map("MLS #;Address;City;State;Zip;List Date;Original Price;List Price;Under Contract Date;Cancel "
            "Date;Close Date;Close Price;Beds\n"
            "1;12 Oak St;Troy;MI;48083;1/2/2026;200000;190000;2/1/2026;;3/1/2026;180000;3\n"),
        (Rows{"Address <-> Address", "List Date <-> Original Listing Date",
              "Original Price <-> Original Listing Price", "List Price <-> Current Listing Price",
              "Under Contract Date <-> Contract Date", "Cancel Date <-> Listing Cancel Date",
              "Close Date <-> Sale Date", "Close Price <-> Selling Price", "City <-> City", "State <-> State",
              "Zip <-> Zip"}));
}

TEST(SuggestedMap, ProposesNothingForASourceThatItDoesNotKnow) {
    EXPECT_TRUE(Map("a;b;c\n1;2;3\n").empty());
    EXPECT_TRUE(Map("").empty());
}

TEST(SuggestedMap, JoinsAnAddressInPartsWithTheUnitLast) {
    EXPECT_EQ(Map("Unit #;Str Name;Sfx;Street #;CP\n;Oak;St;12;N\n"),
              Rows{"Street # + CP + Str Name + Sfx + Unit # <-> Address"});
    EXPECT_EQ(Map("STREET_NO;STREET_NAME\n12;Oak\n"), Rows{"STREET_NO + STREET_NAME <-> Address"});
}

TEST(SuggestedMap, JoinsAStreetLineWithItsUnit) {
    EXPECT_EQ(Map("street;unit\n12 Oak St;#3\n"), Rows{"street + unit <-> Address"});
    EXPECT_EQ(Map("full_street_line;street;unit\n12 Oak St #3;12 Oak St;#3\n"),
              Rows{"full_street_line <-> Address"});
    EXPECT_EQ(Map("Street\n12 Oak St\n"), Rows{"Street <-> Address"});
}

TEST(SuggestedMap, JoinsThePartsWhenTheWholeAddressIsEmpty) {
    EXPECT_EQ(Map("Address;Street Number;Street Name\n;12;Oak St\n"),
              Rows{"Street Number + Street Name <-> Address"});
}

TEST(SuggestedMap, TakesTheFilledFieldOfTwoNames) {
    EXPECT_EQ(Map("CloseDate;Sold Date\n;3/1/2026\n")[0], "Sold Date <-> Sale Date");
    EXPECT_EQ(Map("CloseDate;Sold Date\n3/1/2026;3/2/2026\n")[0], "CloseDate <-> Sale Date");
}

TEST(SuggestedMap, MapsAFieldWithoutAnyValueByItsName) {
    EXPECT_EQ(Map("Sold Date;Sold Price\n;\n"),
              (Rows{"Sold Date <-> Sale Date", "Sold Price <-> Selling Price"}));
}

TEST(SuggestedMap, LeavesOutAFieldWhoseValuesDoNotFit) {
    EXPECT_TRUE(Map("Sold Date;Sold Price\nyes;no\nno;yes\n").empty());
    EXPECT_TRUE(Map("Zip\nDowntown\n").empty());
    EXPECT_EQ(Map("Zip\n2124\n02124-1234\nV5K 0A1\n"), Rows{"Zip <-> Zip"});
}

TEST(SuggestedMap, ReadsDatesInTheFormsOfRealFiles) {
    for (const char* date :
         {"2023-07-28", "04/15/2024", "05/01/24", "December-20-2024", "01-11-2017", "03152009", "031509"}) {
        EXPECT_EQ(Map(std::string("Sold Date\n") + date + "\n"), Rows{"Sold Date <-> Sale Date"}) << date;
    }
    EXPECT_TRUE(Map("Sold Date\n20090315\n").empty());  // would be refused
    EXPECT_TRUE(Map("Sold Date\n12.5\n").empty());
}

TEST(SuggestedMap, LeavesOutDatesWithATimeOfDay) {
    const SuggestedMap map = Suggested("ListDate;PriceChangeTimestamp\n1/2/2026;2/11/2026 9:19:00 AM\n");
    EXPECT_EQ(RowsOf(map), Rows{"ListDate <-> Original Listing Date"});
    EXPECT_TRUE(HasNote(map, "\"PriceChangeTimestamp\" holds times of day"));
}

TEST(SuggestedMap, LeavesOutStatesByName) {
    const SuggestedMap map = Suggested("State\nIllinois\n");
    EXPECT_TRUE(map.mappings.empty());
    EXPECT_TRUE(HasNote(map, "abbreviations"));
    EXPECT_EQ(Map("State\nIL\n"), Rows{"State <-> State"});
}

TEST(SuggestedMap, LeavesOutANameThatSeveralFieldsBear) {
    EXPECT_EQ(Map("City;City;Town\nTroy;Troy;Novi\n"), Rows{"Town <-> City"});
}

// ---- what the user has mapped ----

TEST(SuggestedMap, LeavesTheUsersOwnMappingsAlone) {
    const std::string source = "Address;Close Date;Sold Date\n12 Oak St;3/1/2026;3/2/2026\n";
    EXPECT_EQ(Map(source, {"Sold Date <-> Sale Date"}), Rows{"Address <-> Address"});
    EXPECT_EQ(Map(source, {"Close Date <-> Contract Date"}),
              (Rows{"Address <-> Address", "Sold Date <-> Sale Date"}));
}

TEST(SuggestedMap, LeavesThePartsOfTheUsersOwnJoinAlone) {
    EXPECT_EQ(Map("Street Number;Street Name;City\n12;Oak;Troy\n", {"Street Number + City <-> Zip"}), Rows{});
}

// ---- prices ----

TEST(SuggestedMap, MapsTheOnlyListPriceToTheOriginalOne) {
    const SuggestedMap map = Suggested("List Price\n190000\n");
    EXPECT_EQ(RowsOf(map), Rows{"List Price <-> Original Listing Price"});
    EXPECT_TRUE(HasNote(map, "is the only list price"));
}

TEST(SuggestedMap, MapsTheOnlyListPriceToTheCurrentOneBesideTheUsersOriginal) {
    EXPECT_EQ(Map("First Price;List Price\n5;6\n", {"First Price <-> Original Listing Price"}),
              Rows{"List Price <-> Current Listing Price"});
}

TEST(SuggestedMap, TellsAPriceOfEitherKindByTheSaleDates) {
    EXPECT_EQ(Map("SOLD DATE;PRICE\n3/1/2026;5\n3/2/2026;6\n"),
              (Rows{"SOLD DATE <-> Sale Date", "PRICE <-> Selling Price"}));
    EXPECT_EQ(Map("SOLD DATE;PRICE\n;5\n;6\n"),
              (Rows{"PRICE <-> Original Listing Price", "SOLD DATE <-> Sale Date"}));
    EXPECT_TRUE(HasNote(Suggested("SOLD DATE;PRICE\n3/1/2026;5\n3/2/2026;6\n;7\n"),
                        "2 of 3 records have a sale date"));
}

// ---- dates ----

TEST(SuggestedMap, TakesTheOnMarketDateWhereThereIsNoListDate) {
    EXPECT_EQ(Map("On Market Date\n1/2/2026\n"), Rows{"On Market Date <-> Original Listing Date"});
    EXPECT_EQ(Map("On Market Date;List Date\n1/5/2026;1/2/2026\n"),
              (Rows{"List Date <-> Original Listing Date", "On Market Date <-> Current Listing Date"}));
}

TEST(SuggestedMap, ProposesNoCurrentListDateThatLiesBeforeTheOriginalOne) {
    EXPECT_EQ(Map("On Market Date;List Date\n1/1/2026;1/2/2026\n"),
              Rows{"List Date <-> Original Listing Date"});
}

TEST(SuggestedMap, TakesAContractDateForTheListingWhenListingsHaveItAndNothingElseIs) {
    const std::string rows = "12 Oak;Active;1/2/2026;\n14 Oak;New;1/3/2026;\n16 Oak;Sold;1/4/2026;3/1/2026\n";
    EXPECT_EQ(
        Map("Address;Status;Contract Date;Sold Date\n" + rows),
        (Rows{"Address <-> Address", "Contract Date <-> Original Listing Date", "Sold Date <-> Sale Date"}));
    const SuggestedMap beside =
        Suggested("Address;Status;Contract Date;List Date\n12 Oak;Active;1/2/2026;1/1/2026\n");
    EXPECT_EQ(RowsOf(beside), (Rows{"Address <-> Address", "List Date <-> Original Listing Date"}));
    EXPECT_TRUE(HasNote(beside, "most records that are still for sale have one"));
}

TEST(SuggestedMap, TakesAContractDateForTheContractBesideAListDate) {
    EXPECT_EQ(Map("Status;Contract Date;List Date\nActive;;1/1/2026\nSold;2/1/2026;1/1/2026\n"),
              (Rows{"List Date <-> Original Listing Date", "Contract Date <-> Contract Date"}));
}

TEST(SuggestedMap, ProposesAnOffMarketDateOnlyBesideSaleAndContractDates) {
    EXPECT_EQ(Map("Off Market Date;Sold Date;Pending Date\n1/2/2026;1/3/2026;1/2/2026\n"),
              (Rows{"Pending Date <-> Contract Date", "Off Market Date <-> Listing Cancel Date",
                    "Sold Date <-> Sale Date"}));
    const SuggestedMap map = Suggested("Off Market Date;Sold Date\n1/2/2026;1/3/2026\n");
    EXPECT_EQ(RowsOf(map), Rows{"Sold Date <-> Sale Date"});
    EXPECT_TRUE(HasNote(map, "not proposed as the cancel date"));
}

TEST(SuggestedMap, NeverProposesAStatusOrExpirationDateAsTheCancelDate) {
    EXPECT_TRUE(Map("Status;Status Change Date;Expiration Date\nW;1/2/2026;6/1/2026\n").empty());
}

// ---- days on market ----

TEST(SuggestedMap, ProposesDaysOnMarketOnlyWithoutAListDate) {
    EXPECT_EQ(Map("DOM;CDOM\n5;9\n"), Rows{"DOM <-> Days On Market"});
    EXPECT_EQ(Map("DOM;List Date\n5;1/2/2026\n"), Rows{"List Date <-> Original Listing Date"});
    EXPECT_TRUE(Map("DOM;When\n5;1/2/2026\n", {"When <-> Original Listing Date"}).empty());
    EXPECT_TRUE(Map("DOM\n\n").empty());  // nothing to count from
}

TEST(SuggestedMap, SaysWhatIsMissing) {
    const SuggestedMap map = Suggested("City\nTroy\n");
    EXPECT_TRUE(HasNote(map, "the address"));
    EXPECT_TRUE(HasNote(map, "the listing date"));
    EXPECT_TRUE(HasNote(map, "the listing price"));
}

// ---- real exports ----

struct Export {
    const char* file;
    Rows map;
};

const Rows kAcadiana{"Street Number + Street Name + Unit # <-> Address",
                     "Listing Date <-> Original Listing Date",
                     "Original List Price <-> Original Listing Price",
                     "Listing Price <-> Current Listing Price",
                     "Under Contract Date <-> Contract Date",
                     "Sold Date <-> Sale Date",
                     "Sold Price <-> Selling Price",
                     "City <-> City",
                     "State <-> State",
                     "Zip Code <-> Zip"};
const Rows kPin{"STREET_NO + STREET_NAME + UNIT_NO <-> Address", "LIST_PRICE <-> Original Listing Price",
                "ZIP_CODE <-> Zip"};

class RealExport : public testing::TestWithParam<Export> {};

TEST_P(RealExport, GetsTheMapThatAPersonWouldMake) {
    const char* const folder = std::getenv("ZENVORA_SAMPLE_EXPORTS");
    if (folder == nullptr) GTEST_SKIP() << "ZENVORA_SAMPLE_EXPORTS names no folder: nothing was mapped";
    const std::filesystem::path path = std::filesystem::path(folder) / GetParam().file;
    const std::string text = ReadSourceText(files::SystemDisk(), path);
    SourceGrid grid;
    std::vector<std::uint32_t> lines;
    if (path.extension() == ".xml") {
        ParseXmlText(text, path.string(), ScanXmlTags(text, path.string()), grid, lines);
    } else {
        DelimitedFormat format;
        ParseDelimitedText(text, path.string(), true, grid, format, lines);
    }
    EXPECT_EQ(RowsOf(SuggestMap(grid, {}, 2026)), GetParam().map);
}

INSTANTIATE_TEST_SUITE_P(
    Of, RealExport,
    testing::Values(
        Export{"acadiana-active.csv", kAcadiana}, Export{"acadiana-pending.csv", kAcadiana},
        Export{"acadiana-sold.csv", kAcadiana},
        Export{"bright-king-george.csv",
               {"Address <-> Address", "On Market Date <-> Original Listing Date",
                "List Price <-> Original Listing Price", "Close Date <-> Sale Date",
                "Close Price <-> Selling Price", "Zip Code <-> Zip"}},
        Export{"redfin-asheville-sold.csv",
               {"ADDRESS <-> Address", "SOLD DATE <-> Sale Date", "PRICE <-> Selling Price", "CITY <-> City",
                "STATE OR PROVINCE <-> State", "ZIP OR POSTAL CODE <-> Zip"}},
        Export{"redfin-asheville-active.csv",
               {"ADDRESS <-> Address", "PRICE <-> Original Listing Price", "SOLD DATE <-> Sale Date",
                "CITY <-> City", "STATE OR PROVINCE <-> State", "ZIP OR POSTAL CODE <-> Zip",
                "DAYS ON MARKET <-> Days On Market"}},
        Export{"realtor-asheville-sold.csv",
               {"full_street_line <-> Address", "list_date <-> Original Listing Date",
                "list_price <-> Original Listing Price", "last_sold_date <-> Sale Date",
                "sold_price <-> Selling Price", "city <-> City", "state <-> State", "zip_code <-> Zip"}},
        Export{"mlspin-multifamily-active.txt", kPin}, Export{"mlspin-mobile-active.txt", kPin},
        Export{"glenlake-hoa.csv",
               {"address <-> Address", "listingdate <-> Original Listing Date", "saledate <-> Sale Date",
                "amount <-> Selling Price"}},
        Export{"derived/acadiana-sold.flat.xml",
               {"Address <-> Address", "ListingDate <-> Original Listing Date",
                "OriginalListPrice <-> Original Listing Price", "ListingPrice <-> Current Listing Price",
                "UnderContractDate <-> Contract Date", "SoldDate <-> Sale Date",
                "SoldPrice <-> Selling Price", "City <-> City", "State <-> State", "ZipCode <-> Zip"}}),
    [](const auto& test) {
        std::string name = test.param.file;
        for (char& c : name) {
            if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
        }
        return name;
    });

}  // namespace
}  // namespace zenvora::importing

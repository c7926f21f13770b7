#include "records/field_advice.h"

#include <string>

#include "records/editor_fixture.h"

namespace zenvora::records {
namespace {

constexpr controls::Color kWhite = 0xFFFFFF;
constexpr controls::Color kYellow = 0xFFFFC0;
constexpr controls::Color kRed = 0xFFC0C0;
constexpr controls::Color kSystem = 0x80000000;

/// The dialog open on an empty record.
class FieldAdviceTest : public EditorTest {
  protected:
    void Open(const std::function<void(User)>& user) {
        Store("12 OAK ST");
        Edit("12 OAK ST", [&](User u) {
            user(u);
            u.Press("cmdCancel");
        });
    }
};

struct Looks {
    controls::Color color;
    std::string tip;
    friend bool operator==(const Looks&, const Looks&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Looks& looks) {
        return out << std::hex << looks.color << " \"" << looks.tip << '"';
    }
};

Looks LooksOf(const User& user, std::string_view field) {
    return {user.Color(field), user.Tip(field)};
}

constexpr const char* kValidDate = "Provide a valid date that is greater than 1/1/1900";

TEST_F(FieldAdviceTest, AnEmptyRequiredFieldIsRedAndAnEmptyOptionalOneWhite) {
    Open([](User user) {
        EXPECT_EQ(LooksOf(user, "txtOrigListDate"), (Looks{kRed, kValidDate}));
        EXPECT_EQ(LooksOf(user, "txtOrigListPrice"), (Looks{kRed, "Provide a value greater than 0"}));
        for (const char* field : {"txtCurrListDate", "txtCurrListPrice", "txtContractDate",
                                  "txtListCancelDate", "txtSaleDate", "txtSellingPr"})
            EXPECT_EQ(LooksOf(user, field), (Looks{kWhite, ""})) << field;
    });
}

TEST_F(FieldAdviceTest, TheOriginalListDateTellsItsFaultsInRed) {
    Open([](User user) {
        user.Type("txtOrigListDate", "7/1/2010");
        EXPECT_EQ(LooksOf(user, "txtOrigListDate"),
                  (Looks{kRed, "The date must be on or before the Effective Appraisal Date."}));
        user.Type("txtOrigListDate", "6/30/2010");
        EXPECT_EQ(LooksOf(user, "txtOrigListDate"), (Looks{kWhite, ""}));
    });
}

struct Note {
    const char* field;
    const char* text;
    const char* note;
};

TEST_F(FieldAdviceTest, TheOptionalFieldsTellTheirFaultsInYellow) {
    constexpr const char* kLate = "The date must be on or befor the Effective Appraisal date";
    const Note notes[] = {
        {"txtCurrListDate", "3/5/09", kValidDate},
        {"txtCurrListDate", "7/1/2010", kLate},
        {"txtCurrListDate", "3/14/2010", "The date must be on or after the original list date"},
        {"txtCurrListPrice", "abc", "Provide a value greater than 0"},
        {"txtContractDate", "x", kValidDate},
        {"txtContractDate", "7/1/2010", kLate},
        {"txtContractDate", "3/14/2010", "The date has to be on or after the original list date"},
        {"txtContractDate", "4/30/2010", "The date has to be on or after the current list date"},
        {"txtListCancelDate", "x", kValidDate},
        {"txtListCancelDate", "7/1/2010", kLate},
        {"txtListCancelDate", "3/14/2010", "The date must be on or after the original list date"},
        {"txtListCancelDate", "4/30/2010", "The date must be on or after the current list date"},
        {"txtSaleDate", "x", kValidDate},
        {"txtSaleDate", "7/1/2010", kLate},
        {"txtSaleDate", "3/14/2010", "The date must be on or after the original list date"},
        {"txtSaleDate", "4/30/2010", "The date must be on or after the current list date"},
        {"txtSellingPr", "0", "The price must be a value greater than 0"},
    };
    Open([&](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        for (const Note& note : notes) {
            user.Type("txtCurrListDate", "5/1/2010");
            user.Type(note.field, note.text);
            EXPECT_EQ(LooksOf(user, note.field), (Looks{kYellow, note.note}))
                << note.field << " " << note.text;
            EXPECT_EQ(user.Panel().BackColor(), kYellow);
            user.Type(note.field, "");
            EXPECT_EQ(LooksOf(user, note.field), (Looks{kWhite, ""}));
            EXPECT_EQ(user.Panel().BackColor(), kSystem);
        }
    });
}

TEST_F(FieldAdviceTest, ASaleDateBeforeTheContractDateSaysSo) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtContractDate", "5/20/2010");
        user.Type("txtSaleDate", "5/19/2010");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"),
                  (Looks{kYellow, "The date must be on or after the contract date"}));
    });
}

TEST_F(FieldAdviceTest, TheDateOfTheAppraisalItselfIsGoodInAllDateFields) {
    Open([](User user) {
        for (const char* field :
             {"txtOrigListDate", "txtCurrListDate", "txtContractDate", "txtListCancelDate", "txtSaleDate"}) {
            user.Type(field, "6/30/2010");
            EXPECT_EQ(LooksOf(user, field), (Looks{kWhite, ""})) << field;
            if (std::string_view(field) != "txtOrigListDate") user.Type(field, "");
        }
        user.Type("txtBaseDate", "6/30/2010");
        EXPECT_EQ(user.Color("txtBaseDate"), kWhite);
    });
}

TEST_F(FieldAdviceTest, ListCancelDateWithContractDateIsRedThereAndYellowHere) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtContractDate", "5/20/2010");
        user.Type("txtListCancelDate", "5/25/2010");
        const Looks cancel{kYellow,
                           "When there is a saledate, saleprice and/or a contract date, there shouldn't be a "
                           "list cancel date."};
        EXPECT_EQ(LooksOf(user, "txtListCancelDate"), cancel);
        EXPECT_EQ(LooksOf(user, "txtContractDate"), (Looks{kWhite, ""}))
            << "a change of the cancel date does not run the contract date's rule";
        user.Type("txtContractDate", "5/21/2010");
        EXPECT_EQ(LooksOf(user, "txtContractDate"),
                  (Looks{kRed, "When there is a list cancel date, there shouldn't be a contract date."}));
        EXPECT_EQ(LooksOf(user, "txtListCancelDate"), cancel);
    });
}

TEST_F(FieldAdviceTest, ASalePriceWithoutAnyDateMakesTheSaleDateRed) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtSellingPr", "242500");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"),
                  (Looks{kRed, "When there is a sale price, there must be a sale date or a contract date"}));
        EXPECT_EQ(LooksOf(user, "txtSellingPr"), (Looks{kWhite, ""}));
        user.Type("txtSellingPr", "");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"), (Looks{kWhite, ""})) << "both are empty again";
    });
}

TEST_F(FieldAdviceTest, ASalePriceWithAContractDateLeavesTheSaleDateAlone) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtContractDate", "5/20/2010");
        user.Type("txtSellingPr", "242500");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"), (Looks{kWhite, ""}));
    });
}

TEST_F(FieldAdviceTest, ASalePriceBesideABadSaleDateKeepsTheNoteOfTheEntry) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtSellingPr", "242500");
        user.Type("txtSaleDate", "3/14/2010");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"),
                  (Looks{kRed, "The date must be on or after the original list date"}));
    });
}

TEST_F(FieldAdviceTest, ASaleDateWithoutAPriceMakesThePriceRedWithTheNoteOfWhoRanLast) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtSaleDate", "5/14/2010");
        EXPECT_EQ(LooksOf(user, "txtSellingPr"),
                  (Looks{kRed, "When there is a sale date, there must be a sale price"}));
        user.Type("txtSellingPr", "x");
        EXPECT_EQ(LooksOf(user, "txtSellingPr"), (Looks{kRed, "The price must be a value greater than 0"}));
        user.Type("txtSellingPr", "");
        EXPECT_EQ(LooksOf(user, "txtSellingPr"),
                  (Looks{kRed, "When there is a sale price, there must be a sale date"}));
    });
}

TEST_F(FieldAdviceTest, ACancelDateContradictsSaleDateAndPrice) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtListCancelDate", "5/25/2010");
        user.Type("txtSaleDate", "5/26/2010");
        EXPECT_EQ(LooksOf(user, "txtSaleDate"),
                  (Looks{kRed, "When there is a list cancel date, there shouldn't be a sale date."}));
        user.Type("txtSellingPr", "242500");
        EXPECT_EQ(LooksOf(user, "txtSellingPr"),
                  (Looks{kRed, "When there is a list cancel date, there shouldn't be a sale price."}));
        EXPECT_EQ(LooksOf(user, "txtListCancelDate"), (Looks{kWhite, ""}))
            << "its own rule has not run since";
    });
}

TEST_F(FieldAdviceTest, AChainEndsWithThePanelInTheColourOfTheFieldThatBeganIt) {
    Open([](User user) {
        user.Type("txtContractDate", "5/20/2010");
        user.Type("txtOrigListDate", "5/21/2010");
        EXPECT_EQ(user.Color("txtContractDate"), kYellow);
        EXPECT_EQ(user.Panel().BackColor(), kSystem) << "the original list date is good";
    });
}

TEST_F(FieldAdviceTest, AChangeOfTheOriginalListDateReachesAllDatesBehindIt) {
    Open([](User user) {
        for (const char* field : {"txtCurrListDate", "txtContractDate", "txtListCancelDate", "txtSaleDate"})
            user.Type(field, "5/20/2010");
        user.Type("txtOrigListDate", "5/21/2010");
        for (const char* field : {"txtCurrListDate", "txtContractDate", "txtListCancelDate", "txtSaleDate"})
            EXPECT_EQ(user.Color(field), kYellow) << field;
    });
}

TEST_F(FieldAdviceTest, AChangeOfTheEffectiveDateReachesAllEight) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtCurrListDate", "5/1/2010");
        user.Type("txtContractDate", "5/20/2010");
        user.Type("txtSaleDate", "6/1/2010");
        user.Type("txtBaseDate", "4/30/2010");
        EXPECT_EQ(user.Color("txtOrigListDate"), kWhite);
        for (const char* field : {"txtCurrListDate", "txtContractDate", "txtSaleDate"})
            EXPECT_EQ(user.Tip(field), "The date must be on or befor the Effective Appraisal date") << field;
        user.Type("txtBaseDate", "4/30/10");
        EXPECT_EQ(user.Color("txtBaseDate"), kRed);
        user.Type("txtBaseDate", "3/14/2010");
        EXPECT_EQ(user.Color("txtOrigListDate"), kRed);
        EXPECT_EQ(user.Color("txtBaseDate"), kWhite);
    });
}

// ---- leaving ----

TEST_F(FieldAdviceTest, ABadDateGivesWayToTheLastGoodOneOnLeaving) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.GoTo("txtZip");
        user.Type("txtOrigListDate", "3/5/09");
        EXPECT_EQ(user.Color("txtOrigListDate"), kRed);
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtOrigListDate"), "3/15/2010");
        EXPECT_EQ(user.Color("txtOrigListDate"), kWhite);
    });
}

TEST_F(FieldAdviceTest, ABadDateStaysWhenTheOneBeforeWasNoBetterAndAnEmptiedOneStaysEmpty) {
    Open([](User user) {
        user.Type("txtSaleDate", "abc");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtSaleDate"), "abc");
        user.Type("txtSaleDate", "5/14/2010");
        user.GoTo("txtZip");
        user.Type("txtSaleDate", "");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtSaleDate"), "");
    });
}

TEST_F(FieldAdviceTest, LeavingAPriceBringsItIntoShape) {
    struct Price {
        const char* typed;
        const char* left;
    };
    const Price prices[] = {{"250", "250000"},      {"1,250", "1250"},   {"999.50", "999"}, {"999", "999000"},
                            {"1000", "1000"},       {"1234.56", "1234"}, {"150", "150000"}, {"0.5", "0"},
                            {"$259,900", "259900"}, {" 250 ", "250000"}};
    Open([&](User user) {
        for (const char* field : {"txtOrigListPrice", "txtCurrListPrice", "txtSellingPr"}) {
            for (const Price& price : prices) {
                user.Type(field, "");
                user.GoTo("txtZip");
                user.Type(field, price.typed);
                user.GoTo("txtZip");
                EXPECT_EQ(user.Text(field), price.left) << field << " " << price.typed;
            }
        }
        user.Type("txtCurrListPrice", "0.5");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Color("txtCurrListPrice"), kYellow) << "no price any more";
    });
}

TEST_F(FieldAdviceTest, NoZeroesAreAddedWhileTheSettingIsOff) {
    session.settings.addZeroes = false;
    Open([](User user) {
        user.Type("txtSellingPr", "150");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtSellingPr"), "150");
    });
}

TEST_F(FieldAdviceTest, LettersInAPriceGiveWayToTheLastGoodPriceOnly) {
    Open([](User user) {
        user.Type("txtCurrListPrice", "200000");
        user.GoTo("txtZip");
        user.Type("txtCurrListPrice", "abc");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtCurrListPrice"), "200000");
        user.Type("txtCurrListPrice", "");
        user.GoTo("txtZip");
        user.Type("txtCurrListPrice", "abc");
        user.GoTo("txtZip");
        EXPECT_EQ(user.Text("txtCurrListPrice"), "abc");
        EXPECT_EQ(user.Color("txtCurrListPrice"), kYellow);
    });
}

// ---- clearing ----

TEST_F(FieldAdviceTest, ADoubleClickOnItsLabelEmptiesAField) {
    const std::pair<const char*, const char*> labels[] = {
        {"lblOrigListDate", "txtOrigListDate"},
        {"lblOrigListPrice", "txtOrigListPrice"},
        {"lblCurrentListPrice", "txtCurrListPrice"},
        {"lblContractDate", "txtContractDate"},
        {"lblListCancelDate", "txtListCancelDate"},
        {"lblSaleDate", "txtSaleDate"},
        {"lblSalePrice", "txtSellingPr"},
    };
    Open([&](User user) {
        for (const auto& [label, field] : labels) {
            user.Type(field, "1000");
            user.GoTo("txtZip");
            user.Press(label);
            EXPECT_EQ(user.Text(field), "1000") << "a single click on " << label;
            user.DblClickLabel(label);
            EXPECT_EQ(user.Text(field), "") << label;
            EXPECT_EQ(user.Focus(), field);
        }
    });
}

TEST_F(FieldAdviceTest, ASingleClickDoesForTheCurrentListDate) {
    Open([](User user) {
        user.Type("txtCurrListDate", "5/1/2010");
        user.GoTo("txtZip");
        user.DblClickLabel("lblCurrentListDate");
        EXPECT_EQ(user.Text("txtCurrListDate"), "5/1/2010");
        user.Press("lblCurrentListDate");
        EXPECT_EQ(user.Text("txtCurrListDate"), "");
        EXPECT_EQ(user.Focus(), "txtCurrListDate");
    });
}

TEST_F(FieldAdviceTest, ADoubleClickOnTheFrameEmptiesAllEightAndAsksNothing) {
    Open([](User user) {
        const char* const fields[] = {"txtOrigListDate",  "txtOrigListPrice", "txtCurrListDate",
                                      "txtCurrListPrice", "txtContractDate",  "txtListCancelDate",
                                      "txtSaleDate",      "txtSellingPr"};
        for (const char* field : fields)
            user.Type(field, "5/1/2010");
        user.Type("txtCity", "Troy");
        user.Edit().fraNonAddrFields1.DblClick();
        for (const char* field : fields)
            EXPECT_EQ(user.Text(field), "") << field;
        EXPECT_EQ(user.Text("txtCity"), "Troy");
    });
}

TEST_F(FieldAdviceTest, UseOrigCopiesDateAndPriceWithTheirRules) {
    Open([](User user) {
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtOrigListPrice", "259900");
        user.Type("txtContractDate", "3/14/2010");
        user.Press("cmdUseOrig");
        EXPECT_EQ(user.Text("txtCurrListDate"), "3/15/2010");
        EXPECT_EQ(user.Text("txtCurrListPrice"), "259900");
        EXPECT_EQ(user.Color("txtCurrListPrice"), kWhite);
    });
}

// ---- the panel ----

TEST_F(FieldAdviceTest, TheFieldThatTakesTheFocusShowsItsHelpAndItsColour) {
    const std::pair<const char*, const char*> files[] = {
        {"txtOrigListDate", "OLD.rtf"},  {"txtOrigListPrice", "OLP.rtf"}, {"txtCurrListDate", "CLD.rtf"},
        {"txtCurrListPrice", "CLP.rtf"}, {"txtContractDate", "CD.rtf"},   {"txtListCancelDate", "LCD.rtf"},
        {"txtSaleDate", "SD.rtf"},       {"txtSellingPr", "SP.rtf"}};
    for (const auto& [field, file] : files)
        WriteHelp(file, std::string("{\\rtf1 {\\b Help} of ") + field + "}");
    Open([&](User user) {
        for (const auto& [field, file] : files) {
            user.GoTo("txtZip");
            user.GoTo(field);
            EXPECT_EQ(user.Panel().Text(), std::string("Help of ") + field);
            EXPECT_TRUE(user.Panel().Paragraphs().at(0).runs.at(0).bold);
            const bool isRequired = std::string_view(field).starts_with("txtOrig");
            EXPECT_EQ(user.Panel().BackColor(), isRequired ? kRed : kSystem);
        }
    });
}

TEST_F(FieldAdviceTest, AMissingHelpFileLeavesThePanelEmptyWithoutAMessage) {
    WriteHelp("OLD.rtf", "{\\rtf1 Help}");
    Open([](User user) {
        EXPECT_EQ(user.Panel().Text(), "Help");
        user.GoTo("txtOrigListPrice");
        EXPECT_EQ(user.Panel().Text(), "");
    });
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(FieldAdviceTest, AClickInAnAddressFieldEmptiesThePanelAndTheKeyboardDoesNot) {
    WriteHelp("OLD.rtf", "{\\rtf1 Help}");
    Open([](User user) {
        user.GoTo("txtCity");
        EXPECT_EQ(user.Panel().Text(), "Help");
        EXPECT_EQ(user.Panel().BackColor(), kRed);
        for (const char* field : {"txtStreet", "txtCity", "txtState", "txtZip"}) {
            user.GoTo("txtOrigListDate");
            user.GoTo(field);
            dynamic_cast<controls::TextBox&>(*user.Edit().Find(field)).Click();
            EXPECT_EQ(user.Panel().Text(), "") << field;
            EXPECT_EQ(user.Panel().BackColor(), kSystem);
        }
        user.GoTo("txtOrigListDate");
        user.GoTo("txtBaseDate");
        EXPECT_EQ(user.Panel().Text(), "") << "whichever way the date takes the focus";
        EXPECT_EQ(user.Panel().BackColor(), kSystem);
    });
}

TEST_F(FieldAdviceTest, AFieldThatTakesTheFocusAsksForItsTextToBeSelected) {
    Open([](User user) {
        int selections = 0;
        const controls::Observation view = user.Edit().txtSaleDate.Observe(
            [&](controls::Property property) { selections += property == controls::Property::Selection; });
        user.GoTo("txtSaleDate");
        EXPECT_EQ(selections, 1);
    });
}

}  // namespace
}  // namespace zenvora::records

// Random walks through the dialog, beside a second model of the same rules that is written as plainly as can
// be: every text, colour and note is compared after every step. What a rule leaves standing is part of the
// behaviour.

#include <array>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "common/number_helpers.h"
#include "common/primitives.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"
#include "records/editor_fixture.h"

namespace zenvora::records {
namespace {

const std::vector<std::string> kFields{"txtOrigListDate",  "txtOrigListPrice", "txtCurrListDate",
                                       "txtCurrListPrice", "txtContractDate",  "txtListCancelDate",
                                       "txtSaleDate",      "txtSellingPr"};

bool IsPriceField(const std::string& name) {
    return name == "txtOrigListPrice" || name == "txtCurrListPrice" || name == "txtSellingPr";
}

/// The second model.
struct Model {
    struct Field {
        std::string text;
        std::string color = "white";
        std::string tip;
    };
    std::map<std::string, Field> fields;
    std::string panel = "normal";
    std::string previous;
    std::string focus = "txtOrigListDate";
    common::Date effective = 40359;
    bool addZeroes = true;
    shell::FixedClock clock{40359};

    // ---- base tests ----
    std::string& Text(const std::string& name) { return fields[name].text; }
    bool GoodDate(const std::string& text) { return common::IsValidDateEntry(text, clock); }
    bool GoodPrice(const std::string& text) { return common::IsValidPriceEntry(text); }
    common::Date Serial(const std::string& name) {
        return common::ConvDate(std::string_view{Text(name)}, clock);
    }

    // ---- statuses ----
    int OLD() {
        if (!GoodDate(Text("txtOrigListDate"))) return 1;
        if (Serial("txtOrigListDate") > effective) return 2;
        return -1;
    }
    int OLP() { return GoodPrice(Text("txtOrigListPrice")) ? -1 : 1; }
    int CLD() {
        if (Text("txtCurrListDate").empty()) return 0;
        if (!GoodDate(Text("txtCurrListDate"))) return 1;
        if (Serial("txtCurrListDate") > effective) return 2;
        if (Serial("txtCurrListDate") < Serial("txtOrigListDate")) return 3;
        return -1;
    }
    int CLP() {
        if (Text("txtCurrListPrice").empty()) return 0;
        return GoodPrice(Text("txtCurrListPrice")) ? -1 : 1;
    }
    int CD() {
        if (Text("txtContractDate").empty()) return 0;
        if (!GoodDate(Text("txtContractDate"))) return 1;
        if (Serial("txtContractDate") > effective) return 2;
        if (Serial("txtContractDate") < Serial("txtOrigListDate")) return 3;
        if (CLD() != 0 && Serial("txtContractDate") < Serial("txtCurrListDate")) return 4;
        return -1;
    }
    int LCD() {
        if (Text("txtListCancelDate").empty()) return 0;
        if (!GoodDate(Text("txtListCancelDate"))) return 1;
        if (Serial("txtListCancelDate") > effective) return 2;
        if (Serial("txtListCancelDate") < Serial("txtOrigListDate")) return 3;
        if (CLD() != 0 && Serial("txtListCancelDate") < Serial("txtCurrListDate")) return 4;
        return -1;
    }
    int SD() {
        if (Text("txtSaleDate").empty()) return 0;
        if (!GoodDate(Text("txtSaleDate"))) return 1;
        if (Serial("txtSaleDate") > effective) return 2;
        if (Serial("txtSaleDate") < Serial("txtOrigListDate")) return 3;
        if (CLD() == -1 && Serial("txtSaleDate") < Serial("txtCurrListDate")) return 4;
        if (CD() == -1 && Serial("txtSaleDate") < Serial("txtContractDate")) return 5;
        return -1;
    }
    int SP() {
        if (Text("txtSellingPr").empty()) return 0;
        return GoodPrice(Text("txtSellingPr")) ? -1 : 1;
    }

    // ---- change rules ----
    void Set(const std::string& name, const std::string& color, const std::string& tip) {
        fields[name].color = color;
        fields[name].tip = tip;
    }
    void Tint(const std::string& name) {
        panel = fields[name].color == "white" ? "normal" : fields[name].color;
    }
    void OldChanged() {
        const int status = OLD();
        if (status == -1) Set("txtOrigListDate", "white", "");
        if (status == 1) Set("txtOrigListDate", "red", "Provide a valid date that is greater than 1/1/1900");
        if (status == 2)
            Set("txtOrigListDate", "red", "The date must be on or before the Effective Appraisal Date.");
        CldChanged();
        Tint("txtOrigListDate");
    }
    void OlpChanged() {
        if (OLP() == -1) Set("txtOrigListPrice", "white", "");
        if (OLP() == 1) Set("txtOrigListPrice", "red", "Provide a value greater than 0");
        Tint("txtOrigListPrice");
    }
    void CldChanged() {
        const int status = CLD();
        if (status == -1 || status == 0) Set("txtCurrListDate", "white", "");
        if (status == 1)
            Set("txtCurrListDate", "yellow", "Provide a valid date that is greater than 1/1/1900");
        if (status == 2)
            Set("txtCurrListDate", "yellow", "The date must be on or befor the Effective Appraisal date");
        if (status == 3)
            Set("txtCurrListDate", "yellow", "The date must be on or after the original list date");
        CdChanged();
        Tint("txtCurrListDate");
    }
    void ClpChanged() {
        if (CLP() == -1 || CLP() == 0) Set("txtCurrListPrice", "white", "");
        if (CLP() == 1) Set("txtCurrListPrice", "yellow", "Provide a value greater than 0");
        Tint("txtCurrListPrice");
    }
    void CdChanged() {
        const int status = CD();
        if (status == -1 || status == 0) Set("txtContractDate", "white", "");
        if (status == 1)
            Set("txtContractDate", "yellow", "Provide a valid date that is greater than 1/1/1900");
        if (status == 2)
            Set("txtContractDate", "yellow", "The date must be on or befor the Effective Appraisal date");
        if (status == 3)
            Set("txtContractDate", "yellow", "The date has to be on or after the original list date");
        if (status == 4)
            Set("txtContractDate", "yellow", "The date has to be on or after the current list date");
        if (CD() == -1 && LCD() == -1)
            Set("txtContractDate", "red",
                "When there is a list cancel date, there shouldn't be a contract date.");
        Tint("txtContractDate");
        SdChanged();
        LcdChanged();
        Tint("txtContractDate");
    }
    void LcdChanged() {
        const int status = LCD();
        if (status == -1) {
            if (CD() != -1 && SD() != -1 && SP() != -1) {
                Set("txtListCancelDate", "white", "");
            } else {
                Set("txtListCancelDate", "yellow",
                    "When there is a saledate, saleprice and/or a contract date, there shouldn't be a list "
                    "cancel date.");
            }
        }
        if (status == 0) Set("txtListCancelDate", "white", "");
        if (status == 1)
            Set("txtListCancelDate", "yellow", "Provide a valid date that is greater than 1/1/1900");
        if (status == 2)
            Set("txtListCancelDate", "yellow", "The date must be on or befor the Effective Appraisal date");
        if (status == 3)
            Set("txtListCancelDate", "yellow", "The date must be on or after the original list date");
        if (status == 4)
            Set("txtListCancelDate", "yellow", "The date must be on or after the current list date");
        Tint("txtListCancelDate");
    }
    void SdChanged() {
        const int status = SD();
        if (status == -1) Set("txtSaleDate", "white", "");
        if (status == 0) {
            Set("txtSaleDate", "white", "");
            if (Text("txtSellingPr").empty()) Set("txtSellingPr", "white", "");
        }
        if (status == 1) Set("txtSaleDate", "yellow", "Provide a valid date that is greater than 1/1/1900");
        if (status == 2)
            Set("txtSaleDate", "yellow", "The date must be on or befor the Effective Appraisal date");
        if (status == 3) Set("txtSaleDate", "yellow", "The date must be on or after the original list date");
        if (status == 4) Set("txtSaleDate", "yellow", "The date must be on or after the current list date");
        if (status == 5) Set("txtSaleDate", "yellow", "The date must be on or after the contract date");
        if (CD() != -1 && SD() != -1 && SP() == -1) {
            fields["txtSaleDate"].color = "red";
            if (Text("txtSaleDate").empty())
                fields["txtSaleDate"].tip =
                    "When there is a sale price, there must be a sale date or a contract date";
        }
        if (SD() == -1 && LCD() == -1)
            Set("txtSaleDate", "red", "When there is a list cancel date, there shouldn't be a sale date.");
        if (SD() == -1 && SP() != -1) {
            fields["txtSellingPr"].color = "red";
            if (Text("txtSellingPr").empty())
                fields["txtSellingPr"].tip = "When there is a sale date, there must be a sale price";
        }
        Tint("txtSaleDate");
    }
    void SpChanged() {
        const int status = SP();
        if (status == -1) Set("txtSellingPr", "white", "");
        if (status == 0) {
            Set("txtSellingPr", "white", "");
            if (Text("txtSaleDate").empty()) Set("txtSaleDate", "white", "");
        }
        if (status == 1) Set("txtSellingPr", "yellow", "The price must be a value greater than 0");
        if (SD() == -1 && Serial("txtSaleDate") <= effective && SP() != -1) {
            fields["txtSellingPr"].color = "red";
            if (Text("txtSellingPr").empty())
                fields["txtSellingPr"].tip = "When there is a sale price, there must be a sale date";
        }
        if (SP() == -1 && LCD() == -1)
            Set("txtSellingPr", "red", "When there is a list cancel date, there shouldn't be a sale price.");
        if (CD() != -1 && SD() != -1 && SP() == -1) {
            fields["txtSaleDate"].color = "red";
            if (Text("txtSaleDate").empty())
                fields["txtSaleDate"].tip =
                    "When there is a sale price, there must be a sale date or a contract date";
        }
        Tint("txtSellingPr");
    }
    void Changed(const std::string& name) {
        if (name == "txtOrigListDate") OldChanged();
        if (name == "txtOrigListPrice") OlpChanged();
        if (name == "txtCurrListDate") CldChanged();
        if (name == "txtCurrListPrice") ClpChanged();
        if (name == "txtContractDate") CdChanged();
        if (name == "txtListCancelDate") LcdChanged();
        if (name == "txtSaleDate") SdChanged();
        if (name == "txtSellingPr") SpChanged();
    }
    void Type(const std::string& name, const std::string& text) {
        if (Text(name) == text) return;
        Text(name) = text;
        Changed(name);
    }

    // ---- focus ----
    void Leave() {
        if (std::find(kFields.begin(), kFields.end(), focus) == kFields.end()) return;
        const std::string name = focus;
        const std::string text = Text(name);
        if (!IsPriceField(name)) {
            if (!text.empty() && !GoodDate(text) && GoodDate(previous)) Type(name, previous);
            return;
        }
        if (!text.empty() && !GoodPrice(text) && GoodPrice(previous)) {
            Type(name, previous);
        } else if (GoodPrice(text)) {
            std::string left = text::Trim(text);
            if (common::CDouble(left) < 1000 && left.find('.') == std::string::npos && addZeroes) {
                left += "000";
                Type(name, left);
            }
            std::string digits;
            for (const char c : left.substr(0, left.find('.')))
                if (c >= '0' && c <= '9') digits += c;
            Type(name, digits);
        }
    }
    void GoTo(const std::string& name) {
        if (focus == name) return;
        Leave();
        focus = name;
        if (name == "txtBaseDate") panel = "normal";
        if (std::find(kFields.begin(), kFields.end(), name) != kFields.end()) {
            previous = Text(name);
            Tint(name);
        }
    }

    // ---- other actions ----
    void BaseDate(const std::string& text) {
        if (!GoodDate(text)) return;
        effective = common::ConvDate(std::string_view{text}, clock);
        for (const std::string& name : kFields)
            Changed(name);
    }
    void Clear(const std::string& name) {
        Type(name, "");
        GoTo(name);
    }
};

std::string ColorName(controls::Color color) {
    switch (color) {
        case 0xFFFFFF:
            return "white";
        case 0xFFFFC0:
            return "yellow";
        case 0xFFC0C0:
            return "red";
        case 0x80000000:
            return "normal";
        default:
            return "another colour";
    }
}

const std::vector<std::string> kDates{"3/14/2010", "3/15/2010", "5/1/2010",   "5/20/2010", "6/30/2010",
                                      "7/1/2010",  "1/1/1900",  "3/5/09",     "abc",       "",
                                      " ",         "5/20/201",  "12/31/2010", "2/30/2010", "May 5, 2010"};
const std::vector<std::string> kPrices{"150", "250000", "1,250",  "$99",   "0",    "-5",
                                       "abc", "",       "999.50", "0.5",   "1000", "1234.56",
                                       " 7 ", "999999", "12-",    "(250)", "."};
const std::vector<std::string> kBaseDates{"6/30/2010", "5/10/2010", "5/10/20", "3/14/2010", "", "12/31/2010"};

class Walk : public EditorTest, public testing::WithParamInterface<unsigned> {};

TEST_P(Walk, TextsColoursAndNotesAreThoseOfThePlainModelAfterEveryStep) {
    constexpr int kSteps = 1500;
    std::mt19937 random{GetParam()};
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    const auto textFor = [&](const std::string& field) {
        return pick(IsPriceField(field) ? kPrices : kDates);
    };
    Store("12 OAK ST");
    Edit("12 OAK ST", [&](User user) {
        Model model;
        // The state that the dialog opens with.
        for (const std::string& name : kFields)
            model.Changed(name);
        model.Tint("txtOrigListDate");
        std::string log;
        for (int step = 0; step < kSteps; ++step) {
            const std::string field = pick(kFields);
            switch (random() % 10) {
                case 0:
                case 1:
                case 2: {
                    const std::string text = textFor(field);
                    log = "type " + field + " \"" + text + '"';
                    user.Type(field, text);
                    model.GoTo(field);
                    model.Type(field, text);
                    break;
                }
                case 3: {
                    log = "type slowly " + field;
                    const std::string text = textFor(field);
                    user.TypeSlowly(field, text);
                    model.GoTo(field);
                    model.Type(field, "");
                    for (std::size_t length = 1; length <= text.size(); ++length)
                        model.Type(field, text.substr(0, length));
                    break;
                }
                case 4:
                case 5: {
                    const std::string to = random() % 3 == 0 ? "txtZip" : field;
                    log = "go to " + to;
                    user.GoTo(to);
                    model.GoTo(to);
                    break;
                }
                case 6: {
                    const std::map<std::string, std::string> labels{
                        {"txtOrigListDate", "lblOrigListDate"},
                        {"txtOrigListPrice", "lblOrigListPrice"},
                        {"txtCurrListPrice", "lblCurrentListPrice"},
                        {"txtContractDate", "lblContractDate"},
                        {"txtListCancelDate", "lblListCancelDate"},
                        {"txtSaleDate", "lblSaleDate"},
                        {"txtSellingPr", "lblSalePrice"}};
                    log = "clear " + field;
                    if (field == "txtCurrListDate") {
                        user.Press("lblCurrentListDate");
                    } else {
                        user.DblClickLabel(labels.at(field));
                    }
                    model.Clear(field);
                    break;
                }
                case 7: {
                    const std::string text = pick(kBaseDates);
                    log = "base date " + text;
                    const bool isNew = user.Text("txtBaseDate") != text;
                    user.Type("txtBaseDate", text);
                    model.GoTo("txtBaseDate");
                    if (isNew) model.BaseDate(text);
                    break;
                }
                case 8:
                    log = "use original";
                    user.Press("cmdUseOrig");
                    model.Type("txtCurrListDate", model.Text("txtOrigListDate"));
                    model.Type("txtCurrListPrice", model.Text("txtOrigListPrice"));
                    break;
                case 9:
                    if (random() % 8 == 0) {
                        log = "empty all";
                        user.Edit().fraNonAddrFields1.DblClick();
                        for (const std::string& name : kFields)
                            model.Type(name, "");
                    } else {
                        log = "zeroes on or off";
                        session.settings.addZeroes = model.addZeroes = !model.addZeroes;
                    }
                    break;
            }
            for (const std::string& name : kFields) {
                const std::string where = " of " + name + " after step " + std::to_string(step) + ": " + log;
                ASSERT_EQ(user.Text(name), model.fields[name].text) << "text" << where;
                ASSERT_EQ(ColorName(user.Color(name)), model.fields[name].color) << "colour" << where;
                ASSERT_EQ(user.Tip(name), model.fields[name].tip) << "note" << where;
            }
            ASSERT_EQ(ColorName(user.Panel().BackColor()), model.panel) << "panel after " << log;
            ASSERT_EQ(user.Focus(), model.focus) << log;
        }
        user.Press("cmdCancel");
    });
}

INSTANTIATE_TEST_SUITE_P(Seeds, Walk, testing::Range(1U, 9U));

}  // namespace
}  // namespace zenvora::records

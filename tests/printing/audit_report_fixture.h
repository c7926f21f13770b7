#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/databook_fixture.h"
#include "platform/fault.h"
#include "printing/audit_report.h"
#include "support/recording_page.h"

namespace zenvora::printing {

using analysis::Dated;
using analysis::Day;
using analysis::DaysBack;
using analysis::Fields;
using analysis::Flag;
using testing_support::DrawnText;
using testing_support::PageRecord;

inline constexpr double kLeft = 1008;
/// Where the columns begin by the metrics of the recording device: the margin and the characters of the
/// headings before, 70 twips each.
inline constexpr double kColumns[] = {1008, 3598, 5138,  5628,  6468,  7448,
                                      8358, 9338, 10248, 11088, 12208, 13048};
inline constexpr const char* kHeading =
    "Address                              City                  State  Zip         "
    "Orig List Dt  Orig List $  Curr List Dt  Curr List $  Cont Dt     List Cancel Dt  Sale Dt     "
    "Sale $    ";

/// The appraisal program with a report open in it.
class Krn final : public OpenReport {
  public:
    [[nodiscard]] bool IsKrnRunning() override {
        ++asked;
        return running;
    }
    [[nodiscard]] std::string ReportName() override {
        if (fails) throw Fault{fault::kLinkFailed, "as the test wants it"};
        return name;
    }

    bool running = true;
    bool fails = false;
    int asked = 0;
    std::string name = R"(c:\reports\Smith.rpt)";
};

/// A Databook, and a printer that writes down what it is given.
class AuditReportTest : public analysis::DatabookTest {
  protected:
    /// A selected listing: no sale date.
    void AddListing(const std::string& key, const Fields& others = {}) {
        Fields fields{{"ADDRESS", key}, {"SELECTED", Flag("1")}};
        fields.insert(fields.end(), others.begin(), others.end());
        Add(key, fields);
    }
    /// A selected sale of 30 days before the effective date.
    void AddComp(const std::string& key, const Fields& others = {}) {
        Fields fields{
            {"ADDRESS", key}, {"SELECTED", Flag("1")}, {"SALEDATE", DaysBack(30)}, {"SELLINGPR", 100000.0}};
        fields.insert(fields.end(), others.begin(), others.end());
        Add(key, fields);
    }
    void AddListings(int count) {
        adoDatabook.Recordset().BeginBatch();
        for (int i = 1; i <= count; ++i)
            AddListing("L" + std::to_string(i));
        adoDatabook.Recordset().EndBatch();
    }
    void AddComps(int count) {
        adoDatabook.Recordset().BeginBatch();
        for (int i = 1; i <= count; ++i)
            AddComp("C" + std::to_string(i));
        adoDatabook.Recordset().EndBatch();
    }

    [[nodiscard]] AuditReport Report() {
        return {.session = session,
                .adoDatabook = adoDatabook,
                .effectiveDate = analysis::Effective(),
                .databookName = "LISTINGS.MDB"};
    }
    AuditCounts Print() { return Print(Report()); }
    AuditCounts Print(const AuditReport& report) {
        const PrintDefaults defaults = InitPrinterDefaults(printer);
        return PrintAuditReport(report, printer, defaults);
    }
    /// A new record of the same device.
    void Forget() {
        record.texts.clear();
        record.pages = 1;
    }
    void Press() {
        const PrintDefaults defaults = InitPrinterDefaults(printer);
        cmdPrintAudit(Report(), printer, defaults);
    }

    /// The only text that reads so; fails the test when there is none or another.
    [[nodiscard]] DrawnText The(std::string_view text) const {
        std::vector<DrawnText> found;
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == text) found.push_back(drawn);
        }
        EXPECT_EQ(found.size(), 1U) << text;
        return found.empty() ? DrawnText{} : found[0];
    }
    void ExpectAt(std::string_view text, int page, double x, double y) const {
        const DrawnText drawn = The(text);
        EXPECT_EQ(drawn.page, page) << text;
        EXPECT_EQ(drawn.x, x) << text;
        EXPECT_EQ(drawn.y, y) << text;
    }
    /// Pages and heights of all headings, in the order of printing.
    [[nodiscard]] std::vector<std::pair<int, double>> Headings() const {
        std::vector<std::pair<int, double>> found;
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == kHeading) found.emplace_back(drawn.page, drawn.y);
        }
        return found;
    }
    [[nodiscard]] bool IsPrinted(std::string_view text) const {
        return std::any_of(record.texts.begin(), record.texts.end(),
                           [&](const DrawnText& drawn) { return drawn.text == text; });
    }
    /// Whether the record of this address stands above or below "Comps:", as "L", "C" or "LC"; "" for
    /// neither.
    [[nodiscard]] std::string SectionsOf(std::string_view address) const {
        std::string sections;
        char section = 'L';
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == "Comps:") section = 'C';
            if (drawn.text == address) sections += section;
        }
        return sections;
    }

    PageRecord record;
    std::unique_ptr<page::Printer> made = testing_support::MakeRecordingPrinter(record);
    page::Printer& printer = *made;
    Krn krn;
};

inline const page::PageFont kRow{"Arial Narrow", 10, false};

}  // namespace zenvora::printing

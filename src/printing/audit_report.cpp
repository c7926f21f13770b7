#include "printing/audit_report.h"

#include <algorithm>
#include <exception>
#include <string_view>

#include "analysis/field_checks.h"
#include "analysis/kept_position.h"
#include "analysis/selected_flag.h"
#include "common/file_helpers.h"
#include "databook/field_access.h"
#include "platform/fault.h"

namespace zenvora::printing {
namespace {

constexpr std::string_view kTitle = "Market Conditions Audit Report";
constexpr std::string_view kDatabaseName = "Database Name:  ";
constexpr double kTitleSize = 16;
constexpr double kNameSize = 14;
constexpr double kSectionSize = 12;
/// Rows that must be free above the bottom margin for the second section to start on the same page.
constexpr int kRowsForComps = 5;
constexpr long kRecordsPerProgress = 1024;

/// One run of the report.
class Run {
  public:
    Run(const AuditReport& report, page::Printer& printer, const PrintDefaults& defaults)
        : report_(report), printer_(printer), defaults_(defaults), records_(report.adoDatabook.Recordset()) {}

    AuditCounts Print() {
        SetUp();
        PrintTitle();
        PrintReportName();
        printer_.Print("\n\n");
        PrintDatabookName();
        PrintListings();
        StartComps();
        PrintComps();
        printer_.EndDoc();
        return counts_;
    }

  private:
    void SetUp() {
        ApplyPrintDefaults(printer_, defaults_, true);
        printer_.SetOrientation(defaults_.orientation);
        // The change of the orientation has reset the font.
        ApplyPrintDefaults(printer_, defaults_, true);
        const auto count = CountCharsAcross(printer_, defaults_, "_");
        rule_.assign(static_cast<std::size_t>(std::max(count, 0)), '_');
    }

    void PrintCentred(std::string_view text) {
        printer_.CurrentX = WholeDivision(printer_.Width() - printer_.TextWidth(text), 2);
        printer_.Print(text);
    }

    void PrintTitle() {
        printer_.Font.Size = kTitleSize;
        printer_.Font.Bold = true;
        printer_.CurrentY = defaults_.topMargin;
        PrintCentred(kTitle);
    }

    void PrintReportName() {
        if (report_.openReport == nullptr || !report_.openReport->IsKrnRunning()) return;
        std::string drive;
        std::string dir;
        std::string name;
        std::string ext;
        common::ParseFileName(report_.openReport->ReportName(), drive, dir, name, ext);
        const auto answer = report_.session.desktop.Show(
            {"Do you wish to include the report name " + name + " in the print out?", "Report Name",
             controls::Icon::Question, controls::Buttons::YesNo});
        if (answer != controls::Answer::Yes) return;
        printer_.Font.Size = kNameSize;
        PrintCentred(name);
    }

    void PrintDatabookName() {
        printer_.CurrentX = defaults_.leftMargin;
        const double rowY = printer_.CurrentY;
        printer_.Font.Size = kSectionSize;
        printer_.Print(kDatabaseName);
        printer_.CurrentX = printer_.TextWidth(kDatabaseName) + defaults_.leftMargin;
        printer_.CurrentY = rowY;
        printer_.Font.Bold = false;
        printer_.Print(report_.databookName);
        printer_.Print("\n");
    }

    void PrintListings() {
        printer_.CurrentX = defaults_.leftMargin;
        printer_.Font.Bold = true;
        printer_.Print("Listings:");
        printer_.Print("\n");
        PrintAuditHeader(printer_, defaults_, rule_);
        MeasureAuditColumns(printer_, defaults_, columnX_);
        StartRows();
        counts_.listings = PrintRows([this] {
            const auto saleDate = databook::adogetfieldDate(report_.adoDatabook, "SALEDATE");
            return saleDate == common::kDayZero || saleDate > report_.effectiveDate;
        });
    }

    /// The place of the second section's heading: five lines below the last row, or a new page.
    void StartComps() {
        printer_.Print("\n");
        printer_.CurrentX = defaults_.leftMargin;
        printer_.Font.Size = kSectionSize;
        printer_.Font.Bold = true;
        printer_.Print("\n\n\n\n");
        if (rowsOnPage_ + kRowsForComps >= rowsPerPage_ || !FitsCompsHeading()) {
            StartPage();
        }
        printer_.CurrentX = defaults_.leftMargin;
        printer_.Print("Comps:");
        printer_.Print("\n");
        PrintAuditHeader(printer_, defaults_, rule_);
    }

    void PrintComps() {
        StartRows();
        counts_.comps = PrintRows(
            [this] { return analysis::IsSaleWithinYear(report_.adoDatabook, report_.effectiveDate); });
    }

    /// Measures how many rows a page takes, once for a section: later pages have more room and hold no more.
    void StartRows() {
        printer_.Font.Size = kRowSize;
        printer_.Font.Bold = false;
        rowY_ = printer_.CurrentY;
        rowsPerPage_ =
            WholeDivision(printer_.Height() - rowY_ - defaults_.bottomMargin, printer_.TextHeight("W"));
        rowsOnPage_ = 0;
        isFreshPage_ = true;
    }

    template <class Belongs>
    long PrintRows(const Belongs& belongs) {
        const long total = records_.RecordCount();
        const int selected = total > 0 ? analysis::SelectedColumn(records_) : 0;
        long done = 0;
        long printed = 0;
        std::string buffer;
        for (records_.MoveFirst(); !records_.Eof(); records_.MoveNext(), ++done) {
            if (done % kRecordsPerProgress == 0) report_.session.desktop.Progress(done, total);
            if (!analysis::IsSelectedCounted(analysis::SelectedText(records_, selected, buffer))) continue;
            if (!belongs()) continue;
            if (!isFreshPage_ && rowY_ + RowHeight() > LowestEdge()) BreakPage();
            PrintAuditRow(printer_, defaults_, report_.adoDatabook, rowY_, columnX_, report_.longText);
            isFreshPage_ = false;
            ++printed;
            ++rowsOnPage_;
            if (rowsOnPage_ == rowsPerPage_) BreakPage();
            rowY_ = printer_.CurrentY;
        }
        report_.session.desktop.Progress(total, total);
        return printed;
    }

    void StartPage() {
        printer_.NewPage();
        printer_.CurrentY = defaults_.topMargin;
        ++counts_.pages;
    }

    void BreakPage() {
        rowsOnPage_ = 0;
        StartPage();
        PrintAuditHeader(printer_, defaults_, rule_);
        printer_.Font.Bold = false;
        rowY_ = printer_.CurrentY;
        isFreshPage_ = true;
    }

    // A section's rows are counted from where its heading stands, and the heading of the second one may stand
    // so low that the count never ends the page. No record may be lost below the edge of the paper for that,
    // so half of the bottom margin stays free whatever the count says.
    [[nodiscard]] double LowestEdge() {
        return printer_.Height() - static_cast<double>(defaults_.bottomMargin) / 2;
    }

    [[nodiscard]] double RowHeight() {
        const page::PageFont font = printer_.Font;
        printer_.Font = {std::string(kRowFont), kRowSize, false};
        const double height = printer_.TextHeight("W");
        printer_.Font = font;
        return height;
    }

    [[nodiscard]] bool FitsCompsHeading() {
        const double section = printer_.TextHeight("W") * 3;
        const page::PageFont font = printer_.Font;
        printer_.Font = defaults_.font;
        const double rule = printer_.TextHeight("_");
        printer_.Font = font;
        return printer_.CurrentY + section + rule + 2 * RowHeight() <= LowestEdge();
    }

    const AuditReport& report_;
    page::Printer& printer_;
    const PrintDefaults& defaults_;
    ado::Recordset& records_;
    AuditCounts counts_;
    std::string rule_;
    ColumnPositions columnX_{};
    double rowY_ = 0;
    int rowsOnPage_ = 0;
    int rowsPerPage_ = 0;
    bool isFreshPage_ = true;  ///< nothing stands below the heading yet
};

}  // namespace

AuditCounts PrintAuditReport(const AuditReport& report, page::Printer& printer,
                             const PrintDefaults& defaults) {
    const analysis::KeptPosition position(report.adoDatabook.Recordset());
    return Run(report, printer, defaults).Print();
}

void cmdPrintAudit(const AuditReport& report, page::Printer& printer, const PrintDefaults& defaults) {
    try {
        PrintAuditReport(report, printer, defaults);
    } catch (const Fault& fault) {
        if (fault.number != fault::kPrinter) return;
        try {
            printer.KillDoc();
        } catch (const Fault&) {
            return;  // the printer that failed need not even take that
        }
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace zenvora::printing

#include "transfer/audit_text.h"

#include "analysis/field_checks.h"
#include "analysis/kept_position.h"
#include "analysis/selected_flag.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "platform/text/date.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::transfer {
namespace {

using databook::adogetfield;
using databook::adogetfieldDate;
using databook::adogetfieldDouble;

constexpr const char* kLineEnd = "\r\n";
constexpr const char* kHead =
    "Addr, City, State, Zip, Orig List Dt, Orig List $, Curr List Dt, Curr List $, Cont Dt, List Cancel Dt, "
    "Sale Dt, Sale $";

/// Counts from 2 for the head of a section; a part is full at these counts.
constexpr int kFirstCount = 2;
constexpr int kPart1Full = 72;
constexpr int kPart2Full = 144;

/// Both parts, while the sections are walked.
class AuditWriter {
  public:
    AuditWriter(ado::Adodc& control, common::Date effectiveDate)
        : control_(control),
          effectiveDate_(effectiveDate),
          selected_(analysis::SelectedColumn(control.Recordset())) {}

    void WriteListings() {
        std::string section = std::string("Listings:") + kLineEnd + kHead + kLineEnd;
        int inSection = 0;
        ado::Recordset& records = control_.Recordset();
        for (records.MoveFirst(); !records.Eof(); records.MoveNext()) {
            if (!IsUsed() || adogetfieldDate(control_, "SALEDATE") != common::kDayZero) continue;
            if (count_ == kPart1Full) {
                text_.part1 = section;
                section.clear();
                inSection = 0;
            }
            if (!full_ && count_ == kPart2Full) {
                text_.part2 = section;
                full_ = true;
            }
            if (LeaveOut()) continue;
            AppendAuditLine(section, control_, effectiveDate_);
            ++count_;
            ++inSection;
        }
        if (full_) return;
        if (count_ < kPart1Full) {
            text_.part1 = section;
        } else if (count_ > kPart1Full && count_ < kPart2Full) {
            text_.part2 = section;
        } else {
            // At the two full counts themselves the section is dropped.
            text_.leftOut += inSection;
        }
    }

    void WriteComparables() {
        std::string section = std::string("Comparables:") + kLineEnd;
        if (++count_ == kPart1Full) ++count_;
        ado::Recordset& records = control_.Recordset();
        for (records.MoveFirst(); !records.Eof(); records.MoveNext()) {
            if (!IsUsed() || !analysis::IsSaleWithinYear(control_, effectiveDate_)) continue;
            if (count_ == kPart1Full) {
                text_.part1 += section;
                section.clear();
            }
            if (!full_ && count_ == kPart2Full) {
                text_.part2 += section;
                full_ = true;
            }
            if (LeaveOut()) continue;
            AppendAuditLine(section, control_, effectiveDate_);
            ++count_;
        }
        if (!full_) (count_ > kPart1Full ? text_.part2 : text_.part1) += section;
    }

    [[nodiscard]] AuditText Take() { return std::move(text_); }

  private:
    /// Both parts are full: the record is only counted.
    bool LeaveOut() {
        if (full_) ++text_.leftOut;
        return full_;
    }
    [[nodiscard]] bool IsUsed() {
        const auto flag =
            text::TrimView(analysis::SelectedText(control_.Recordset(), selected_, selectedBuffer_));
        return flag == "1" || flag == "3";
    }

    ado::Adodc& control_;
    common::Date effectiveDate_;
    int selected_;
    std::string selectedBuffer_;
    AuditText text_;
    int count_ = kFirstCount;
    bool full_ = false;  ///< nothing follows any more
};

std::string DateIf(bool isThere, common::Date date) {
    return isThere ? common::UpTrim(text::DateText(date)) : std::string();
}

}  // namespace

AuditText BuildAuditText(ado::Adodc& adoDatabook, common::Date effectiveDate) {
    if (adoDatabook.Recordset().RecordCount() < 1) return {};
    const analysis::KeptPosition kept(adoDatabook.Recordset());
    AuditWriter writer(adoDatabook, effectiveDate);
    writer.WriteListings();
    writer.WriteComparables();
    return writer.Take();
}

std::string LeftOutText(int leftOut) {
    return text::IntegerText(leftOut) + (leftOut == 1 ? " record is" : " records are") +
           " left out of the audit text.";
}

void AppendAuditLine(std::string& text, ado::Adodc& adoDatabook, common::Date effectiveDate) {
    const analysis::FieldChecks checks = analysis::CheckFields(adoDatabook, effectiveDate);
    const auto date = [&](const char* name) { return adogetfieldDate(adoDatabook, name); };
    const auto price = [&](const char* name) {
        return text::DoubleText(adogetfieldDouble(adoDatabook, name));
    };
    const std::string salePrice = price("SELLINGPR");

    // Only what is there to be trimmed: a section may have very many lines.
    if (text::TrimView(text).size() < text.size()) text = text::Trim(text);
    for (const std::string& field :
         {adogetfield(adoDatabook, "ADDRESS"), adogetfield(adoDatabook, "CITY"),
          adogetfield(adoDatabook, "ST"), adogetfield(adoDatabook, "ZIP"),
          text::DateText(date("ORIGLISTDATE")), price("ORIGLISTPRICE"), text::DateText(date("LASTLISTDATE")),
          price("LASTLISTPRICE"), DateIf(checks.contractDate, date("CONTRACTDATE")),
          DateIf(checks.cancelDate, date("LISTCANCELDATE")), DateIf(checks.saleDate, date("SALEDATE")),
          common::IsValidPriceEntry(salePrice) ? common::UpTrim(salePrice) : std::string()}) {
        text += field + ", ";
    }
    text += kLineEnd;
}

}  // namespace zenvora::transfer

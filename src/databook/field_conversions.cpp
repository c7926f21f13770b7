#include "databook/field_conversions.h"

#include "common/dates.h"
#include "common/error_rule.h"
#include "common/primitives.h"
#include "databook/address_line.h"
#include "databook/field_access.h"
#include "platform/fault.h"

namespace zenvora::databook {
namespace {

constexpr std::string_view kNoDate = "01/01/1900";

bool HasCurrentRecord(ado::Adodc& control) {
    return control.HasRecordset() && !control.Recordset().Bof() && !control.Recordset().Eof();
}

/// NormalizeDateText, and day zero for what is no date.
std::string DateOrDayZero(const std::string& text, const shell::Clock& clock) {
    try {
        std::string normal = common::NormalizeDateText(text, clock);
        if (common::IsDate(normal, clock)) return normal;
    } catch (const Fault& fault) {
        if (fault.number != fault::kTypeMismatch) throw;
    }
    return std::string(kNoDate);
}

class Conversions {
  public:
    Conversions(common::Session& session, ado::Adodc& control, ado::Adodc& adoDatabook)
        : session_(session), control_(control), adoDatabook_(adoDatabook) {}

    void Run(const std::vector<ColumnDefault>& defaults) {
        AddressLine();
        OriginalListPrice();
        CurrentListDate();
        CurrentListPrice();
        OriginalListDate();
        ado::Recordset& records = control_.Recordset();
        for (const ColumnDefault& fill : defaults) {
            if (jet::IsNull(records.Value(fill.column))) records.SetValue(fill.column, fill.value);
        }
        WriteOut();
    }

  private:
    [[nodiscard]] std::string Get(std::string_view name) { return adogetfield(control_, name); }

    void AddressLine() {
        emptied_ = false;
        const std::string line = Get("neighborhd");
        if (line.empty()) return;
        if (Get("address2").empty()) AdoSetField(session_, control_, line, "address2");
        std::string city;
        std::string state;
        std::string zip;
        GetFULLCityStateZIP(line, city, state, zip);
        if (!HasCurrentRecord(adoDatabook_)) return;
        Complete("city", city);
        Complete("ST", state);
        Complete("ZIP", zip);
        if (state.empty()) return;
        AdoSetField(session_, adoDatabook_, "", "NEIGHBORHD");
        emptied_ = &adoDatabook_ == &control_;
    }

    /// Nothing over nothing would not be seen, but a column may refuse the empty text.
    void Complete(std::string_view name, const std::string& part) {
        if (!part.empty() && adogetfield(adoDatabook_, name).empty())
            AdoSetField(session_, adoDatabook_, part, name);
    }

    void OriginalListPrice() {
        const std::string price = Get("OtherArea1");
        if (!price.empty()) AdoSetFieldDouble(session_, control_, common::CDouble(price), "OrigListPrice");
    }

    void CurrentListDate() {
        const std::string date = DateOrDayZero(Get("ContrKDate"), session_.clock);
        if (adogetfieldDate(control_, "LastListDate") == common::kDayZero)
            AdoSetFieldDate(session_, control_, date, "LastListDate");
    }

    void CurrentListPrice() {
        const std::string price = Get("ERCFinal");
        if (!price.empty() && adogetfieldDouble(control_, "LastListPrice") == 0)
            AdoSetFieldDouble(session_, control_, common::CDouble(price), "LastListPrice");
    }

    void OriginalListDate() {
        const std::string date = Get("OtherArea2");
        if (!date.empty() && common::IsDate(date, session_.clock))
            AdoSetFieldDate(session_, control_, common::NormalizeDateText(date, session_.clock),
                            "OrigListDate");
    }

    void WriteOut() {
        ado::Recordset& records = control_.Recordset();
        try {
            records.Update();
        } catch (const Fault& fault) {
            // Many old files take no empty text in their columns; Null reads as the same.
            if (fault.number != fault::kEmptyText || !emptied_) throw;
            records.SetValue("NEIGHBORHD", jet::Null{});
            records.Update();
        }
    }

    common::Session& session_;
    ado::Adodc& control_;
    ado::Adodc& adoDatabook_;
    bool emptied_ = false;  ///< NEIGHBORHD of the record in hand was set to the empty text
};

}  // namespace

bool PerformFieldConversions(common::Session& session, ado::Adodc& control, ado::Adodc& adoDatabook,
                             const std::vector<ColumnDefault>& defaults) {
    ado::Recordset& records = control.Recordset();
    const long count = records.RecordCount();
    if (count == 0) return true;
    Conversions conversions(session, control, adoDatabook);
    bool isWhole = true;
    records.BeginBatch();
    try {
        for (records.MoveFirst(); !records.Eof(); records.MoveNext()) {
            const auto end =
                common::WithErrorRule(session, "PerformFieldConversions", [&] { conversions.Run(defaults); });
            isWhole = end != common::StatementEnd::LeaveProcedure;
            if (!isWhole) break;
            session.desktop.Progress(records.Position() + 1, count);
        }
    } catch (Fault& fault) {
        if (fault.place.record == 0) fault.place.record = records.Position() + 1;
        records.CancelUpdate();
        records.EndBatch();
        throw;
    }
    if (!isWhole) records.CancelUpdate();
    records.EndBatch();
    return isWhole;
}

}  // namespace zenvora::databook

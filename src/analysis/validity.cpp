#include "analysis/validity.h"

#include <array>
#include <optional>
#include <string>

#include "analysis/comparable_facts.h"
#include "analysis/field_checks.h"
#include "analysis/kept_position.h"
#include "analysis/selected_flag.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "platform/fault.h"

namespace zenvora::analysis {
namespace {

constexpr long kRecordsPerProgress = 1024;
constexpr std::string_view kInvalid = "0";

/// 12/30/1899, the date of a bare time of day: a date without a day, which old records hold for a missing
/// one.
constexpr Date kNoDay = 0.0;

std::string_view VerdictOfMode(std::string_view mode) {
    if (mode == "M" || mode == "R") return "1";
    if (mode == "U") return "2";
    if (mode == "S") return "3";
    throw Fault{fault::kInvalidCall, "There is no validity run of the mode \"" + std::string(mode) +
                                         "\"; the modes are M, R, S and U."};
}

/// True for a fault that comes from a value and its column, so that the next record may well be written. All
/// others, a full disk or a Databook open for reading only, would strike every record and end the run.
bool ConcernsOneRecord(int faultNumber) {
    switch (faultNumber) {
        case fault::kTypeMismatch:
        case fault::kOverflow:
        case fault::kItemNotFound:
        case fault::kNoSuchColumn:
        case fault::kTooLong:
        case fault::kRequired:
        case fault::kEmptyText:
        case fault::kRecordTooLarge:
            return true;
        default:
            return false;
    }
}

/// One run over a data control.
class ValidityRun {
  public:
    ValidityRun(common::Session& session, ado::Adodc& control, Date effectiveDate, std::string_view mode,
                bool allRecords)
        : session_(session),
          control_(control),
          records_(control.Recordset()),
          // The machine's clock is asked once: it is slow beside the work on a record.
          clock_(session.clock.Now()),
          effectiveDate_(effectiveDate),
          soundVerdict_(VerdictOfMode(mode)),
          keepsChoices_(mode == "M" && allRecords),
          columns_(records_),
          selected_(SelectedColumn(records_)) {}

    void CheckAll() {
        const long total = records_.RecordCount();
        long done = 0;
        for (records_.MoveFirst(); !records_.Eof(); records_.MoveNext(), ++done) {
            if (done % kRecordsPerProgress == 0) session_.desktop.Progress(done, total);
            CheckOne();
        }
        session_.desktop.Progress(total, total);
    }

    /// Judges the current record and stores what changed in it.
    void CheckOne() {
        ComparableFacts facts = ReadFacts(records_, columns_, clock_);
        RepairDatesWithoutDay(facts);
        const std::string_view verdict = Judge(facts);
        bool stored = KeepsFlag(verdict) || TryTo([&] { WriteVerdict(verdict); });
        if (records_.Edit() != ado::EditMode::None && !TryTo([&] { records_.Update(); })) {
            records_.CancelUpdate();
            stored = false;
        }
        if (stored && verdict != kInvalid) ++session_.validRecords;
    }

  private:
    /// Runs a write; a fault that concerns this record alone leaves its value as it was. False then.
    template <class Write>
    static bool TryTo(const Write& write) {
        try {
            write();
            return true;
        } catch (const Fault& fault) {
            if (!ConcernsOneRecord(fault.number)) throw;
            return false;
        }
    }

    void RepairDatesWithoutDay(ComparableFacts& facts) {
        struct DateColumn {
            Date ComparableFacts::*date;
            std::string_view column;
        };
        // The current list date is written to a column that COMPS does not have. Databooks in use rely on it:
        // such a record keeps its 12/30/1899, fails as "before Original List Date", and is not filled from
        // the original.
        static constexpr std::array<DateColumn, 5> kDates{{
            {&ComparableFacts::origListDate, "ORIGLISTDATE"},
            {&ComparableFacts::currListDate, "CURRLISTDATE"},
            {&ComparableFacts::contractDate, "CONTRACTDATE"},
            {&ComparableFacts::cancelDate, "LISTCANCELDATE"},
            {&ComparableFacts::saleDate, "SALEDATE"},
        }};
        bool repaired = false;
        for (const DateColumn& date : kDates) {
            if (facts.*date.date != kNoDay) continue;
            repaired |=
                TryTo([&] { databook::AdoSetFieldDate(session_, control_, "01/01/1900", date.column); });
        }
        if (repaired) facts = ReadFacts(records_, columns_, clock_);
    }

    /// The verdict on a record, after the repair of its current list values.
    std::string_view Judge(ComparableFacts& facts) {
        FieldChecks ok = CheckFields(facts, effectiveDate_, clock_);
        if (RepairCurrentListing(facts, ok)) {
            // What was stored is judged, and not what was meant to be: a price may lose digits on its way.
            facts = ReadFacts(records_, columns_, clock_);
            ok = CheckFields(facts, effectiveDate_, clock_);
        }
        // Without an original price or date a missing current one cannot be repaired, and the record fails
        // anyway.
        if (!ok.origListPrice || !ok.origListDate) return kInvalid;
        if (!ok.currListPrice || !ok.currListDate) return kInvalid;
        if (ok.cancelDate && (ok.salePrice || ok.saleDate || ok.contractDate)) return kInvalid;
        if (ok.saleDate && !ok.salePrice) return kInvalid;
        if (ok.salePrice && !ok.saleDate && !ok.contractDate) return kInvalid;
        if (IsSaleOverAYearAgo(facts, ok, effectiveDate_)) return kInvalid;
        if (ok.saleDateEntered && !ok.saleDate) return kInvalid;
        return soundVerdict_;
    }

    /// Fills a missing current list price and date from the original ones, each by itself. True when one was
    /// written.
    bool RepairCurrentListing(const ComparableFacts& facts, const FieldChecks& ok) {
        bool repaired = false;
        if (facts.currListPrice == 0 && ok.origListPrice) {
            repaired |= TryTo([&] {
                databook::AdoSetFieldDouble(session_, control_, facts.origListPrice, "LASTLISTPRICE");
            });
        }
        if (facts.currListDate == common::kDayZero && ok.origListDate) {
            repaired |= TryTo(
                [&] { databook::AdoSetFieldDate(session_, control_, facts.origListDate, "LASTLISTDATE"); });
        }
        return repaired;
    }

    /// True when the flag stays: it holds a choice of the user that a whole-table run respects, or the
    /// verdict stands there already. Writing the same text again would change nothing but the time of the
    /// run.
    bool KeepsFlag(std::string_view verdict) {
        const std::string_view flag = SelectedText(records_, selected_, buffer_);
        if (flag == verdict) return true;
        if (!keepsChoices_ || verdict == kInvalid) return false;
        const std::optional<double> value = SelectedNumber(flag);
        return value && *value >= 2;
    }

    void WriteVerdict(std::string_view verdict) {
        databook::AdoSetField(session_, control_, verdict, "SELECTED");
    }

    common::Session& session_;
    ado::Adodc& control_;
    ado::Recordset& records_;
    const shell::FixedClock clock_;
    const Date effectiveDate_;
    const std::string_view soundVerdict_;
    const bool keepsChoices_;
    const ComparableColumns columns_;
    const int selected_;
    std::string buffer_;
};

/// Makes the writes of a run durable together, also when it ends in a fault.
class Batch {
  public:
    explicit Batch(ado::Recordset& records) : records_(records) { records_.BeginBatch(); }
    ~Batch() {
        if (ended_) return;
        try {
            records_.EndBatch();
        } catch (const Fault&) {
            // The fault that ends the run is the one to be told; the store has undone what it could not keep.
            ended_ = true;
        }
    }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    void End() {
        ended_ = true;
        records_.EndBatch();
    }

  private:
    ado::Recordset& records_;
    bool ended_ = false;
};

}  // namespace

void CheckRecordValidity(common::Session& session, ado::Adodc& adoDatabook, Date effectiveDate,
                         std::string_view mode, bool allRecords) {
    session.validRecords = 0;
    ado::Recordset& records = adoDatabook.Recordset();
    if (records.RecordCount() <= 0) return;
    ValidityRun run{session, adoDatabook, effectiveDate, common::UpTrim(mode), allRecords};
    if (!allRecords) {
        run.CheckOne();
        return;
    }
    const KeptPosition position{records};
    Batch batch{records};
    run.CheckAll();
    batch.End();
}

}  // namespace zenvora::analysis

#include "import/merge.h"

#include <string>
#include <vector>

#include "databook/selection.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

/// One source on its way into the destination.
class Merge {
  public:
    Merge(common::Session& session, ado::Recordset& source, ado::Recordset& destination,
          ExistingRecords existing, MergeCounts& counts)
        : session_(session),
          source_(source),
          destination_(destination),
          existing_(existing),
          counts_(counts),
          keyField_(source.FieldIndex("CENTRALKEY")) {
        for (const ado::FieldInfo& field : source.Fields())
            fields_.push_back(destination.FieldIndex(field.name));
    }

    void CopyCurrent() {
        // By name where there is none, for the fault.
        const std::string key =
            keyField_ >= 0 ? source_.Text(keyField_) : jet::ValueText(source_.Value("CENTRALKEY"));
        long* count = &counts_.added;
        if (IsThere(key)) {
            if (!MayOverwrite(key)) {
                ++counts_.skipped;
                return;
            }
            count = &counts_.overwritten;
        } else {
            destination_.AddNew();
        }
        CopyFields();
        if (destination_.Edit() != ado::EditMode::None) destination_.Update();
        ++*count;
    }

  private:
    [[nodiscard]] bool IsThere(const std::string& key) {
        if (destination_.RecordCount() == 0) return false;
        destination_.Find(databook::KeyCriterion(key));
        return !destination_.Eof();
    }

    [[nodiscard]] bool MayOverwrite(const std::string& key) {
        if (existing_ != ExistingRecords::Ask) return existing_ == ExistingRecords::Overwrite;
        return session_.desktop.Show({text::Trim(key) +
                                          " already exists in the destination database. Overwrite "
                                          "destination with source information?\nIf you choose No, the "
                                          "source record will not be copied to the destination.",
                                      "Overwrite?", controls::Icon::Critical, controls::Buttons::YesNo}) ==
               controls::Answer::Yes;
    }

    void CopyFields() {
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            const int field = static_cast<int>(i);
            if (source_.IsNull(field)) continue;
            if (fields_[i] < 0) {
                const std::string& name = source_.Fields()[i].name;
                Place place;
                place.column = name;
                throw Fault{fault::kItemNotFound,
                            "The destination has no field " + name +
                                ", and the source holds a value in it. Merge the other way round, or into a "
                                "new Databook.",
                            place};
            }
            destination_.SetValue(fields_[i], source_.Value(field));
        }
    }

    common::Session& session_;
    ado::Recordset& source_;
    ado::Recordset& destination_;
    ExistingRecords existing_;
    MergeCounts& counts_;
    int keyField_;
    std::vector<int> fields_;  ///< of the destination, by field of the source; -1: it has none
};

}  // namespace

std::string CountsText(const MergeCounts& counts) {
    return text::IntegerText(counts.added) + (counts.added == 1 ? " record added, " : " records added, ") +
           text::IntegerText(counts.overwritten) + " overwritten, " + text::IntegerText(counts.skipped) +
           " skipped";
}

void MergeRecords(common::Session& session, ado::Recordset& source, ado::Recordset& destination,
                  ExistingRecords existing, MergeCounts& counts) {
    const long total = source.RecordCount();
    if (total == 0) return;
    Merge merge(session, source, destination, existing, counts);
    long record = 1;
    destination.BeginBatch();
    try {
        for (source.MoveFirst(); !source.Eof(); source.MoveNext(), ++record) {
            session.desktop.Progress(record, total);
            merge.CopyCurrent();
        }
    } catch (Fault& fault) {
        destination.CancelUpdate();
        try {
            destination.EndBatch();
        } catch (const Fault&) {  // the first fault says what went wrong
        }
        fault.place.record = record;
        throw;
    }
    destination.EndBatch();
}

}  // namespace zenvora::importing

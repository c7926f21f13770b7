#include "databook/schema_upgrade.h"

#include <optional>
#include <string>
#include <vector>

#include "common/error_rule.h"
#include "common/file_helpers.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "databook/field_conversions.h"
#include "databook/selection.h"
#include "databook/upgrade_copy.h"
#include "platform/fault.h"
#include "platform/jet/convert.h"
#include "platform/text/utf8.h"

namespace zenvora::databook {
namespace {

constexpr std::string_view kProcedure = "Check4NewListingFieldsMain";

controls::Answer Say(common::Session& session, std::string text, controls::Icon icon = controls::Icon::None,
                     controls::Buttons buttons = controls::Buttons::Ok) {
    return session.desktop.Show({std::move(text), "Zenvora", icon, buttons});
}

/// What became of adding a column: nothing, or the fault that kept it from being added.
using Refusal = std::optional<Fault>;

/// Adds a column and then stores its default. An empty default of the first form is a statement that the
/// store refuses, with no consequence; the second form leaves it out. Neither speaks of a failure.
enum class AppendForm { OnTheRecordset, OnItsOwn };

Refusal AdoAppendField(ado::Connection& connection, AppendForm form, std::string_view table,
                       const ListingColumn& column) {
    Refusal refusal;
    const std::string alter = "ALTER TABLE " + std::string(table);
    try {
        connection.Execute(alter + " ADD " + std::string(column.name) + " " + std::string(column.type));
    } catch (const Fault& fault) {
        refusal = fault;
    }
    if (refusal || (form == AppendForm::OnItsOwn && column.defaultText.empty())) return refusal;
    try {
        connection.Execute(alter + " ALTER COLUMN " + std::string(column.name) + " SET DEFAULT " +
                           std::string(column.defaultText));
    } catch (const Fault&) {
        // The records that are there get their value from the upgrade itself.
        return refusal;
    }
    return refusal;
}

/// The columns that were added, with what their records hold; and why the first one was not.
struct Appended {
    std::vector<ColumnDefault> columns;
    Refusal refusal;
};

Appended AppendListingFields(common::Session& session, std::string_view path, const ado::PathMapper& mapper,
                             AppendForm form, std::string_view table) {
    ado::Connection connection(session.databooks, session.clock, mapper);
    connection.Open(OneShotConnectionString(path));
    Appended appended;
    for (const ListingColumn& column : kListingColumns) {
        if (Refusal refusal = AdoAppendField(connection, form, table, column)) {
            if (!appended.refusal) appended.refusal = std::move(refusal);
        } else if (!column.defaultText.empty()) {
            appended.columns.push_back({std::string(column.name), std::string(column.defaultText)});
        }
    }
    return appended;
}

/// Gives the records that were there before the columns what new records get.
void FillDefaults(ado::Recordset& records, const std::vector<ColumnDefault>& columns) {
    records.BeginBatch();
    for (; !records.Eof(); records.MoveNext()) {
        for (const ColumnDefault& column : columns) {
            if (jet::IsNull(records.Value(column.column))) records.SetValue(column.column, column.value);
        }
    }
    records.EndBatch();
}

/// One check of a Databook.
class Check {
  public:
    Check(common::Session& session, ado::Adodc& control, std::string_view fullPath, ado::Adodc& adoDatabook)
        : session_(session),
          control_(control),
          adoDatabook_(adoDatabook),
          fullPath_(text::Trim(fullPath)),
          copy_(control.HostPath()) {}

    UpgradeOutcome Run() {
        if (!SelectAll()) return outcome_;
        bool isOld = IsOld();
        if (!isOld && copy_.IsUnfinished() && WantsRestored()) {
            Restore();
            if (!SelectAll()) return outcome_;
            isOld = IsOld();
        }
        if (isOld) Upgrade();
        return outcome_;
    }

  private:
    /// Selects all columns; false: a disk fault stopped it and the user chose to leave it at that.
    bool SelectAll() {
        bool done = false;
        common::WithErrorRule(session_, kProcedure, [&] {
            try {
                AdoSelect(control_, session_.table, "*", "");
            } catch (const Fault& fault) {
                // Access 97 is read and not written; whatever else the engine does not do, Convert says.
                if (fault.number != fault::kUnsupported) throw;
                ConvertFile();
                AdoSelect(control_, session_.table, "*", "");
            }
            done = true;
        });
        return done;
    }

    void ConvertFile() {
        control_.Close();
        const std::filesystem::path path = control_.HostPath();
        // What is no Databook stays as it is.
        static_cast<void>(
            session_.databooks.Open(path, jet::Database::Access::ReadOnly)->OpenTable(session_.table));
        const jet::RewriteReport report = jet::Convert(path, session_.clock.Now());
        session_.databooks.Forget(path);
        outcome_.converted = true;
        outcome_.backup = report.backup;
        std::string text = "The Databook " + fullPath_ +
                           " was of Access 97. It was converted to the format of Access 2000 to 2003; the "
                           "original is kept beside it as " +
                           report.backup.filename().string() + ".";
        if (!report.contents.leftBehind.empty()) {
            text += " These stay in the original alone:";
            for (const std::string& name : report.contents.leftBehind)
                text += " " + name + ",";
            text.back() = '.';
        }
        Say(session_, text);
    }

    bool IsOld() {
        if (!AdoFieldexists(session_, control_, "CENTRALKEY")) {
            Say(session_,
                "A required field 'CentralKey' in '" + fullPath_ +
                    "' was not found.   This database appears to be invalid.  Reinstall the software and "
                    "contact your software provider.",
                controls::Icon::Critical);
            throw common::ProgramEnds{};
        }
        return !AdoFieldexists(session_, control_, "ORIGLISTPRICE");
    }

    bool WantsRestored() {
        const std::string name = copy_.Path().filename().string();
        if (!copy_.CanRestore()) {
            Say(session_,
                "The conversion of " + fullPath_ +
                    " was broken off before it ended, and the copy of the old "
                    "file, " +
                    name +
                    ", is not beside it any more. Compare the listing dates and prices of its "
                    "records with another copy of the old file.",
                controls::Icon::Exclamation);
            copy_.End();
            return false;
        }
        const controls::Answer answer =
            Say(session_,
                "The conversion of " + fullPath_ + " was broken off before it ended.\nDo it again now from " +
                    name + ", the copy of the old file?\nIf you choose No, the Databook stays as it is.",
                controls::Icon::Question, controls::Buttons::YesNo);
        if (answer == controls::Answer::Yes) return true;
        // The user works on with it from here, and a later answer must not undo that work.
        copy_.End();
        return false;
    }

    void Restore() {
        control_.Close();
        copy_.Restore();
        session_.databooks.Forget(control_.HostPath());
    }

    void Upgrade() {
        Say(session_, "New Listing Fields will be added to your database for compatibility.");
        bool begun = false;
        common::WithErrorRule(session_, kProcedure, [&] {
            copy_.Begin(outcome_.converted);
            begun = true;
        });
        if (!begun) return;
        outcome_.backup = copy_.Path();
        const Appended appended = AppendListingFields(session_, fullPath_, control_.Mapper(),
                                                      AppendForm::OnItsOwn, common::UpTrim(session_.table));
        if (!SelectAll()) return;
        if (!AdoFieldexists(session_, control_, "ORIGLISTPRICE") && appended.refusal) {
            copy_.End();
            throw *appended.refusal;
        }
        if (!PerformFieldConversions(session_, control_, adoDatabook_, appended.columns)) return;
        copy_.End();
        outcome_.upgraded = true;
        outcome_.records = control_.Recordset().RecordCount();
        Say(session_, "The New Listing Fields were added successfully.");
    }

    common::Session& session_;
    ado::Adodc& control_;
    ado::Adodc& adoDatabook_;
    std::string fullPath_;
    UpgradeCopy copy_;
    UpgradeOutcome outcome_;
};

}  // namespace

void InsertMissingCompsFields(common::Session& session, std::string_view path,
                              const ado::PathMapper& mapper) {
    const std::string trimmed = text::Trim(path);
    if (trimmed.empty()) return;
    ado::Adodc control(session.databooks, session.clock, mapper);
    control.Connectionstring = OneShotConnectionString(trimmed);
    if (!common::FileExists(session, control.HostPath())) return;
    try {
        AdoSelect(control, "COMPS", "*", "");
    } catch (const Fault& fault) {
        // Of Access 97, or encrypted: nothing can be added, as to a file that may not be written.
        if (fault.number == fault::kUnsupported) return;
        throw;
    }
    // A name that no Databook has: the columns are tried each time, and those that exist are refused.
    constexpr std::array<std::string_view, 8> kTested{"CANCELDATE",   "ORIGLISTPRICE", "ORIGLISTDATE",
                                                      "LISTINGDOM",   "SELECTED",      "LASTLISTPRICE",
                                                      "LASTLISTDATE", "CONTRACTDATE"};
    bool isMissing = false;
    for (const std::string_view name : kTested)
        isMissing = isMissing || !AdodbFExists(control.Recordset(), name);
    if (!isMissing) return;
    control.Close();
    const Appended appended =
        AppendListingFields(session, trimmed, mapper, AppendForm::OnTheRecordset, session.table);
    if (appended.columns.empty()) return;
    AdoSelect(control, session.table, "*", "");
    FillDefaults(control.Recordset(), appended.columns);
}

UpgradeOutcome Check4NewListingFieldsMain(common::Session& session, ado::Adodc& control,
                                          std::string_view fullPath, ado::Adodc& adoDatabook) {
    return Check(session, control, fullPath, adoDatabook).Run();
}

UpgradeOutcome Check4NewListingFieldsMain(common::Session& session, ado::Adodc& adoDatabook,
                                          std::string_view fullPath) {
    return Check4NewListingFieldsMain(session, adoDatabook, fullPath, adoDatabook);
}

}  // namespace zenvora::databook

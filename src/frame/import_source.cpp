#include "frame/import_source.h"

#include <filesystem>
#include <optional>

#include "common/fault_text.h"
#include "common/primitives.h"
#include "databook/template.h"
#include "import/csv_wizard.h"
#include "import/load_target.h"
#include "import/unattended_import.h"
#include "platform/files/host_path.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;

/// A path beside `target` where nothing stands yet.
fs::path FreeNameBeside(const fs::path& target) {
    std::error_code ignored;
    for (int attempt = 1;; ++attempt) {
        fs::path path = target;
        path += ".part" + std::to_string(attempt);
        if (!fs::exists(fs::symlink_status(path, ignored))) return path;
    }
}

/// Host path of the folder for the maps used last, made when it is missing; empty when there can be none.
std::string MapsFolder(const common::Session& session) {
    try {
        const fs::path folder =
            session.drives.HostPath(common::CkRSlash(session.settings.applicationDirectory) + "MAPS");
        if (!files::PathExists(folder)) files::MakeHostDirectory(folder);
        return common::Shown(folder);
    } catch (const Fault&) {
        return {};
    }
}

}  // namespace

fs::path TemplatePath(const common::Session& session) {
    return session.drives.HostPath(common::CkRSlash(session.settings.applicationDirectory) +
                                   std::string(kTemplateName));
}

NewDatabook::NewDatabook(common::Session& session, const std::string& target)
    : session_(session), target_(session.drives.HostPath(target)), path_(FreeNameBeside(target_)) {
    databook::CopyNewData(session, TemplatePath(session), path_);
}

NewDatabook::~NewDatabook() {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

void NewDatabook::NameTarget(Fault& fault) const {
    const std::string making = common::Shown(path_);
    const std::string target = common::Shown(target_);
    fault.description = text::ReplaceAll(fault.description, making, target);
    if (fault.place.file == making) fault.place.file = target;
}

void NewDatabook::Finish() {
    databook::CopyNewData(session_, path_, target_);
}

importing::LoadOutcome ImportUnattended(common::Session& session, const SourceImport& import) {
    importing::ImportJob job;
    job.source = common::Shown(session.drives.HostPath(import.source));
    if (!import.map.empty()) job.map = common::Shown(session.drives.HostPath(import.map));
    job.sourceDate = importing::SourceFileDate(job.source);
    job.databook = "Databook";
    job.mapsFolder = MapsFolder(session);

    std::optional<NewDatabook> databook;
    try {
        const importing::ImportResult result = importing::ImportFile(
            session, job, [&] { databook.emplace(session, import.target); },
            [&](std::string_view) { return databook->Path(); });
        databook->Finish();
        return result.outcome;
    } catch (Fault& fault) {
        if (databook) databook->NameTarget(fault);
        throw;
    }
}

importing::LoadOutcome ImportShown(common::Session& session, const SourceImport& import) {
    NewDatabook databook(session, import.target);
    importing::AdoLoadTarget target(session.databooks, session.clock,
                                    [&](std::string_view) { return databook.Path(); });
    importing::frmCSVWizard wizard(session, target);
    wizard.CSVFilename = common::Shown(session.drives.HostPath(import.source));
    wizard.CSVFiledate = importing::SourceFileDate(wizard.CSVFilename);
    wizard.CSVMDBFilename = common::Shown(databook.Path());
    if (!import.map.empty()) wizard.g_MapFileName = common::Shown(session.drives.HostPath(import.map));
    wizard.DetailedView = true;
    wizard.MapsFolder = MapsFolder(session);
    try {
        wizard.Show(controls::Modality::Modal);
        wizard.Unload();
        databook.Finish();
    } catch (Fault& fault) {
        databook.NameTarget(fault);
        throw;
    }
    return wizard.Outcome();
}

void TellRefusedRows(common::Session& session, const std::string& source,
                     const importing::LoadOutcome& outcome) {
    if (!outcome.HasErrors()) return;
    session.desktop.Show({.text = source + "\n" + importing::SummaryText(outcome) +
                                  "\n\nMend the source or its map and import it again.",
                          .title = "Zenvora",
                          .icon = controls::Icon::Exclamation,
                          .buttons = controls::Buttons::Ok});
}

}  // namespace zenvora::frame

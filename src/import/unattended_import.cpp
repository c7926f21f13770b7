#include "import/unattended_import.h"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <utility>

#include "import/csv_wizard.h"
#include "import/load_target.h"
#include "import/mapping.h"
#include "import/source_text.h"
#include "platform/fault.h"

namespace zenvora::importing {

text::Date SourceFileDate(const std::string& path) {
    std::error_code error;
    const auto changed = std::filesystem::last_write_time(path, error);
    if (error) {
        const bool isMissing = error == std::errc::no_such_file_or_directory;
        throw Fault{isMissing ? fault::kFileNotFound : fault::kPathAccess,
                    isMissing ? "There is no such file. Check its name."
                              : "The file cannot be looked at: " + error.message(),
                    PlaceIn(path)};
    }
    const auto system = std::chrono::file_clock::to_sys(changed);
    const std::time_t seconds = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(system));
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    const text::Date day = text::DayNumber(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday).value_or(0);
    return day + (local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec) / 86400.0;
}

namespace {

/// The reader for a source. Fault 20002: there is none for it, or nothing in it.
SourceKind CheckSource(const std::string& source) {
    const std::optional<SourceKind> kind = SourceKindOf(source);
    if (!kind) {
        throw Fault{fault::kSourceFormat, "A source file must be delimited text (.csv, .txt) or XML (.xml).",
                    PlaceIn(source)};
    }
    if (files::SystemDisk().Open(source, files::OpenMode::ReadOnly)->Size() == 0) {
        throw Fault{fault::kSourceFormat, "The file is empty: there is nothing to import. Export it again.",
                    PlaceIn(source)};
    }
    return *kind;
}

}  // namespace

ImportResult ImportFile(common::Session& session, const ImportJob& job,
                        const std::function<void()>& makeDatabook, ado::PathMapper mapper) {
    const SourceKind kind = CheckSource(job.source);
    AdoLoadTarget target(session.databooks, session.clock, std::move(mapper));
    frmCSVWizard wizard(session, target);
    wizard.CSVFilename = job.source;
    wizard.CSVFiledate = job.sourceDate;
    wizard.CSVMDBFilename = job.databook;
    wizard.g_MapFileName = job.map;
    wizard.cbHeaderRow.SetValue(job.headerRow ? controls::CheckBox::kChecked
                                              : controls::CheckBox::kUnchecked);
    wizard.LogWanted = job.logWanted;
    wizard.MapsFolder = job.mapsFolder;
    wizard.PrepareUnattended(kind);
    wizard.CheckFirstRow();
    makeDatabook();
    wizard.LoadDB();
    return {wizard.Outcome(), std::move(wizard.ListBox1.Log())};
}

SuggestedMap SuggestFor(common::Session& session, const std::string& source, bool headerRow) {
    const SourceKind kind = CheckSource(source);
    AdoLoadTarget nowhere(session.databooks, session.clock);
    frmCSVWizard wizard(session, nowhere);
    wizard.cbHeaderRow.SetValue(headerRow ? controls::CheckBox::kChecked : controls::CheckBox::kUnchecked);
    wizard.InitDataGrid();
    if (kind == SourceKind::Xml) {
        wizard.ParseXML(source);
    } else {
        wizard.ParseCSV(source);
    }
    return SuggestMap(wizard.DataGridView1, {}, session.clock.Year());
}

void SaveSuggestion(const SuggestedMap& suggestion, const std::string& path) {
    std::vector<std::string> rows;
    for (const ProposedMapping& mapping : suggestion.mappings)
        rows.push_back(MappingText(mapping.source, mapping.destination));
    WriteMapFile(files::SystemDisk(), path, rows);
}

}  // namespace zenvora::importing

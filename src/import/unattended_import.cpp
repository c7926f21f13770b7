#include "import/unattended_import.h"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <utility>

#include "import/csv_wizard.h"
#include "import/load_target.h"
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

ImportResult ImportFile(common::Session& session, const ImportJob& job,
                        const std::function<void()>& makeDatabook, ado::PathMapper mapper) {
    const std::optional<SourceKind> kind = SourceKindOf(job.source);
    if (!kind) {
        throw Fault{fault::kSourceFormat, "A source file must be delimited text (.csv, .txt) or XML (.xml).",
                    PlaceIn(job.source)};
    }
    if (files::SystemDisk().Open(job.source, files::OpenMode::ReadOnly)->Size() == 0) {
        throw Fault{fault::kSourceFormat, "The file is empty: there is nothing to import. Export it again.",
                    PlaceIn(job.source)};
    }
    AdoLoadTarget target(session.databooks, session.clock, std::move(mapper));
    frmCSVWizard wizard(session.desktop, session.clock, target);
    wizard.CSVFilename = job.source;
    wizard.CSVFiledate = job.sourceDate;
    wizard.CSVMDBFilename = job.databook;
    wizard.g_MapFileName = job.map;
    wizard.cbHeaderRow = job.headerRow;
    wizard.LogWanted = job.logWanted;
    wizard.PrepareUnattended(*kind);
    wizard.CheckFirstRow();
    makeDatabook();
    wizard.LoadDB();
    return {wizard.Outcome(), std::move(wizard.ListBox1)};
}

}  // namespace zenvora::importing

#include "printing/pdf_files.h"

#include <exception>
#include <functional>
#include <span>

#include "common/hourglass.h"
#include "platform/fault.h"
#include "platform/files/whole_file.h"

namespace zenvora::printing {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPdfMark = "%PDF-";
constexpr const char* kAuditTitle = "Market Conditions Audit Report";
constexpr const char* kCalculationTitle = "Calculations";

fs::path HostPath(const std::string& text) {
    return {std::u8string(text.begin(), text.end())};
}

/// A slip of the hand in a file name must not cost the user a Databook or a source.
void RefuseOtherFiles(const fs::path& file) {
    auto& disk = files::SystemDisk();
    if (!disk.Exists(file)) return;
    const auto old = disk.Open(file, files::OpenMode::ReadOnly);
    if (old->Size() == 0) return;
    std::string mark(kPdfMark.size(), '\0');
    if (old->Size() >= mark.size()) old->ReadAt(0, std::as_writable_bytes(std::span(mark)));
    if (mark == kPdfMark) return;
    Place place;
    const auto name = file.u8string();
    place.file.assign(name.begin(), name.end());
    throw Fault{fault::kFileExists,
                "A file stands there that is no PDF document, and it was left alone. Name another one.",
                place};
}

void WritePdf(const fs::path& file, const std::string& bytes) {
    RefuseOtherFiles(file);
    files::WriteWholeFile(file, bytes, files::Replaced::KeptAsBak);
}

/// Asks for a file and has it written. `name` is offered with the extension.
void SaveAs(common::Session& session, const char* title, const std::string& directory,
            const std::string& name, const std::function<void(const fs::path&)>& write) {
    controls::FileDialog dialog;
    dialog.title = title;
    dialog.filter = "PDF Files (*.pdf)|*.pdf";
    dialog.directory = directory;
    dialog.fileName = name + ".pdf";
    dialog.defaultExtension = "pdf";
    dialog.forSaving = true;
    const std::string chosen = session.desktop.Choose(dialog);
    if (chosen.empty()) return;
    try {
        const common::Hourglass hourglass(session.desktop);
        write(HostPath(chosen));
    } catch (const std::exception& failure) {
        session.desktop.Show({"The file " + chosen + " was not written.\n" + failure.what(), title,
                              controls::Icon::Exclamation, controls::Buttons::Ok});
    }
}

/// "LISTINGS.MDB" with `what` behind its name: "LISTINGS Audit Report".
std::string OfferedName(const std::string& databookName, const char* what) {
    const auto point = databookName.rfind('.');
    return databookName.substr(0, point) + " " + what;
}

}  // namespace

AuditCounts WriteAuditPdf(const AuditReport& report, const page::PdfMaker& makePdf, const fs::path& file) {
    // Before the user is asked for the report's name and the records are read.
    RefuseOtherFiles(file);
    std::string bytes;
    const auto printer = makePdf(kAuditTitle, bytes);
    const AuditCounts counts = PrintAuditReport(report, *printer, InitPrinterDefaults(*printer));
    WritePdf(file, bytes);
    return counts;
}

void SaveAuditPdf(const AuditReport& report, const page::PdfMaker& makePdf, const std::string& directory) {
    SaveAs(report.session, "Audit Report as PDF", directory, OfferedName(report.databookName, "Audit Report"),
           [&](const fs::path& file) { WriteAuditPdf(report, makePdf, file); });
}

void SaveCalculationPdf(common::Session& session, page::FormPrint& mainWindow, const std::string& directory,
                        const std::string& databookName) {
    SaveAs(session, "Calculations as PDF", directory, OfferedName(databookName, "Calculations"),
           [&](const fs::path& file) { WritePdf(file, mainWindow.PdfOfForm(kCalculationTitle)); });
}

}  // namespace zenvora::printing

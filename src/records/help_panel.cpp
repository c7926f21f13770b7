#include "records/help_panel.h"

#include <filesystem>
#include <string>

#include "common/primitives.h"
#include "platform/fault.h"
#include "platform/files/host_file.h"
#include "platform/files/whole_file.h"
#include "records/rich_text_file.h"

namespace zenvora::records {
namespace {

constexpr std::uint64_t kLargestHelpText = 1 << 20;

}  // namespace

void ShowHelpText(common::Session& session, controls::RichText& panel, std::string_view fileName) {
    std::string bytes;
    try {
        const std::string path =
            common::CkRSlash(std::string_view{session.settings.applicationDirectory}) + std::string(fileName);
        const std::filesystem::path file = session.drives.HostPath(path);
        if (files::SystemDisk().Open(file, files::OpenMode::ReadOnly)->Size() <= kLargestHelpText)
            bytes = files::ReadWholeFile(file);
    } catch (const Fault&) {
        // The panel is a courtesy: without its text the field works as well.
        bytes.clear();
    }
    panel.SetParagraphs(ReadRichText(bytes));
}

}  // namespace zenvora::records

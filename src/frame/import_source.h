#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/session.h"
#include "import/load_outcome.h"
#include "platform/fault.h"

namespace zenvora::frame {

/// A source file on its way into a new Databook. Paths are text paths.
struct SourceImport {
    std::string source;  ///< its extension decides how it is read: CSV, TXT or XML
    std::string map;     ///< empty: the desktop is asked for one
    std::string target;  ///< the Databook to make; what is there is replaced and kept as NAME.bak
};

/// Imports without a dialog. The Databook is made under another name beside its target and takes the target's
/// place when all rows were sent: after a fault the target is as it was. Rows that were refused are in the
/// outcome. Faults: those of the source and its map (with file and line), of the template, of writing.
importing::LoadOutcome ImportUnattended(common::Session& session, const SourceImport& import);

/// The same with the wizard on the screen, where the user makes the map. What was loaded when the wizard
/// closes becomes the Databook.
importing::LoadOutcome ImportShown(common::Session& session, const SourceImport& import);

/// Tells the user which rows were refused and why, as far as a message holds them. Blank rows are no trouble.
/// Nothing when all were written.
void TellRefusedRows(common::Session& session, const std::string& source,
                     const importing::LoadOutcome& outcome);

/// A new Databook on its way: made from the template under another name beside its target.
class NewDatabook {
  public:
    /// Faults: 53 (no template), 57, 61, 75, 76.
    NewDatabook(common::Session& session, const std::string& target);
    ~NewDatabook();
    NewDatabook(const NewDatabook&) = delete;
    NewDatabook& operator=(const NewDatabook&) = delete;

    /// Host path of the file in the making.
    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return path_; }
    /// Lets a fault speak of the target, the name that the user knows.
    void NameTarget(Fault& fault) const;
    /// Puts it in the place of the target. Faults: as databook::CopyNewData; the target is then as it was.
    void Finish();

  private:
    common::Session& session_;
    std::filesystem::path target_;
    std::filesystem::path path_;
};

/// Name of the template for new Databooks, in the application directory; and its host path. Fault 76: the
/// settings name a drive that does not exist.
inline constexpr std::string_view kTemplateName = "newdata.mdb";
[[nodiscard]] std::filesystem::path TemplatePath(const common::Session& session);

}  // namespace zenvora::frame

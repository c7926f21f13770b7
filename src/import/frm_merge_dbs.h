#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "analysis/comps_grid.h"
#include "common/session.h"
#include "import/merge.h"
#include "platform/ado/adodc.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/desktop.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/grid.h"
#include "platform/controls/label.h"
#include "platform/controls/option_button.h"
#include "platform/controls/text_box.h"

namespace zenvora::importing {

/// "Merge Databook(s)": copies the records of one or two Databooks into a third one. Everything that there is
/// three of has index 0 for Source 1, 1 for Source 2 and 2 for the destination.
///
/// Paths are text paths. A Databook is connected as soon as its path is chosen, or typed and left; an old one
/// is brought up to date then, a destination that is missing is made. Faults of the store pass through.
class frmMergeDBs final : public controls::Form {
  public:
    static constexpr int kDestination = 2;

    /// `openDatabook` is the main form's control of the open Databook: its folder is offered first, and the
    /// address lines of old Databooks are completed through it. `newData` is the template.
    frmMergeDBs(common::Session& session, ado::Adodc& openDatabook, std::filesystem::path newData);

    controls::Frame fraSource1{"fraSource1"};
    controls::Frame fraSource2{"fraSource2"};
    controls::Frame fraDestination{"fraDestination"};
    controls::ControlArray<controls::TextBox> txtFilename{"txtFilename", 3};
    controls::ControlArray<controls::CommandButton> cmdFileDialog{"cmdFileDialog", 3};
    controls::ControlArray<controls::Grid> tdbgData{"tdbgData", 3};
    controls::Frame fraCopy1{"fraCopy1"};
    controls::ControlArray<controls::OptionButton> optSource1{"optSource1",
                                                              2};  ///< shown, and read by nothing
    controls::Frame fraCopy2{"fraCopy2"};
    controls::ControlArray<controls::OptionButton> optSource2{"optSource2", 2};  ///< likewise
    controls::Frame fraOverwrite{"fraOverwrite"};
    controls::ControlArray<controls::OptionButton> optOverwrite{"optOverwrite", 3};
    controls::CommandButton cmdRefreshGrids{"cmdRefreshGrids"};
    controls::CommandButton cmdCopy{"cmdCopy"};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::Label lblResult{"lblResult"};  ///< what became of the records of the last merge
    controls::FileDialog cdgChooseFile;

    /// The records that a grid shows, and those that the merge reads and writes.
    [[nodiscard]] ado::Adodc& adoDatabook(int index) { return books_[static_cast<std::size_t>(index)].grid; }
    [[nodiscard]] ado::Adodc& adoSQL(int index) { return books_[static_cast<std::size_t>(index)].records; }

    /// The paths of the Databooks that were merged into since the form was loaded.
    [[nodiscard]] const std::vector<std::string>& MergedInto() const noexcept { return mergedInto_; }

    /// The path of a Databook was typed; also done by itself when its box is left.
    void PathTyped(int index);

  protected:
    void OnLoad() override;
    void OnQueryUnload(bool& cancel) override;
    void OnUnload() override;

  private:
    struct Book {
        Book(common::Session& session, const ado::PathMapper& mapper)
            : grid(session.databooks, session.clock, mapper),
              records(session.databooks, session.clock, mapper) {}
        ado::Adodc grid;
        ado::Adodc records;
        analysis::CompsGridRows rows{grid};
        std::string remembered;  ///< the path as the box got the focus
        std::string taken;       ///< the path that the box was last connected by
    };

    void LayOut();
    void SetRules();
    void ChooseFileOf(int index);
    [[nodiscard]] std::string AskForFile(int index);
    void Connect(int index);
    void ConnectGrid(int index);
    void Disconnect(int index);
    void ShowGrid(int index);
    void EnableCopy();
    void RefreshGrids();
    void MergeAll();
    [[nodiscard]] ExistingRecords Existing() const;
    [[nodiscard]] bool FileIsThere(const std::string& path) const;
    [[nodiscard]] Book& At(int index) { return books_[static_cast<std::size_t>(index)]; }

    common::Session& session_;
    ado::Adodc& openDatabook_;
    std::filesystem::path newData_;
    std::array<Book, 3> books_;
    std::vector<std::string> mergedInto_;
};

}  // namespace zenvora::importing

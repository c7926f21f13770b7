#pragma once

#include <string>

#include "common/session.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/list_box.h"
#include "platform/controls/text_box.h"

namespace zenvora::frame {

/// "Select A Path", the folder picker. The folder chosen is left in txtFilename when the dialog is hidden;
/// Cancel and the close box leave it empty.
class frmPath final : public controls::Form {
  public:
    explicit frmPath(common::Session& session);

    controls::Label Label1{"Label1"};         ///< "Drives"
    controls::ComboBox drvDrive{"drvDrive"};  ///< "C:" the program's own, "Z:" this computer; picked only
    controls::Label Label2{"Label2"};         ///< "Paths"
    /// The way to the folder shown, a line each, and below it the folders in it, each step further indented.
    /// A double click or Enter goes to the folder of its line.
    controls::ListBox dirPath{"dirPath"};
    controls::TextBox txtFilename{"txtFilename"};  ///< the chosen folder
    controls::CommandButton cmdOk{"cmdOk"};
    controls::CommandButton cmdCancel{"cmdCancel"};  ///< "Cancel"

    /// What the "..." buttons do before they show the dialog: the drive of a folder, and its text. A drive
    /// that is not there is told.
    void StartFrom(const std::string& folder);
    /// Text path of the folder that dirPath shows, "C:\ZVR".
    [[nodiscard]] const std::string& Path() const noexcept { return path_; }

  protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnHelp() override;

  private:
    void DriveChanged();
    /// Shows a folder in dirPath; a real change runs the rule of the path, which fills txtFilename.
    void SetPath(std::string path);
    void ListFolders();

    common::Session& session_;
    std::string drive_;  ///< the last one that could be gone to
    std::string path_;
    std::vector<std::string> places_;  ///< text path of each line of dirPath
};

}  // namespace zenvora::frame

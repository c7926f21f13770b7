#pragma once

#include <string>

namespace zenvora::frame {

/// What steers the opening of a Databook. The start dialog and the question about overwriting write their
/// answers here.
struct OpenState {
    static constexpr int kGoOn = 1;
    static constexpr int kAskAgain = 2;
    static constexpr int kEndProgram = 3;
    static constexpr int kNotAnswered = -1;

    /// Set by the "Go!" button alone. Without it the start is not finished and the program closes.
    bool DatabookChosen = false;
    std::string OpenChoice;   ///< "C" choose a file, "N" blank datafile, "D" default or last opened
    int OpenMode = 0;         ///< 1 for "C", 2 for "N", 0 for anything else
    int OverwriteChoice = 0;  ///< 0 and 1 go on, 2 ask again, 3 end the program; -1 while the dialog is open
    bool DetailedView = false;  ///< a source file opens the import wizard instead of its map
};

}  // namespace zenvora::frame

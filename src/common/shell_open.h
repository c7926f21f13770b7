#pragma once

#include <string>
#include <string_view>

#include "common/session.h"

/// Documents and programs opened through the desktop, and the program's help.
namespace zenvora::common {

/// What an answer of shell::Shell::Open from 0 to 32 means.
struct ShellFailure {
    int number = 0;  ///< fault number of the old platform
    std::string_view text;
};
[[nodiscard]] ShellFailure ShellFailureOf(int answer);

/// Opens a file, given by its text path, with the program of its kind, or starts it. With parameters or a
/// directory a name with ".EXE" in it starts hidden; with neither the window is a normal one, whatever
/// `showCommand` says. False after a failure, which the user has been told. Faults: none.
bool ShellOpen(Session& session, std::string_view file, int showCommand = 1, std::string_view parameters = {},
               std::string_view directory = {}, std::string_view verb = "open");

/// Opens ZVR.CHM of the application directory; where no reader for such files is installed, or where the file
/// is the note that stands for it, the HTML edition beside it, at the page `topic` ("config") when that is
/// there. A missing file is told to the user. Faults: none.
bool OpenHelp(Session& session, std::string_view topic = {});
/// The same for the start dialog: without the file nothing happens. Faults: as FileExists.
void OpenHelpIfThere(Session& session);

}  // namespace zenvora::common

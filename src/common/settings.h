#pragma once

#include <string>

namespace zenvora::common {

/// The settings that the program runs with, as ReadGlobals fills them at its start. Paths are text paths with
/// drive letters. They do not follow later changes of the settings file.
struct Settings {
    std::string windowsDirectory;      ///< with its backslash: "C:\WINDOWS\"
    std::string systemDirectory;       ///< as the system gives it: "C:\WINDOWS\SYSTEM32"
    std::string drive;                 ///< "C:"
    std::string appraiseDirectory;     ///< "\Appraise"
    std::string settingsFile;          ///< path of ZVR.INI
    std::string applicationDirectory;  ///< APPDIR: the template, help and help texts
    std::string dataDirectory;         ///< DATADIR
    std::string userDirectory;         ///< USERDIR
    std::string dataFile;              ///< DATAFILE: name without directory
    std::string filePathChoice;        ///< MDBFILEPATH: "1" always starts from the data directory
    std::string splash1;               ///< SPLASH1; nothing looks at it: the start dialog always appears
    std::string splash2;               ///< SPLASH2, as SPLASH1
    std::string launchChoice;          ///< LAUNCHKRN: "0" asks whether to launch KRN
    bool addZeroes = true;             ///< ADDZEROES: three zeroes behind prices below 1,000
    bool notice500 = true;             ///< 500REC: the notice about large Databooks
    std::string companyName;
    std::string programAlias;
    std::string currentDirectory;  ///< of the Databook in use, or of the one to offer first
    std::string currentFile;
};

}  // namespace zenvora::common

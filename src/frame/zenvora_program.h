#pragma once

#include <exception>
#include <filesystem>

#include "common/session.h"
#include "frame/frm_main.h"

namespace zenvora::frame {

/// What the desktop program stands on, made in app/.
struct ProgramParts {
    controls::Desktop& desktop;
    const shell::Clock& clock;
    ado::DatabasePool& databooks;
    shell::Shell& machine;
    files::DriveMap drives;
    /// The files that are installed with the program, which are put on C: at the start; empty: C: is left as
    /// it is.
    std::filesystem::path share{};
    MainServices services{};
};

/// The desktop program without its screen: the session, the main window, and what becomes of faults that
/// nobody handles.
class ZenvoraProgram {
  public:
    explicit ZenvoraProgram(ProgramParts parts);
    ~ZenvoraProgram();
    ZenvoraProgram(const ZenvoraProgram&) = delete;
    ZenvoraProgram& operator=(const ZenvoraProgram&) = delete;

    [[nodiscard]] common::Session& Session() noexcept { return session_; }
    [[nodiscard]] frmMain& Main() noexcept { return main_; }

    /// The whole start, the start dialog and the opening of a Databook included. True when the main window
    /// has come up, and the loop of the screen is to run; false when the program has ended already. Faults:
    /// none, they were told.
    bool Start();
    /// Status of the process once the loop has returned: 0 the user ended the program, 1 a fault did.
    [[nodiscard]] int ExitStatus() const;

  private:
    bool OnFault(const std::exception_ptr& failure);

    ado::DatabasePool& databooks_;
    std::filesystem::path share_;
    common::Session session_;
    frmMain main_;
};

}  // namespace zenvora::frame

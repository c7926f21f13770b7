#pragma once

#include <istream>
#include <ostream>

namespace zenvora::cli {

/// The three streams of a run, handed in so that tests put buffers in their place. Results go to `out`, all
/// else to `err`.
struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

/// What the program tells its caller.
enum class Exit : int {
    Done = 0,
    SomethingRefused = 1,  ///< done, but something was refused or not found
    BadCommandLine = 2,
    FileTrouble = 3,  ///< a file cannot be opened, read or written, or is no Databook
    NoPeer = 4,       ///< the appraisal program cannot be reached
};

}  // namespace zenvora::cli

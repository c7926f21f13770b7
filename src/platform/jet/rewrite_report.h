#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/jet/copy_database.h"

namespace zenvora::jet {

/// What became of a database that was rewritten in its place.
struct RewriteReport {
    std::filesystem::path backup;  ///< where the original is now
    std::uint64_t bytesBefore = 0, bytesAfter = 0;
    CopyReport contents;
};

}  // namespace zenvora::jet

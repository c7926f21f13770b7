#pragma once

#include <filesystem>

#include "common/session.h"
#include "platform/text/date.h"

/// The template Databook NEWDATA.MDB, and the Databooks that are made from it.
namespace zenvora::databook {

/// Makes an empty Databook: the table COMPS with every column of the program, its key and its defaults. `now`
/// becomes the creation date of its objects; the same date gives the same bytes. Faults: 58 (exists), 61, 75,
/// 76; no half-made file stays behind.
void CreateTemplate(const std::filesystem::path& path, text::Date now);

/// Puts a copy of the template in the place of `destination`, without asking. What was there is kept beside
/// it as NAME.bak; an empty file is not worth keeping. A crash leaves the old file or the new one. Data
/// controls of the program that stand on the old file keep what they have read, and meet the new one when
/// they are refreshed. Faults: 53 (no template, or an empty one), 57, 61, 75, 76, 3045 (another program has
/// the destination open for writing); the old file is then as it was.
void CopyNewData(common::Session& session, const std::filesystem::path& newData,
                 const std::filesystem::path& destination);

}  // namespace zenvora::databook

#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "common/session.h"
#include "platform/ado/adodc.h"

namespace zenvora::cli {

enum class Access { Read, Write };

/// The Databook at a host path behind a data control: COMPS with the main field list, in key order.
/// A file without the table COMPS, or with a COMPS that lacks one of those columns, is a Failure with
/// FileTrouble; the rest are the faults of the store.
[[nodiscard]] std::unique_ptr<ado::Adodc> OpenDatabook(common::Session& session, const std::string& path,
                                                       Access access);

/// A data control for any statement on the file.
[[nodiscard]] std::unique_ptr<ado::Adodc> ControlOf(common::Session& session, const std::string& path,
                                                    Access access);

/// Maps every data source to this path: a host path goes to the store as it is, whatever characters it holds.
[[nodiscard]] ado::PathMapper AlwaysTo(const std::string& path);
/// A connection string to go with AlwaysTo.
[[nodiscard]] std::string ConnectionText(Access access);

/// The path as the file system takes it; the user's text is UTF-8.
[[nodiscard]] std::filesystem::path HostPath(const std::string& path);

}  // namespace zenvora::cli

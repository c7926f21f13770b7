#include "platform/ado/detail/source_path.h"

#include "platform/fault.h"

namespace zenvora::ado::detail {

std::filesystem::path SourcePath(const ConnectionString& connection, const PathMapper& mapper) {
    const std::string& source = connection.dataSource;
    if (source.empty())
        throw Fault{fault::kFileNotFound, "The connection names no Databook (its Data Source)."};
    return mapper ? mapper(source) : std::filesystem::path(std::u8string(source.begin(), source.end()));
}

}  // namespace zenvora::ado::detail

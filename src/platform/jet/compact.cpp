#include "platform/jet/compact.h"

#include <algorithm>

#include "platform/fault.h"
#include "platform/jet/detail/rewrite_file.h"

namespace zenvora::jet {

namespace {
Place At(const std::filesystem::path& path) {
    Place place;
    place.file = path.string();
    return place;
}
}  // namespace

RewriteReport Compact(const std::filesystem::path& path, text::Date now, files::HostDisk& disk) {
    const std::filesystem::path target = detail::BehindLink(path);
    // Open for writing to the end: nobody else changes the file meanwhile.
    const auto source = Database::Open(target, Database::Access::ReadWrite, disk);
    if (const std::vector<std::string> objects = ObjectsNotCarried(*source); !objects.empty()) {
        constexpr std::size_t kNamed = 5;
        std::string names;
        for (std::size_t i = 0; i < std::min(objects.size(), kNamed); ++i)
            names += (i == 0 ? "" : ", ") + objects[i];
        if (objects.size() > kNamed) names += " and " + std::to_string(objects.size() - kNamed) + " more";
        throw Fault{fault::kUnsupported,
                    "the file holds what would be lost here (" + names +
                        "): compact it in Access, or remove these objects there first. Nothing was changed",
                    At(path)};
    }
    return detail::Rewrite(*source, target, now, disk);
}

}  // namespace zenvora::jet

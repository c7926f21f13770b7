#include "platform/files/host_identity.h"

#include <pwd.h>
#include <unistd.h>

namespace zenvora::files {

std::string ComputerName() {
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0 || name[0] == '\0') return "?";
    return name;
}

std::string UserName() {
    const struct passwd* const entry = ::getpwuid(::getuid());
    return entry != nullptr && entry->pw_name != nullptr && *entry->pw_name != '\0' ? entry->pw_name : "?";
}

}  // namespace zenvora::files

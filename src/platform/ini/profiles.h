#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "platform/files/host_file.h"
#include "platform/ini/document.h"

namespace zenvora::ini {

/// The settings files of a program, by host path. Every access looks at the file's bytes, so that what
/// another program has written is seen; they are taken apart anew only when they differ from the last time.
class Profiles {
  public:
    explicit Profiles(files::HostDisk& disk = files::SystemDisk()) : disk_(&disk) {}

    /// The file as it stands now; one that is not there or cannot be read is empty. Stays good until the next
    /// call. Faults: none.
    [[nodiscard]] const Document& Look(const std::filesystem::path& path);

    /// Changes the file by `change`, which says whether it has changed anything, and then writes it: wholly
    /// or not at all. A file that is not there is made, its folder is not. Nothing is written over a file
    /// that cannot be read. False when what `change` did is not stored. Faults: what `change` raises.
    bool Change(const std::filesystem::path& path, const std::function<bool(Document&)>& change);

  private:
    struct Known {
        std::string bytes;
        Document document;
    };
    Known& Read(const std::filesystem::path& path);

    files::HostDisk* disk_;
    std::map<std::filesystem::path, Known> known_;
};

}  // namespace zenvora::ini

#pragma once

#include <filesystem>
#include <memory>

#include "platform/files/host_file.h"
#include "platform/jet/database.h"

namespace zenvora::ado {

namespace detail {
class OpenFile;
}

/// Keeps one jet::Database per open file, so that several connections and data controls of one program share
/// it (its cache, its transactions, its tables). A file is closed when its last user lets go.
class DatabasePool {
  public:
    explicit DatabasePool(files::HostDisk& disk = files::SystemDisk());
    ~DatabasePool();

    /// The open database of a file. One that is open for reading only is opened anew when writing is asked
    /// for. Faults: as jet::Database::Open.
    [[nodiscard]] std::shared_ptr<jet::Database> Open(const std::filesystem::path& path,
                                                      jet::Database::Access access);

    /// To be called when another file has taken the place of this one: closes the old file, so that the next
    /// Open opens the new one. Recordsets of the old file keep what they have read, but fault (91) when they
    /// are to change it or to read a Memo; a batch of changes is given up. Who got the old file from Open
    /// must let go of it first.
    void Forget(const std::filesystem::path& path);

    /// Open, for this folder alone.
    [[nodiscard]] std::shared_ptr<detail::OpenFile> OpenShared(const std::filesystem::path& path,
                                                               jet::Database::Access access);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zenvora::ado

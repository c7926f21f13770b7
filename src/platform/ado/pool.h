#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

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

    /// Who hears, once for each opening, what the user must know about it: that an unfinished change was
    /// undone, or that the Databook is write-protected.
    using Listener = std::function<void(const std::filesystem::path& path, const std::string& notice)>;
    void SetListener(Listener listener);

    /// The open database of a file. One that is open for reading only is opened anew when writing is asked
    /// for. A write-protected file, or one in a write-protected folder, is opened for reading in spite of it,
    /// and the listener hears of it; its records then refuse every change (3027).
    /// Faults: as jet::Database::Open.
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
    [[nodiscard]] std::unique_ptr<jet::Database> OpenFile(const std::filesystem::path& path,
                                                          jet::Database::Access access);
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zenvora::ado

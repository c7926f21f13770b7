#include "platform/ado/pool.h"

#include <map>
#include <system_error>

#include "platform/ado/detail/open_file.h"
#include "platform/fault.h"

namespace zenvora::ado {
namespace {

/// One name for a file, by whatever road it was named.
std::filesystem::path Identity(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path canonical = std::filesystem::weakly_canonical(path, error);
    return error ? path.lexically_normal() : canonical;
}

}  // namespace

struct DatabasePool::State {
    files::HostDisk& disk;
    Listener listener;
    std::map<std::filesystem::path, std::weak_ptr<detail::OpenFile>> files;
};

DatabasePool::DatabasePool(files::HostDisk& disk) : state_(new State{disk, {}, {}}) {}
DatabasePool::~DatabasePool() = default;

void DatabasePool::SetListener(Listener listener) {
    state_->listener = std::move(listener);
}

std::unique_ptr<jet::Database> DatabasePool::OpenFile(const std::filesystem::path& path,
                                                      jet::Database::Access access) {
    const auto tell = [&](const std::string& notice) {
        if (state_->listener && !notice.empty()) state_->listener(path, notice);
    };
    try {
        auto database = jet::Database::Open(path, access, state_->disk);
        tell(database->Notice());
        return database;
    } catch (const Fault& fault) {
        const bool writeProtected =
            fault.number == fault::kPathAccess || fault.number == fault::kPermissionDenied;
        if (access == jet::Database::Access::ReadOnly || !writeProtected) throw;
    }
    auto database = jet::Database::Open(path, jet::Database::Access::ReadOnly, state_->disk);
    tell(database->Notice());
    tell("the Databook or its folder is write-protected: it was opened for reading only");
    return database;
}

std::shared_ptr<detail::OpenFile> DatabasePool::OpenShared(const std::filesystem::path& path,
                                                           jet::Database::Access access) {
    const std::filesystem::path identity = Identity(path);
    const auto known = state_->files.find(identity);
    if (known != state_->files.end()) {
        std::shared_ptr<detail::OpenFile> file = known->second.lock();
        const bool suits = access == jet::Database::Access::ReadOnly ||
                           (file && (!file->Database().IsReadOnly() || file->WriteProtected()));
        if (file && suits) return file;
    }
    std::erase_if(state_->files, [](const auto& entry) { return entry.second.expired(); });
    // Under the name it was given: that is the one the user knows from a fault's message.
    auto database = OpenFile(path, access);
    const bool writeProtected = access == jet::Database::Access::ReadWrite && database->IsReadOnly();
    auto file = std::make_shared<detail::OpenFile>(std::move(database), writeProtected);
    state_->files[identity] = file;
    return file;
}

std::shared_ptr<jet::Database> DatabasePool::Open(const std::filesystem::path& path,
                                                  jet::Database::Access access) {
    // The pointer keeps the file in the pool, too: whoever comes next must share it.
    struct Use {
        std::shared_ptr<detail::OpenFile> file;
        std::shared_ptr<jet::Database> database;
    };
    const std::shared_ptr<detail::OpenFile> file = OpenShared(path, access);
    const auto use = std::make_shared<Use>(Use{file, file->Share()});
    return {use, use->database.get()};
}

void DatabasePool::Forget(const std::filesystem::path& path) {
    const auto known = state_->files.find(Identity(path));
    if (known == state_->files.end()) return;
    if (const std::shared_ptr<detail::OpenFile> file = known->second.lock()) file->Close();
    state_->files.erase(known);
}

}  // namespace zenvora::ado

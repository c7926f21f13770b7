#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "platform/jet/database.h"

namespace zenvora::ado::detail {

/// One open Databook with what its users share: transactions do not nest, so that batches of several users
/// are one.
class OpenFile {
  public:
    explicit OpenFile(std::shared_ptr<jet::Database> database, bool writeProtected = false)
        : database_(std::move(database)), writeProtected_(writeProtected) {}

    /// True when it was to be opened for writing and could only be read.
    [[nodiscard]] bool WriteProtected() const noexcept { return writeProtected_; }

    /// Fault 91: the file was closed.
    [[nodiscard]] jet::Database& Database() const { return *Share(); }
    [[nodiscard]] const std::shared_ptr<jet::Database>& Share() const;

    /// Closes the file under its users, because another one has taken its place: a writer that went on would
    /// write into a file without a name. What was not committed is given up. Users keep what they have read.
    void Close();

    /// Batches nest. The first one begins a transaction (unless somebody has begun one), the last one commits
    /// it.
    void BeginBatch();
    void EndBatch();

    /// To be called after each change of rows or of the schema: counts it, and commits a batch that is a
    /// second old.
    void RowsChanged();
    void SchemaChanged();

    /// Tells a user whether others have changed rows since it looked.
    [[nodiscard]] std::uint64_t RowChanges() const noexcept { return rowChanges_; }
    [[nodiscard]] std::uint64_t SchemaChanges() const noexcept { return schemaChanges_; }

  private:
    void Commit();

    std::shared_ptr<jet::Database> database_;
    bool writeProtected_;
    int batches_ = 0;
    bool ownTransaction_ = false;
    // Real time passed, not a date: the wish is that a power cut loses no more than a second's work.
    std::chrono::steady_clock::time_point begun_;
    std::uint64_t rowChanges_ = 0;
    std::uint64_t schemaChanges_ = 0;
};

/// One user's batches in an OpenFile; those that are still open are ended when the user goes away.
class BatchUser {
  public:
    explicit BatchUser(std::shared_ptr<OpenFile> file) : file_(std::move(file)) {}
    ~BatchUser();
    BatchUser(const BatchUser&) = delete;
    BatchUser& operator=(const BatchUser&) = delete;

    [[nodiscard]] OpenFile& File() const noexcept { return *file_; }
    void Begin();
    /// Fault 5: no batch is open.
    void End();
    void EndAll();

  private:
    std::shared_ptr<OpenFile> file_;
    int open_ = 0;
};

}  // namespace zenvora::ado::detail

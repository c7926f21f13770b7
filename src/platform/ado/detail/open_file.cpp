#include "platform/ado/detail/open_file.h"

#include "platform/fault.h"

namespace zenvora::ado::detail {
namespace {

constexpr std::chrono::seconds kLongestBatch{1};

}  // namespace

const std::shared_ptr<jet::Database>& OpenFile::Share() const {
    if (database_) return database_;
    throw Fault{fault::kObjectNotSet,
                "Another file has taken the place of the Databook that these records came from: select them "
                "again."};
}

void OpenFile::Close() {
    if (!database_) return;
    if (ownTransaction_) database_->Rollback();
    ownTransaction_ = false;
    database_.reset();
}

void OpenFile::BeginBatch() {
    if (batches_ == 0 && !Database().InTransaction()) {
        database_->Begin();
        ownTransaction_ = true;
        begun_ = std::chrono::steady_clock::now();
    }
    ++batches_;
}

void OpenFile::EndBatch() {
    if (--batches_ > 0 || !ownTransaction_) return;
    ownTransaction_ = false;
    Commit();
}

void OpenFile::RowsChanged() {
    ++rowChanges_;
    if (!ownTransaction_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - begun_ < kLongestBatch) return;
    ownTransaction_ = false;
    Commit();
    database_->Begin();
    ownTransaction_ = true;
    begun_ = now;
}

void OpenFile::SchemaChanged() {
    ++schemaChanges_;
    RowsChanged();
}

void OpenFile::Commit() {
    try {
        database_->Commit();
    } catch (...) {
        // What could not be made durable is taken back, so that the pages at hand agree with the file again.
        if (database_->InTransaction()) database_->Rollback();
        throw;
    }
}

BatchUser::~BatchUser() {
    try {
        EndAll();
    } catch (const Fault&) {
        // Nobody is left to tell. A user that wants to know ends its batches itself.
        open_ = 0;
    }
}

void BatchUser::Begin() {
    file_->BeginBatch();
    ++open_;
}

void BatchUser::End() {
    if (open_ == 0) throw Fault{fault::kInvalidCall, "A batch of changes was ended that had not begun."};
    --open_;
    file_->EndBatch();
}

void BatchUser::EndAll() {
    while (open_ > 0)
        End();
}

}  // namespace zenvora::ado::detail

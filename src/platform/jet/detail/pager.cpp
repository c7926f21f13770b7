#include "platform/jet/detail/pager.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kMaxReadAhead = 64;
constexpr PageNumber kMostSteppedOver = 8;
constexpr std::size_t kWriteRun = 256;
}  // namespace

Pager::Pager(std::shared_ptr<files::HostFile> file, std::filesystem::path path, const Layout& layout,
             bool readOnly)
    : file_(std::move(file)),
      path_(std::move(path)),
      layout_(layout),
      pageSize_(layout.pageSize),
      readOnly_(readOnly) {
    // A last page that is cut off is left out; whether that is acceptable the opener decides.
    storedCount_ = pageCount_ = static_cast<PageNumber>(file_->Size() / pageSize_);
    frames_.resize(pageCount_);
    stamp_ = file_->Stamp();
}

void Pager::SetJournal(std::unique_ptr<Journal> journal, std::unique_ptr<WriterGuard> guard) {
    journal_ = std::move(journal);
    guard_ = std::move(guard);
}

void Pager::SetOverlay(const Journal::OldPages& old) {
    DropAll();
    pageCount_ = storedCount_ = old.pageCount;
    frames_.resize(std::max<std::size_t>(frames_.size(), pageCount_));
    for (const auto& [page, image] : old.images) {
        if (page >= pageCount_ || image.size() != pageSize_) continue;
        Frame& frame = NewFrame(page);
        std::memcpy(frame.bytes.get(), image.data(), pageSize_);
        frame.dirty = true;  // never to be let go; a file for reading is never committed
    }
    overlaid_ = true;
}

void Pager::DropAll() {
    for (std::size_t page = 0; page < frames_.size(); ++page)
        Drop(static_cast<PageNumber>(page));
}

bool Pager::Refresh() {
    if (overlaid_) return false;
    // While somebody writes, two commits can bear the same time: then nothing that is cached is trusted.
    const files::FileStamp now = file_->Stamp();
    if (now == stamp_ && !HasWriter(*file_)) return false;
    stamp_ = now;
    DropAll();
    storedCount_ = pageCount_ = static_cast<PageNumber>(now.size / pageSize_);
    frames_.resize(std::max<std::size_t>(frames_.size(), pageCount_));
    return true;
}

Fault Pager::Damaged(PageNumber page, const std::string& what) const {
    Place place;
    place.file = path_.string();
    place.page = page;
    return {fault::kDamaged,
            "page " + std::to_string(page) + ": " + what +
                ". Nothing was changed. Go on with a backup copy, or save what can be read of it "
                "(zenvora-cli repair)",
            place};
}

Pager::Frame& Pager::NewFrame(PageNumber page) {
    Frame* frame = nullptr;
    if (unused_.empty()) {
        frame = &pool_.emplace_back();
        frame->bytes = std::make_unique<std::byte[]>(pageSize_);
    } else {
        frame = unused_.back();
        unused_.pop_back();
    }
    frame->page = page;
    frame->dirty = false;
    frame->used = true;
    frame->statement = 0;
    if (frames_.size() <= page) frames_.resize(std::max<std::size_t>(page + 1, frames_.size() * 2));
    frames_[page] = frame;
    ++cached_;
    return *frame;
}

void Pager::Drop(PageNumber page) {
    Frame*& frame = frames_[page];
    if (frame == nullptr) return;
    unused_.push_back(frame);
    frame = nullptr;
    --cached_;
}

Pager::Frame* Pager::Load(PageNumber page) {
    if (page >= pageCount_) throw Damaged(page, "something in the file points behind its end");
    if (Frame* frame = frames_[page]) {
        frame->used = true;
        return frame;
    }
    // Scans walk the file forward: read in growing strides while they do. Pages of indexes lie between those
    // of rows, and are stepped over.
    const bool forward = page >= nextExpected_ && page - nextExpected_ <= kMostSteppedOver;
    readAhead_ = forward ? std::min(readAhead_ * 2, kMaxReadAhead) : 1;
    std::size_t count = 1;
    while (count < readAhead_ && page + count < storedCount_ && frames_[page + count] == nullptr)
        ++count;
    nextExpected_ = static_cast<PageNumber>(page + count);
    if (count == 1) {
        Frame& frame = NewFrame(page);
        try {
            file_->ReadAt(static_cast<std::uint64_t>(page) * pageSize_, {frame.bytes.get(), pageSize_});
        } catch (...) {
            Drop(page);
            throw;
        }
        return &frame;
    }
    transfer_.resize(std::max(transfer_.size(), count * pageSize_));
    file_->ReadAt(static_cast<std::uint64_t>(page) * pageSize_, {transfer_.data(), count * pageSize_});
    for (std::size_t i = 0; i < count; ++i) {
        Frame& frame = NewFrame(static_cast<PageNumber>(page + i));
        std::memcpy(frame.bytes.get(), transfer_.data() + i * pageSize_, pageSize_);
    }
    return frames_[page];
}

const std::byte* Pager::Read(PageNumber page) {
    return Load(page)->bytes.get();
}

std::byte* Pager::Write(PageNumber page) {
    if (readOnly_) {
        throw Fault{fault::kReadOnly, "the Databook is open for reading only: nothing was changed",
                    Place{path_.string()}};
    }
    if (broken_) {
        throw Fault{fault::kDeviceIo,
                    "the last change of the Databook failed half way: close it and open it again, which "
                    "brings it back "
                    "to the state before",
                    Place{path_.string()}};
    }
    Frame* frame = Load(page);
    if (inStatement_ && frame->statement != statement_) {
        frame->statement = statement_;
        if (savedCount_ == saved_.size()) saved_.emplace_back();
        Saved& saved = saved_[savedCount_++];
        saved.page = page;
        saved.wasDirty = frame->dirty;
        if (frame->dirty) {
            if (!saved.image) saved.image = std::make_unique<std::byte[]>(pageSize_);
            std::memcpy(saved.image.get(), frame->bytes.get(), pageSize_);
        }
    }
    if (!frame->dirty) {
        frame->dirty = true;
        dirty_.push_back(page);
    }
    return frame->bytes.get();
}

PageNumber Pager::Append() {
    if ((static_cast<std::uint64_t>(pageCount_) + 1) * pageSize_ > kMaxFileBytes) {
        throw Fault{
            fault::kUnsupported,
            "the Databook has reached the 2 GB that the file format allows: compact it or start a new one",
            Place{path_.string()}};
    }
    const PageNumber page = pageCount_++;
    Frame& frame = NewFrame(page);
    std::memset(frame.bytes.get(), 0, pageSize_);
    frame.dirty = true;
    frame.statement = statement_;  // undone by shortening the file
    dirty_.push_back(page);
    return page;
}

void Pager::Begin() {
    inTransaction_ = true;
}

void Pager::Commit() {
    std::sort(dirty_.begin(), dirty_.end());
    dirty_.erase(std::unique(dirty_.begin(), dirty_.end()), dirty_.end());
    if (dirty_.empty()) {
        inTransaction_ = false;
        return;
    }
    const CommitLock alone(*file_, path_, files::LockKind::Exclusive);
    const auto firstNew = std::lower_bound(dirty_.begin(), dirty_.end(), storedCount_);
    if (journal_) {
        journal_->Begin(*file_, pageSize_, storedCount_, pageCount_,
                        static_cast<std::size_t>(firstNew - dirty_.begin()));
        std::vector<std::byte> old(pageSize_);
        for (auto page = dirty_.begin(); page != firstNew; ++page) {
            file_->ReadAt(static_cast<std::uint64_t>(*page) * pageSize_, old);
            journal_->Add(*page, old, {frames_[*page]->bytes.get(), pageSize_});
        }
        journal_->Seal();
    }
    try {
        WriteDirtyPages();
        if (journal_) journal_->Clear();
    } catch (const Fault&) {
        if (journal_) {
            try {
                journal_->Undo(*file_);
            } catch (const Fault&) {
                broken_ = true;
            }
        }
        throw;
    }
    for (PageNumber page : dirty_)
        frames_[page]->dirty = false;
    dirty_.clear();
    storedCount_ = pageCount_;
    stamp_ = file_->Stamp();
    inTransaction_ = false;
}

void Pager::WriteDirtyPages() {
    // In page order and in runs: the fewest and longest writes.
    for (std::size_t i = 0; i < dirty_.size();) {
        std::size_t run = 1;
        while (i + run < dirty_.size() && run < kWriteRun && dirty_[i + run] == dirty_[i] + run)
            ++run;
        transfer_.resize(std::max(transfer_.size(), run * pageSize_));
        for (std::size_t k = 0; k < run; ++k) {
            std::memcpy(transfer_.data() + k * pageSize_, frames_[dirty_[i + k]]->bytes.get(), pageSize_);
        }
        file_->WriteAt(static_cast<std::uint64_t>(dirty_[i]) * pageSize_,
                       {transfer_.data(), run * pageSize_});
        i += run;
    }
    file_->Sync();
}

void Pager::Rollback() {
    for (PageNumber page : dirty_) {
        if (page < frames_.size()) Drop(page);
    }
    dirty_.clear();
    pageCount_ = storedCount_;
    inTransaction_ = false;
    inStatement_ = false;
    savedCount_ = 0;
}

void Pager::BeginStatement() {
    ++statement_;
    inStatement_ = true;
    savedCount_ = 0;
    statementCount_ = pageCount_;
}

void Pager::EndStatement() noexcept {
    inStatement_ = false;
}

void Pager::UndoStatement() {
    std::vector<PageNumber> clean;
    for (std::size_t i = 0; i < savedCount_; ++i) {
        const Saved& saved = saved_[i];
        if (saved.wasDirty) {
            std::memcpy(frames_[saved.page]->bytes.get(), saved.image.get(), pageSize_);
        } else {
            clean.push_back(saved.page);
        }
    }
    for (PageNumber page = statementCount_; page < pageCount_; ++page)
        clean.push_back(page);
    for (PageNumber page : clean)
        Drop(page);
    std::erase_if(dirty_, [&](PageNumber page) { return frames_[page] == nullptr; });
    pageCount_ = statementCount_;
    savedCount_ = 0;
    inStatement_ = false;
}

void Pager::Trim() {
    if (cached_ * pageSize_ <= cacheLimit_) return;
    // Second chance: a page goes when it was not used since the last time round.
    const std::size_t goal = cacheLimit_ / pageSize_ * 7 / 8;
    for (std::size_t steps = 0; cached_ > goal && steps < 2 * frames_.size(); ++steps) {
        if (sweep_ >= frames_.size()) sweep_ = 0;
        Frame* frame = frames_[sweep_];
        if (frame != nullptr && !frame->dirty) {
            if (frame->used) {
                frame->used = false;
            } else {
                Drop(static_cast<PageNumber>(sweep_));
            }
        }
        ++sweep_;
    }
}

}  // namespace zenvora::jet::detail

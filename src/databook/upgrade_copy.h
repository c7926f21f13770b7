#pragma once

#include <filesystem>

namespace zenvora::databook {

/// What lies beside a Databook while it is upgraded: the copy of the old file, NAME.bak, and a note,
/// NAME.upgrading, that is taken away when the upgrade has ended. Found at a later opening, the note says
/// that the upgrade was broken off; it names the copy by its size and date, so that another file under that
/// name is never taken for it.
class UpgradeCopy {
  public:
    explicit UpgradeCopy(const std::filesystem::path& databook);

    /// Makes the copy, unless there is one from a moment ago (`keepCopy`), then the note. Both are on the
    /// device when this returns. Faults: those of the disk; the note is then not there.
    void Begin(bool keepCopy) const;
    /// The upgrade has ended, or is given up: the note goes, the copy stays.
    void End() const;

    /// True when an upgrade of the Databook has begun and not ended.
    [[nodiscard]] bool IsUnfinished() const;
    /// True when the copy is the one that the note speaks of.
    [[nodiscard]] bool CanRestore() const;
    /// Puts the copy in the place of the Databook and takes the note away. Nobody may have the Databook open.
    /// Faults: those of the disk; the Databook is then as it was.
    void Restore() const;

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return copy_; }
    [[nodiscard]] const std::filesystem::path& NotePath() const noexcept { return note_; }

  private:
    std::filesystem::path databook_;
    std::filesystem::path copy_;
    std::filesystem::path note_;
};

}  // namespace zenvora::databook

#include "platform/files/host_file.h"

#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/fault.h"
#include "support/temp_folder.h"

namespace zenvora::files {
namespace {

using testing_support::TempFolder;

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

template <class Call>
Fault FaultOf(Call call) {
    try {
        call();
    } catch (const Fault& fault) {
        return fault;
    }
    ADD_FAILURE() << "no fault";
    return {0, ""};
}

TEST(SystemDisk, WritesAndReadsAtOffsets) {
    const TempFolder folder;
    const auto file = SystemDisk().Open(folder / "a", OpenMode::CreateNew);
    file->WriteAt(3, Bytes("def"));
    file->WriteAt(0, Bytes("abc"));
    file->Sync();
    EXPECT_EQ(file->Size(), 6U);
    std::string text(4, ' ');
    file->ReadAt(1, std::as_writable_bytes(std::span(text.data(), text.size())));
    EXPECT_EQ(text, "bcde");
    file->Truncate(2);
    EXPECT_EQ(folder.Read("a"), "ab");
    SystemDisk().SyncFolder(folder.Path());
}

TEST(SystemDisk, FaultsWhenAFileEndsBeforeWhatIsAskedFor) {
    const TempFolder folder;
    const auto file = SystemDisk().Open(folder.Write("a", "abc"), OpenMode::ReadOnly);
    std::array<std::byte, 4> bytes{};
    const Fault fault = FaultOf([&] { file->ReadAt(1, bytes); });
    EXPECT_EQ(fault.number, fault::kDeviceIo);
    EXPECT_EQ(fault.place.file, (folder / "a").string());
    EXPECT_NE(fault.description.find("ends at byte 3"), std::string::npos) << fault.description;
}

struct OpenCase {
    const char* name;
    const char* path;
    OpenMode mode;
    int number;
};
class OpenFaults : public testing::TestWithParam<OpenCase> {};

TEST_P(OpenFaults, CarryTheirNumberAndTheFile) {
    const TempFolder folder;
    folder.Write("file", "x");
    std::filesystem::create_directory(folder / "directory");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const auto path = folder / GetParam().path;
    const Fault fault = FaultOf([&] { static_cast<void>(SystemDisk().Open(path, GetParam().mode)); });
    EXPECT_EQ(fault.number, GetParam().number) << fault.description;
    EXPECT_EQ(fault.place.file, path.string());
    EXPECT_NE(fault.description.find(path.string()), std::string::npos) << fault.description;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OpenFaults,
    testing::Values(OpenCase{"MissingFile", "none", OpenMode::ReadOnly, fault::kFileNotFound},
                    OpenCase{"MissingFileToWrite", "none", OpenMode::ReadWrite, fault::kFileNotFound},
                    OpenCase{"MissingFolder", "none/file", OpenMode::ReadOnly, fault::kPathNotFound},
                    OpenCase{"CreateInMissingFolder", "none/file", OpenMode::CreateNew, fault::kPathNotFound},
                    OpenCase{"FileAsFolder", "file/x", OpenMode::ReadOnly, fault::kPathNotFound},
                    OpenCase{"Directory", "directory", OpenMode::ReadOnly, fault::kPathAccess},
                    OpenCase{"DirectoryToWrite", "directory", OpenMode::ReadWrite, fault::kPathAccess},
                    OpenCase{"CreateOverFile", "file", OpenMode::CreateNew, fault::kFileExists},
                    OpenCase{"CreateOverDirectory", "directory", OpenMode::CreateNew, fault::kFileExists},
                    OpenCase{"PipeWithoutWaiting", "pipe", OpenMode::ReadOnly, fault::kPathAccess}),
    [](const auto& info) { return info.param.name; });

TEST(SystemDisk, RefusesANameThatTheHostCannotTake) {
    const TempFolder folder;
    EXPECT_EQ(FaultOf([&] {
                  static_cast<void>(SystemDisk().Open(folder / std::string(300, 'n'), OpenMode::CreateNew));
              }).number,
              fault::kPathAccess);
}

/// An ordinary user while it lives: permissions do not bind the administrator, who runs tests in containers.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (administrator_) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    ~OrdinaryUser() {
        if (administrator_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    bool administrator_ = geteuid() == 0;
};

TEST(SystemDisk, RefusesAReadOnlyFileAndAReadOnlyFolder) {
    const TempFolder folder;
    const auto path = folder.Write("a", "x");
    chmod(path.c_str(), 0444);
    chmod(folder.Path().c_str(), 0555);
    {
        const OrdinaryUser user;
        EXPECT_NO_THROW(static_cast<void>(SystemDisk().Open(path, OpenMode::ReadOnly)));
        EXPECT_EQ(FaultOf([&] { static_cast<void>(SystemDisk().Open(path, OpenMode::ReadWrite)); }).number,
                  fault::kPathAccess);
        EXPECT_EQ(
            FaultOf([&] { static_cast<void>(SystemDisk().Open(folder / "b", OpenMode::CreateNew)); }).number,
            fault::kPathAccess);
        EXPECT_EQ(FaultOf([&] { SystemDisk().Remove(path); }).number, fault::kPathAccess);
    }
    chmod(folder.Path().c_str(), 0755);
}

TEST(SystemDisk, RefusesToWriteIntoAFileOpenedForReading) {
    const TempFolder folder;
    const auto file = SystemDisk().Open(folder.Write("a", "abc"), OpenMode::ReadOnly);
    EXPECT_THROW(file->WriteAt(0, Bytes("x")), Fault);
    EXPECT_EQ(folder.Read("a"), "abc");
}

/// Lets no file of this process grow beyond `bytes` while it lives.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_);
        static_cast<void>(std::signal(SIGXFSZ, handler_));
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit old_{};
    void (*handler_)(int) = nullptr;
};

TEST(SystemDisk, SaysThatThereIsNoRoomAfterAShortWrite) {
    const TempFolder folder;
    const auto file = SystemDisk().Open(folder / "a", OpenMode::CreateNew);
    const std::string tooMuch(10000, 'x');
    Fault fault{0, ""};
    {
        const FileSizeLimit limit(4096);  // the host writes the first 4096 bytes and says so
        fault = FaultOf([&] { file->WriteAt(0, Bytes(tooMuch)); });
    }
    EXPECT_EQ(fault.number, fault::kDiskFull) << fault.description;
}

TEST(SystemDisk, RemovesAndRenames) {
    const TempFolder folder;
    folder.Write("a", "new");
    folder.Write("b", "old");
    SystemDisk().Rename(folder / "a", folder / "b");
    EXPECT_EQ(folder.Read("b"), "new");
    EXPECT_FALSE(SystemDisk().Exists(folder / "a"));
    SystemDisk().Remove(folder / "b");
    EXPECT_FALSE(SystemDisk().Exists(folder / "b"));
    EXPECT_NO_THROW(SystemDisk().Remove(folder / "b"));
}

TEST(SystemDisk, NamesTheSideOfARenameThatIsWrong) {
    const TempFolder folder;
    const Fault missing = FaultOf([&] { SystemDisk().Rename(folder / "none", folder / "b"); });
    EXPECT_EQ(missing.number, fault::kFileNotFound);
    EXPECT_EQ(missing.place.file, (folder / "none").string());
    folder.Write("a", "x");
    const Fault noFolder = FaultOf([&] { SystemDisk().Rename(folder / "a", folder / "none/b"); });
    EXPECT_EQ(noFolder.number, fault::kPathNotFound);
    EXPECT_EQ(noFolder.place.file, (folder / "none/b").string());
}

TEST(SystemDisk, ExistsIsFalseForWhatIsNotThere) {
    const TempFolder folder;
    folder.Write("file", "");
    EXPECT_TRUE(SystemDisk().Exists(folder / "file"));
    EXPECT_TRUE(SystemDisk().Exists(folder.Path()));
    EXPECT_FALSE(SystemDisk().Exists(folder / "none/x"));
    EXPECT_FALSE(SystemDisk().Exists(folder / "file/x"));
    EXPECT_THROW(static_cast<void>(SystemDisk().Exists(folder / std::string(300, 'n'))), Fault);
}

TEST(SystemDisk, FaultsWhenItSyncsAFolderThatIsNotThere) {
    const TempFolder folder;
    EXPECT_EQ(FaultOf([&] { SystemDisk().SyncFolder(folder / "none"); }).number, fault::kFileNotFound);
}

}  // namespace
}  // namespace zenvora::files

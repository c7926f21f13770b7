#include "platform/files/host_file.h"
#include "store_fixture.h"

/// Batches on a disk that gets full.
namespace zenvora::ado {
namespace {

/// The machine's disk until it is full; then nothing more can be written.
class FillingDisk final : public files::HostDisk {
  public:
    bool full = false;

    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override {
        return std::make_unique<File>(*this, files::SystemDisk().Open(path, mode));
    }
    bool Exists(const std::filesystem::path& path) override { return files::SystemDisk().Exists(path); }
    void Remove(const std::filesystem::path& path) override { files::SystemDisk().Remove(path); }
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        files::SystemDisk().Rename(from, to);
    }
    void SyncFolder(const std::filesystem::path& folder) override { files::SystemDisk().SyncFolder(folder); }

  private:
    class File final : public files::HostFile {
      public:
        File(const FillingDisk& disk, std::unique_ptr<files::HostFile> file)
            : disk_(disk), file_(std::move(file)) {}
        void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
            file_->ReadAt(offset, bytes);
        }
        void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
            if (disk_.full) throw Fault{fault::kDiskFull, "the disk is full"};
            file_->WriteAt(offset, bytes);
        }
        std::uint64_t Size() override { return file_->Size(); }
        void Truncate(std::uint64_t size) override { file_->Truncate(size); }
        void Sync() override { file_->Sync(); }

      private:
        const FillingDisk& disk_;
        std::unique_ptr<files::HostFile> file_;
    };
};

TEST_F(StoreTest, ABatchThatCannotBeWrittenIsTakenBackAndTheNextOneGoesOn) {
    FillingDisk disk;
    DatabasePool pool(disk);
    Connection connection(pool, clock_);
    connection.Open(ConnectionText());
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection.BeginBatch();
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    disk.full = true;
    EXPECT_EQ(FaultOf([&] { connection.EndBatch(); }), fault::kDiskFull);
    EXPECT_FALSE(connection.Database().InTransaction());
    disk.full = false;
    connection.BeginBatch();
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"C\")");
    connection.EndBatch();
    connection.Close();
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY KEYNAME"), (std::vector<std::string>{"A", "C"}));
}

TEST_F(StoreTest, ABatchIsForgottenQuietlyWhenItsUserGoesAwayOnAFullDisk) {
    FillingDisk disk;
    DatabasePool pool(disk);
    {
        Connection connection(pool, clock_);
        connection.Open(ConnectionText());
        connection.BeginBatch();
        connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
        disk.full = true;
    }
    disk.full = false;
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), std::vector<std::string>{});
}

}  // namespace
}  // namespace zenvora::ado

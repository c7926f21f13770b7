#include <fstream>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/fault.h"
#include "platform/files/host_identity.h"
#include "platform/jet/database.h"
#include "sample_table.h"
#include "support/temp_folder.h"

namespace zenvora::jet {
namespace {

using testing_support::kNow;
using testing_support::SampleTable;
using zenvora::testing_support::TempFolder;
using Access = Database::Access;

std::vector<Value> Row(const std::string& street, double price) {
    std::vector<Value> row(16);
    row[0] = street;
    row[7] = price;
    return row;
}

class SharingTest : public testing::Test {
  protected:
    void SetUp() override {
        path_ = folder_ / "shared.mdb";
        const auto database = Database::Create(path_, kNow);
        NewTable table = SampleTable();
        table.indexes.resize(2);
        Table& made = database->CreateTable(table, kNow);
        made.Insert(Row("1 Oak St", 100));
        made.Insert(Row("2 Oak St", 0));
    }
    static Fault OpenFault(const std::filesystem::path& path) {
        try {
            static_cast<void>(Database::Open(path, Access::ReadWrite));
        } catch (const Fault& fault) {
            return fault;
        }
        return {0, "opened"};
    }
    static std::pair<double, double> Prices(Database& database) {
        std::pair<double, double> prices;
        database.OpenTable("Sample").Scan([&](const RowView& view) {
            std::string street;
            view.AppendText(0, street);
            (street == "1 Oak St" ? prices.first : prices.second) = view.Number(7);
            return true;
        });
        return prices;
    }
    TempFolder folder_;
    std::filesystem::path path_;
};

TEST_F(SharingTest, ASecondWriterIsRefusedAndToldWhoWrites) {
    const auto first = Database::Open(path_, Access::ReadWrite);
    const Fault fault = OpenFault(path_);
    EXPECT_EQ(fault.number, fault::kInUse);
    EXPECT_EQ(fault.place.file, path_.string());
    EXPECT_NE(
        fault.description.find("user " + files::UserName() + " on " + files::ComputerName().substr(0, 31)),
        std::string::npos)
        << fault.description;
}

TEST_F(SharingTest, TheWriterLeavesNoFileBehind) {
    {
        const auto first = Database::Open(path_, Access::ReadWrite);
        EXPECT_TRUE(std::filesystem::exists(folder_ / "shared.ldb"));
        EXPECT_EQ(std::filesystem::file_size(folder_ / "shared.ldb"), 64U);
    }
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
        EXPECT_EQ(entry.path(), path_);
        ++files;
    }
    EXPECT_EQ(files, 1);
    EXPECT_EQ(OpenFault(path_).number, 0);
}

TEST_F(SharingTest, AReaderSeesWhatTheWriterHasCommittedAndNothingElse) {
    const auto reader = Database::Open(path_, Access::ReadOnly);
    EXPECT_EQ(Prices(*reader), std::make_pair(100.0, 0.0));
    const auto writer = Database::Open(path_, Access::ReadWrite);
    Table& table = writer->OpenTable("Sample");
    const Value key = std::string("1 Oak St");
    const RowId row = *table.Find(0, std::span(&key, 1));
    const std::size_t column = 7;
    const Value price = 55.0;
    writer->Begin();
    table.Update(row, std::span(&column, 1), std::span(&price, 1));
    EXPECT_EQ(Prices(*reader), std::make_pair(100.0, 0.0));
    writer->Commit();
    EXPECT_EQ(Prices(*reader), std::make_pair(55.0, 0.0));
    table.AddColumn(testing_support::TextColumn("Later", 10));
    EXPECT_EQ(Prices(*reader), std::make_pair(55.0, 0.0));
    EXPECT_TRUE(reader->OpenTable("Sample").Definition().FindColumn("Later"));
}

TEST_F(SharingTest, AReaderNeverSeesHalfACommit) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The writer: moves amounts between two rows, and fills pages so that commits take their time.
        try {
            const auto writer = Database::Open(path_, Access::ReadWrite);
            Table& table = writer->OpenTable("Sample");
            RowId rows[2];
            for (int i = 0; i < 2; ++i) {
                const Value key = std::to_string(i + 1) + " Oak St";
                rows[i] = *table.Find(0, std::span(&key, 1));
            }
            const std::size_t column = 7;
            for (int step = 0; step < 100000; ++step) {
                writer->Begin();
                const Value amounts[2] = {100.0 - step % 100, 0.0 + step % 100};
                for (int i = 0; i < 2; ++i)
                    table.Update(rows[i], std::span(&column, 1), std::span(&amounts[i], 1));
                for (int k = 0; k < 5; ++k)
                    table.Insert(Row(std::to_string(step) + " Elm " + std::to_string(k), 0));
                writer->Commit();
            }
        } catch (const std::exception&) {
        }
        ::_exit(0);
    }
    const auto reader = Database::Open(path_, Access::ReadOnly);
    int different = 0;
    double last = -1;
    for (int i = 0; i < 120 || (different <= 3 && i < 20000); ++i) {
        double first = 0;
        double second = 0;
        std::size_t rows = 0;
        reader->OpenTable("Sample").Scan([&](const RowView& view) {
            std::string street;
            view.AppendText(0, street);
            if (street == "1 Oak St") first = view.Number(7);
            if (street == "2 Oak St") second = view.Number(7);
            return ++rows, true;
        });
        EXPECT_EQ(first + second, 100.0) << "half a commit was seen";
        EXPECT_EQ((rows - 2) % 5, 0U) << "half a commit was seen";
        different += first != last ? 1 : 0;
        last = first;
        if (i % 10 == 0) ::usleep(2000);
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_GT(different, 3) << "the writer did nothing";
}

TEST_F(SharingTest, ALockFileOfAnotherProgramWithoutLocksIsStale) {
    { std::ofstream(folder_ / "shared.ldb") << std::string(64, 'x'); }
    EXPECT_EQ(OpenFault(path_).number, 0);
}

TEST_F(SharingTest, ALockFileOfAnotherProgramWithALockKeepsWritersOut) {
    std::string entry(64, '\0');
    entry.replace(0, 9, "OFFICE-PC");
    entry.replace(32, 5, "Admin");
    folder_.Write("shared.ldb", entry);
    const auto other = files::SystemDisk().Open(folder_ / "shared.ldb", files::OpenMode::ReadWrite);
    ASSERT_EQ(other->TryLock(0x10000003, 1, files::LockKind::Exclusive), files::LockAnswer::Taken);
    const Fault fault = OpenFault(path_);
    EXPECT_EQ(fault.number, fault::kInUse);
    EXPECT_NE(fault.description.find("user Admin on OFFICE-PC"), std::string::npos) << fault.description;
    EXPECT_EQ(folder_.Read("shared.ldb"), entry);
    // Reading is allowed meanwhile.
    EXPECT_EQ(Prices(*Database::Open(path_, Access::ReadOnly)), std::make_pair(100.0, 0.0));
    other->Unlock(0x10000003, 1);
    EXPECT_EQ(OpenFault(path_).number, 0);
}

TEST_F(SharingTest, AWriterThatWasKilledStandsInNobodysWay) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto writer = Database::Open(path_, Access::ReadWrite);
        static_cast<void>(::write(pipe[1], "r", 1));
        ::pause();
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
    EXPECT_EQ(OpenFault(path_).number, fault::kInUse);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(pipe[0]);
    ::close(pipe[1]);
    EXPECT_EQ(OpenFault(path_).number, 0);
}

}  // namespace
}  // namespace zenvora::jet

// Files made to hurt: each once led the engine to a wrong address, an endless walk, or over other data.

#include <functional>
#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/jet/database.h"
#include "platform/jet/detail/definition_codec.h"
#include "platform/jet/detail/index_tree.h"
#include "sample_table.h"

namespace zenvora::jet {
namespace {

using detail::IndexTree;
using detail::kJet4;
using detail::PageNumber;
using detail::PutU16;
using detail::PutU32;
using detail::RowPointer;
using detail::U16;
using detail::U32;
using testing_support::kNow;
using testing_support::MemoryDisk;

constexpr std::size_t kPage = 4096;

/// A Databook with one table of a text key and a Memo, and `rows` rows with notes of `noteLength`.
std::vector<std::byte> SmallBook(int rows, std::size_t noteLength) {
    MemoryDisk disk;
    {
        const auto databook = Database::Create("h.mdb", kNow, disk);
        NewTable table;
        table.name = "Notes";
        table.columns = {testing_support::TextColumn("Key", 50),
                         testing_support::ColumnOf("Note", ColumnType::Memo)};
        NewIndex key;
        key.name = "Key";
        key.columns = {"Key"};
        table.indexes = {key};
        Table& notes = databook->CreateTable(table, kNow);
        databook->Begin();
        for (int i = 0; i < rows; ++i)
            notes.Insert(std::vector<Value>{"row " + std::to_string(i), std::string(noteLength, 'n')});
        databook->Commit();
    }
    return disk.Content("h.mdb");
}

class Hostile : public testing::Test {
  protected:
    void Load(std::vector<std::byte> bytes) {
        disk_.Put("h.mdb", std::move(bytes));
        for (definition_ = 6; *At(definition_) != std::byte{2};)
            ++definition_;
        detail::Pager pager(disk_.Open("h.mdb", files::OpenMode::ReadOnly), "h.mdb", kJet4, true);
        stored_ = detail::ReadDefinition(pager, definition_);
    }
    std::byte* At(PageNumber page, std::size_t offset = 0) {
        return disk_.Content("h.mdb").data() + page * kPage + offset;
    }
    /// The first page of long values.
    PageNumber LongPage() {
        PageNumber page = 6;
        while (*At(page) != std::byte{1} || U32(At(page, 4)) != detail::kLongValueOwner)
            ++page;
        return page;
    }
    std::unique_ptr<Database> Open() { return Database::Open("h.mdb", Database::Access::ReadWrite, disk_); }
    /// The fault of an action on the table; 0 when there was none.
    int FaultOf(const std::function<void(Table&)>& action) {
        try {
            const auto databook = Open();
            action(databook->OpenTable("Notes"));
        } catch (const Fault& fault) {
            return fault.number;
        }
        return 0;
    }
    /// Makes the root of the index a leaf with these entries, whole as given; `prefix` as it is stated.
    void WriteLeaf(const std::vector<std::string>& stored, std::size_t prefix) {
        std::byte* const page = At(stored_.indexes[0].root);
        std::fill_n(page + 8, kPage - 8, std::byte{0});
        std::size_t end = 0;
        for (const std::string& entry : stored) {
            std::copy_n(reinterpret_cast<const std::byte*>(entry.data()), entry.size(), page + 480 + end);
            end += entry.size();
            page[27 + end / 8] |= static_cast<std::byte>(1U << (end % 8));
        }
        PutU16(page + 2, 3616 - end);
        PutU16(page + 24, prefix);
    }

    MemoryDisk disk_;
    PageNumber definition_ = 0;
    detail::StoredDefinition stored_;
};

const std::vector<Value> kRow{"zz", jet::Null{}};

TEST_F(Hostile, AnIndexPageWithAsManyEntriesAsThereIsRoomFor) {
    // A long prefix leaves one byte for each entry: more of them than entries of a full row identity could
    // be.
    Load(SmallBook(0, 0));
    std::vector<std::string> entries{std::string("\x7F\x10\x10\x10\x00", 5) + "abcd"};
    for (int i = 0; i < 904; ++i)
        entries.emplace_back(1, static_cast<char>('e' + i / 100));
    WriteLeaf(entries, 8);
    // Laid out anew they take several pages.
    EXPECT_EQ(FaultOf([](Table& table) { table.Insert(kRow); }), 0);
}

TEST_F(Hostile, AnIndexPageWhoseEntriesAreOutOfOrder) {
    // First and last share a beginning that is longer than the one between: it cannot be cut off there.
    Load(SmallBook(0, 0));
    std::vector<std::string> entries;
    const std::string shared = "\x7F" + std::string(400, 'Q');
    entries.push_back(shared + "aaaa");
    for (int i = 0; i < 6; ++i)
        entries.push_back(std::string("\x7F\x10", 2) + "aaa" + static_cast<char>('a' + i));
    for (int i = 0; i < 7; ++i)
        entries.push_back(shared + "bbb" + static_cast<char>('a' + i));
    WriteLeaf(entries, 0);
    EXPECT_EQ(
        FaultOf([&](Table& table) {
            for (int i = 0; i < 40; ++i)
                table.Insert(std::vector<Value>{"zz" + std::string(40, 'y') + std::to_string(i), Null{}});
        }),
        fault::kDamaged);
}

TEST_F(Hostile, ANeighbourInAnIndexThatIsNoPageOfIt) {
    Load(SmallBook(900, 0));
    std::byte* leaf = At(stored_.indexes[0].root);
    ASSERT_EQ(*leaf, std::byte{3}) << "an index of two levels is wanted";
    // Every leaf names page 2, the catalog's definition, as the one before it.
    for (PageNumber page = 6; page < disk_.Content("h.mdb").size() / kPage; ++page) {
        if (*At(page) == std::byte{4} && U32(At(page, 4)) == definition_) PutU32(At(page, 12), 2);
    }
    const std::vector<std::byte> catalog(At(2), At(3));
    const int number = FaultOf([](Table& table) {
        for (int i = 0; i < 400; ++i)
            table.Insert(std::vector<Value>{"row 1" + std::to_string(i) + std::string(40, 'x'), Null{}});
    });
    EXPECT_EQ(number, fault::kDamaged);
    EXPECT_TRUE(std::equal(catalog.begin(), catalog.end(), At(2))) << "the definition was written over";
}

TEST_F(Hostile, AnUpperIndexPageWithoutPagesBelow) {
    Load(SmallBook(0, 0));
    *At(stored_.indexes[0].root) = std::byte{3};
    EXPECT_EQ(FaultOf([](Table& table) { table.Insert(kRow); }), fault::kDamaged);
}

TEST_F(Hostile, ALongValueOfAGigabyteInACircle) {
    Load(SmallBook(1, 9000));
    const PageNumber page = LongPage();
    // Its first piece leads to itself, and the row claims a gigabyte.
    const std::size_t piece = U16(At(page, 14)) & 0x1FFF;
    PutU32(At(page, piece), RowPointer::Of(page, 0).value);
    for (PageNumber each = 6; each < disk_.Content("h.mdb").size() / kPage; ++each) {
        if (*At(each) != std::byte{1} || U32(At(each, 4)) != definition_) continue;
        for (std::size_t at = 14; at + 12 < kPage; ++at) {
            if (U32(At(each, at)) == 18000) {
                PutU32(At(each, at), 0x3FFFFFFF);
                PutU32(At(each, at + 4), RowPointer::Of(page, 0).value);
            }
        }
    }
    std::size_t read = 0;
    EXPECT_EQ(FaultOf([&](Table& table) {
                  table.Scan([&](const RowView& row) {
                      read = std::get<std::string>(row.Get(1)).size();
                      return true;
                  });
              }),
              fault::kDamaged);
    EXPECT_EQ(read, 0U);
}

TEST_F(Hostile, ARowPageAmongThoseWithRoomForLongValues) {
    Load(SmallBook(3, 500));
    const RowPointer map = stored_.longColumns[0].freeMap;
    PageNumber rows = 6;
    while (*At(rows) != std::byte{1} || U32(At(rows, 4)) != definition_)
        ++rows;
    std::byte* const bits = At(map.Page(), U16(At(map.Page(), 14 + 2 * std::size_t{map.Row()})) & 0x1FFF);
    std::fill_n(bits, 69, std::byte{0});
    bits[5 + rows / 8] = static_cast<std::byte>(1U << (rows % 8));
    const std::vector<std::byte> before(At(rows), At(rows + 1));
    EXPECT_EQ(FaultOf([](Table& table) {
                  table.Insert(std::vector<Value>{"zz", std::string(500, 'n')});
              }),
              fault::kDamaged);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), At(rows))) << "a long value lies among the rows";
}

TEST_F(Hostile, ALongValueOnAPageWhoseRowsAreOutOfOrder) {
    Load(SmallBook(4, 400));
    // Behind the catalog's own long values.
    constexpr unsigned count = 4;
    PageNumber page = LongPage();
    while (U32(At(page, 4)) != detail::kLongValueOwner || U16(At(page, 12)) != count)
        ASSERT_LT(++page, disk_.Content("h.mdb").size() / kPage);
    // The row that should lie lowest lies above the first one, whose bytes are to be freed.
    PutU16(At(page, 14 + 2 * (count - 1)), U16(At(page, 14)) + 10);
    const std::vector<std::byte> before(At(page), At(page + 1));
    EXPECT_EQ(FaultOf([](Table& table) {
                  std::optional<RowId> first;
                  table.Scan([&](const RowView& row) {
                      first = row.Id();
                      return false;
                  });
                  table.Update(first.value(), std::vector<Value>{"row 0", jet::Null{}});
              }),
              fault::kDamaged);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), At(page))) << "other long values were moved";
}

TEST_F(Hostile, AMemoColumnThatClaimsAFixedPlace) {
    Load(SmallBook(1, 10));
    // Behind the fixed part and the count block of the one index: the second descriptor.
    std::byte* const column = At(definition_, 63 + 12 + 25);
    ASSERT_EQ(*column, std::byte{0x0C});
    column[15] |= std::byte{1};
    PutU16(column + 7, 60000);
    EXPECT_EQ(FaultOf([](Table& table) {
                  table.Insert(std::vector<Value>{"zz", std::string("n")});
              }),
              fault::kUnsupported);
}

TEST_F(Hostile, AColumnShorterThanItsType) {
    MemoryDisk disk;
    {
        const auto databook = Database::Create("h.mdb", kNow, disk);
        NewTable table;
        table.name = "Notes";
        table.columns = {testing_support::ColumnOf("Price", ColumnType::Double)};
        databook->CreateTable(table, kNow);
    }
    Load(disk.Content("h.mdb"));
    PutU16(At(definition_, 63 + 23), 2);
    EXPECT_EQ(FaultOf([](Table& table) { table.Insert(std::vector<Value>{1.5}); }), fault::kUnsupported);
}

TEST_F(Hostile, ACatalogThatForgetsItsRows) {
    Load(SmallBook(1, 10));
    // The map of the catalog's pages, row 0 of page 6, no longer lists page 14; the map of those with room
    // does.
    std::byte& bits = *At(6, kPage - 69 + 5 + 1);
    ASSERT_EQ(bits & std::byte{0x40}, std::byte{0x40});
    bits &= ~std::byte{0x40};
    const std::vector<std::byte> before = disk_.Content("h.mdb");
    const auto databook = Open();
    NewTable table;
    table.name = "More";
    table.columns = {testing_support::TextColumn("Key", 50)};
    try {
        databook->CreateTable(table, kNow);
        ADD_FAILURE() << "the table cannot have been made";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kDamaged);
    }
    EXPECT_EQ(disk_.Content("h.mdb"), before);
}

}  // namespace
}  // namespace zenvora::jet

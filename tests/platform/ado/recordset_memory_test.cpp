#include "store_fixture.h"

// A sanitizer brings its own allocator, whose blocks are no measure of ours.
#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__)
#define ZENVORA_COUNTS_MEMORY 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZENVORA_COUNTS_MEMORY 0
#else
#define ZENVORA_COUNTS_MEMORY 1
#endif
#else
#define ZENVORA_COUNTS_MEMORY 1
#endif

#if ZENVORA_COUNTS_MEMORY
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::size_t bytesInUse = 0;
std::size_t mostInUse = 0;

void* Counted(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    bytesInUse += malloc_usable_size(block);
    mostInUse = std::max(mostInUse, bytesInUse);
    return block;
}

void Uncounted(void* block) {
    if (block == nullptr) return;
    bytesInUse -= malloc_usable_size(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return Counted(size);
}
void* operator new[](std::size_t size) {
    return Counted(size);
}
void operator delete(void* block) noexcept {
    Uncounted(block);
}
void operator delete[](void* block) noexcept {
    Uncounted(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Uncounted(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Uncounted(block);
}

namespace zenvora::ado {
namespace {

TEST_F(StoreTest, KeepsARecordOfTwentyFourColumnsInLessThan300Bytes) {
    constexpr std::size_t kRecords = 20000;
    constexpr std::size_t kBudget = 300;
    // As wide as the table of a Databook, with the texts that records have: a key and an address of some 20
    // characters, a line of city and state, small codes, and dates and prices in every column.
    jet::NewTable table;
    table.name = "WIDE";
    const auto key = [](std::size_t i) { return std::to_string(10000 + i) + " NORTH MAIN STREET"; };
    for (int column = 0; column < 13; ++column)
        table.columns.push_back(NewColumn("T" + std::to_string(column), jet::ColumnType::Text, 50));
    for (int column = 0; column < 6; ++column)
        table.columns.push_back(NewColumn("N" + std::to_string(column), jet::ColumnType::Double));
    for (int column = 0; column < 5; ++column)
        table.columns.push_back(NewColumn("D" + std::to_string(column), jet::ColumnType::DateTime));
    table.indexes = {PrimaryKey("T0")};
    const auto database = pool_.Open(Path(), jet::Database::Access::ReadWrite);
    jet::Table& wide = database->CreateTable(table, kToday);
    database->Begin();
    std::vector<jet::Value> row(24);
    for (std::size_t i = 0; i < kRecords; ++i) {
        // Scattered, so that the records have to be put into another order.
        const std::size_t number = i * 7919 % kRecords;
        row[0] = row[1] = key(number);
        row[2] = "Springfield " + std::to_string(number) + ", MI 48083";
        row[3] = std::string("Springfield");
        row[4] = std::string("MI");
        row[5] = std::to_string(48000 + number % 1000);
        row[11] = std::string("3");
        for (std::size_t column = 13; column < 19; ++column)
            row[column] = static_cast<double>(number + column);
        for (std::size_t column = 19; column < 24; ++column)
            row[column] = jet::DateTime{39000.0 + static_cast<double>(number % 1000)};
        wide.Insert(row);
    }
    database->Commit();
    // Every page that the cache keeps is in it before the count begins.
    static_cast<void>(Select("SELECT T0 FROM WIDE ORDER BY T0"));

    const std::size_t before = bytesInUse;
    mostInUse = bytesInUse;
    const auto control = Select("SELECT * FROM WIDE ORDER BY T0");
    const std::size_t after = bytesInUse;
    ASSERT_EQ(control->Recordset().RecordCount(), static_cast<long>(kRecords));
    EXPECT_EQ(control->Recordset().TextView(0), key(0));
    EXPECT_LT((after - before) / kRecords, kBudget);
    EXPECT_LT((mostInUse - before) / kRecords, kBudget) << "on the way";
    // The count counts: all records hold their numbers, dates and keys.
    EXPECT_GT((after - before) / kRecords, 11 * 8U + 2 * 20U);
}

}  // namespace
}  // namespace zenvora::ado
#endif

#include <gtest/gtest.h>

#include "platform/jet/detail/usage_map.h"
#include "support/memory_disk.h"

/// Usage maps in pages of 2048 bytes.
namespace zenvora::jet::detail {
namespace {

using zenvora::testing_support::MemoryDisk;

constexpr std::size_t kPage = 2048;
constexpr PageNumber kPages = 16352 + 200;

class UsageMap97Test : public testing::Test {
  protected:
    void SetUp() override {
        bytes_.resize(kPages * kPage);
        // Page 1: two map rows of 133 bytes, laid out from the end.
        bytes_[kPage] = bytes_[kPage + 1] = std::byte{1};
        PutU16(&bytes_[kPage + 8], 2);
        PutU16(&bytes_[kPage + 10], kPage - 133);
        PutU16(&bytes_[kPage + 12], kPage - 266);
    }
    /// Where map row 0 or 1 begins.
    std::byte* Row(unsigned row) { return &bytes_[2 * kPage - 133 * (row + 1)]; }
    std::byte* PageAt(PageNumber page) { return &bytes_[page * kPage]; }

    UsageMap Open(unsigned row) {
        disk_.Put("m", std::move(bytes_));
        pager_ = std::make_unique<Pager>(disk_.Open("m", files::OpenMode::ReadOnly), "m", kJet3, true);
        return {*pager_, RowPointer::Of(1, row)};
    }

    std::vector<std::byte> bytes_;
    MemoryDisk disk_;
    std::unique_ptr<Pager> pager_;
};

TEST_F(UsageMap97Test, InlineHoldsTheBitsOf1024Pages) {
    PutU32(Row(0) + 1, 8);
    PutU8(Row(0) + 5, 0x81);    // pages 8 and 15
    PutU8(Row(0) + 132, 0x80);  // the last one: 8 + 1023
    PutU8(Row(1) + 5, 0xFF);    // of another map
    const UsageMap map = Open(0);
    EXPECT_EQ(map.PagesInUse(), (std::vector<PageNumber>{8, 15, 1031}));
    EXPECT_TRUE(map.Contains(1031));
    EXPECT_FALSE(map.Contains(1032));
}

TEST_F(UsageMap97Test, ABitPageHoldsTheBitsOf16352Pages) {
    PutU8(Row(1), 1);
    PutU32(Row(1) + 1, 4);
    PutU32(Row(1) + 5, 5);
    for (const PageNumber page : {PageNumber{4}, PageNumber{5}})
        PutU16(PageAt(page), 0x0105);
    PutU8(PageAt(4) + 4, 0x08);          // page 3
    PutU8(PageAt(4) + kPage - 1, 0x80);  // page 16351
    PutU8(PageAt(5) + 4, 0x01);          // page 16352
    PutU8(PageAt(5) + 4 + 12, 0x10);     // 8 x 12 + 4 further on
    const UsageMap map = Open(1);
    EXPECT_EQ(map.Pages(), (std::vector<PageNumber>{3, 16351, 16352, 16452}));
    EXPECT_TRUE(map.Contains(16452));
    EXPECT_FALSE(map.Contains(16453));
    EXPECT_FALSE(map.Contains(2 * 16352 + 1));
}

}  // namespace
}  // namespace zenvora::jet::detail

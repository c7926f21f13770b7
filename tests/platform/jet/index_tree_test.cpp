#include "platform/jet/detail/index_tree.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

#include "platform/jet/detail/key_codec.h"
#include "support/memory_disk.h"

namespace zenvora::jet::detail {
namespace {

using zenvora::testing_support::MemoryDisk;

constexpr PageNumber kOwner = 2;
constexpr PageNumber kRoot = 4;

/// A tree on a file of its own: map of free pages, a page for the map of the index, the root.
class TreeTest : public testing::Test {
  protected:
    void SetUp() override {
        pager_ = std::make_unique<Pager>(disk_.Open("t", files::OpenMode::CreateNew), "t", kJet4, false);
        allocator_ = std::make_unique<PageAllocator>(*pager_);
        pager_->Begin();
        for (int i = 0; i < 5; ++i)
            static_cast<void>(pager_->Append());
        FormatDataPage(*pager_, 1, 1);
        std::vector<std::byte> global = UsageMap::EmptyRow();
        std::fill(global.begin() + 5, global.end(), std::byte{0xFF});
        global[5] = std::byte{0xE0};
        AppendRow(*pager_, 1, global);
        AppendRow(*pager_, 1, UsageMap::EmptyRow());
        FormatDataPage(*pager_, 3, 0);
        AppendRow(*pager_, 3, UsageMap::EmptyRow());
        owned_ = UsageMap(*pager_, RowPointer::Of(3, 0));
        owned_.Add(kRoot, *allocator_);
        IndexTree::FormatLeaf(*pager_, kRoot, kOwner);
        tree_ = std::make_unique<IndexTree>(*pager_, *allocator_, kOwner, kRoot, owned_);
    }

    static std::string Entry(const std::string& key, unsigned row) {
        std::string entry = key;
        AppendRowId({row >> 8, static_cast<std::uint8_t>(row & 0xFF)}, entry);
        return entry;
    }

    /// Entries in order, links in both directions, the owned map and the upper pages all agree with the
    /// model.
    void ExpectEqual(const std::set<std::string>& model) {
        std::vector<std::string> found;
        tree_->Scan([&](std::string_view entry) {
            found.emplace_back(entry);
            return true;
        });
        ASSERT_EQ(found, std::vector<std::string>(model.begin(), model.end()));
        std::set<PageNumber> pages;
        PageNumber previousLeaf = 0;
        CheckPage(kRoot, pages, previousLeaf);
        const auto owned = owned_.Pages();
        EXPECT_EQ(pages, std::set<PageNumber>(owned.begin(), owned.end()));
        for (const std::string& entry : model) {
            ASSERT_EQ(tree_->LowerBound(entry), entry);
        }
    }

    // Returns the last entry below a page.
    std::string CheckPage(PageNumber number, std::set<PageNumber>& pages, PageNumber& previousLeaf) {
        EXPECT_TRUE(pages.insert(number).second) << "page " << number << " is met twice";
        const std::byte* page = pager_->Read(number);
        std::vector<std::size_t> ends;
        for (std::size_t bit = 0; bit < kJet4.maskSize * 8; ++bit) {
            if ((U8(page + kJet4.maskAt + bit / 8) >> (bit % 8) & 1U) != 0) ends.push_back(bit);
        }
        EXPECT_EQ(U16(page + 2), kJet4.pageSize - kJet4.entriesAt - (ends.empty() ? 0 : ends.back()));
        const std::size_t prefix = U16(page + kJet4.prefixAt);
        std::vector<std::string> entries;
        std::size_t begin = 0;
        for (std::size_t end : ends) {
            std::string entry(reinterpret_cast<const char*>(page) + kJet4.entriesAt + begin, end - begin);
            if (!entries.empty()) entry = entries.front().substr(0, prefix) + entry;
            entries.push_back(entry);
            begin = end;
        }
        if (U8(page) == kIndexLeaf) {
            EXPECT_EQ(U32(page + kJet4.previousAt), previousLeaf);
            if (previousLeaf != 0) {
                EXPECT_EQ(U32(pager_->Read(previousLeaf) + kJet4.nextAt), number);
            }
            previousLeaf = number;
            EXPECT_TRUE(!entries.empty() || number == kRoot);
            return entries.empty() ? std::string() : entries.back();
        }
        std::string last;
        for (const std::string& entry : entries) {
            const PageNumber child =
                U32BigEndian(reinterpret_cast<const std::byte*>(entry.data() + entry.size() - 4));
            last = CheckPage(child, pages, previousLeaf);
            EXPECT_EQ(entry.substr(0, entry.size() - 4), last) << "page " << number;
        }
        const PageNumber tail = U32(pager_->Read(number) + kJet4.tailAt);
        EXPECT_EQ(tail != 0, entries.size() + (tail != 0 ? 1 : 0) >= 2) << "a tail from two children on";
        if (tail != 0) last = CheckPage(tail, pages, previousLeaf);
        return last;
    }

    void Shuffle(unsigned seed, int steps, const std::function<std::string(std::mt19937&)>& makeKey) {
        std::mt19937 random(seed);
        std::set<std::string> model;
        for (int step = 0; step < steps; ++step) {
            const bool remove = !model.empty() && random() % 100 < (step / 500 % 3 == 2 ? 80 : 25);
            if (remove) {
                auto victim = model.lower_bound(makeKey(random));
                if (victim == model.end()) victim = model.begin();
                EXPECT_TRUE(tree_->Remove(*victim));
                model.erase(victim);
            } else {
                const std::string entry = Entry(makeKey(random), static_cast<unsigned>(step));
                if (model.insert(entry).second) static_cast<void>(tree_->Insert(entry));
            }
            if (step % 997 == 0) {
                ExpectEqual(model);
                if (HasFatalFailure()) return;
            }
        }
        ExpectEqual(model);
        while (!model.empty()) {
            EXPECT_TRUE(tree_->Remove(*model.begin()));
            model.erase(model.begin());
        }
        ExpectEqual(model);
    }

    MemoryDisk disk_;
    std::unique_ptr<Pager> pager_;
    std::unique_ptr<PageAllocator> allocator_;
    UsageMap owned_;
    std::unique_ptr<IndexTree> tree_;
};

using IndexTreeTest = TreeTest;

TEST_F(IndexTreeTest, ShortKeysInAnyOrder) {
    Shuffle(1, 6000, [](std::mt19937& random) {
        std::string key = "\x7F";
        for (int i = 0; i < 4; ++i)
            key.push_back(static_cast<char>(random() % 251));
        return key;
    });
}

TEST_F(IndexTreeTest, LongKeysWithCommonBeginnings) {
    Shuffle(2, 4000, [](std::mt19937& random) {
        std::string key = "\x7F" + std::string(80 + random() % 200, 'A');
        for (int i = 0; i < 6; ++i)
            key.push_back(static_cast<char>('a' + random() % 26));
        key.push_back('\0');
        return key;
    });
}

TEST_F(IndexTreeTest, KeysOfVeryDifferentLength) {
    Shuffle(3, 4000, [](std::mt19937& random) {
        std::string key = "\x7F";
        for (auto i = random() % 7 == 0 ? random() % 500 : random() % 12; i > 0; --i)
            key.push_back(static_cast<char>(2 + random() % 200));
        key.push_back('\0');
        return key;
    });
}

TEST_F(IndexTreeTest, AscendingKeysFillTheirPages) {
    std::set<std::string> model;
    for (unsigned i = 0; i < 20000; ++i) {
        std::string key = "\x7F";
        for (int shift = 24; shift >= 0; shift -= 8)
            key.push_back(static_cast<char>(i >> shift));
        model.insert(Entry(key, i));
        EXPECT_TRUE(tree_->Insert(Entry(key, i)));
    }
    ExpectEqual(model);
    // 9 bytes an entry, 401 on a page: 50 leaves when they are full.
    EXPECT_LT(owned_.Pages().size(), 54U);
}

TEST_F(IndexTreeTest, DescendingKeys) {
    std::set<std::string> model;
    for (unsigned i = 20000; i > 0; --i) {
        std::string key = "\x7F";
        for (int shift = 24; shift >= 0; shift -= 8)
            key.push_back(static_cast<char>(i >> shift));
        model.insert(Entry(key, i));
        static_cast<void>(tree_->Insert(Entry(key, i)));
    }
    ExpectEqual(model);
}

TEST_F(IndexTreeTest, EqualKeysOfManyRowsAreNotDistinct) {
    EXPECT_TRUE(tree_->Insert(Entry("\x7Fkey", 1)));
    int distinct = 0;
    std::set<std::string> model{Entry("\x7Fkey", 1)};
    for (unsigned row = 2; row < 3000; ++row) {
        distinct += tree_->Insert(Entry("\x7Fkey", row)) ? 1 : 0;
        model.insert(Entry("\x7Fkey", row));
    }
    ExpectEqual(model);
    EXPECT_LT(distinct, 40);  // only at the borders of pages is a neighbour not seen
}

TEST_F(IndexTreeTest, RemovingWhatIsNotThereSaysSo) {
    EXPECT_FALSE(tree_->Remove(Entry("\x7Fkey", 1)));
    static_cast<void>(tree_->Insert(Entry("\x7Fkey", 1)));
    EXPECT_FALSE(tree_->Remove(Entry("\x7Fkey", 2)));
}

TEST_F(IndexTreeTest, FreedPagesAreUsedAgain) {
    const auto fill = [&](unsigned base) {
        for (unsigned i = 0; i < 5000; ++i)
            static_cast<void>(tree_->Insert(Entry("\x7F" + std::to_string(i * 7919 % 5000), base + i)));
    };
    fill(0);
    const PageNumber pages = pager_->PageCount();
    for (unsigned i = 0; i < 5000; ++i)
        EXPECT_TRUE(tree_->Remove(Entry("\x7F" + std::to_string(i * 7919 % 5000), i)));
    fill(100000);
    EXPECT_LE(pager_->PageCount(), pages + 2);
}

class TreeOfEqualKeys : public TreeTest, public testing::WithParamInterface<const char*> {};

TEST_P(TreeOfEqualKeys, TakesAKeyThatSharesNothingWithThem) {
    // Equal keys leave room for many entries on a page; none of it is left when another key joins them.
    const std::string other = GetParam();
    std::set<std::string> model;
    for (unsigned row = 0; row < 850; ++row)
        static_cast<void>(tree_->Insert(*model.insert(Entry(std::string(60, 'T'), 1000 + row)).first));
    static_cast<void>(tree_->Insert(*model.insert(Entry(other, 5)).first));
    ExpectEqual(model);
    for (unsigned row = 1; row < 20; ++row)
        static_cast<void>(tree_->Insert(*model.insert(Entry(other + std::string(row, 'm'), 5 + row)).first));
    ExpectEqual(model);
}

INSTANTIATE_TEST_SUITE_P(Sides, TreeOfEqualKeys, testing::Values("A", "z"));

}  // namespace
}  // namespace zenvora::jet::detail

// A mutator that knows where the pages of an .mdb file keep their structure: a random byte of a random page
// is nearly always text in a row, or nothing.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

class PageMutator {
  public:
    PageMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
        : data_(data),
          size_(size),
          maxSize_(maxSize),
          page_(size > 0x14 && data[0x14] == 0 ? 2048 : 4096),
          random_(seed) {}

    std::size_t Run() {
        for (std::size_t i = 0, count = 1 + Pick(4); i < count && size_ >= page_; ++i)
            Step();
        return size_;
    }

  private:
    std::size_t Pick(std::size_t below) { return below == 0 ? 0 : random_() % below; }
    [[nodiscard]] std::size_t Pages() const { return size_ / page_; }
    std::uint8_t* Page(std::size_t number) { return data_ + number * page_; }

    void Step() {
        switch (Pick(12)) {
            case 0:  // a page takes the place of another
                std::memmove(Page(Pick(Pages())), Page(Pick(Pages())), page_);
                return;
            case 1:  // the file is cut off
                if (Pages() > 3 && Pick(4) == 0) size_ -= page_ * (1 + Pick(2));
                return;
            case 2:  // the file grows by a copy of a page
                if (size_ + page_ <= maxSize_) {
                    std::memcpy(data_ + Pages() * page_, Page(Pick(Pages())), page_);
                    size_ = (Pages() + 1) * page_;
                }
                return;
            case 3: {  // the fuzzer's own changes, in a window, so that pages stay where they are
                std::uint8_t* const at = Page(Pick(Pages())) + Pick(page_ - 64);
                std::uint8_t window[64];
                std::memcpy(window, at, sizeof window);
                LLVMFuzzerMutate(window, sizeof window, sizeof window);
                std::memcpy(at, window, sizeof window);
                return;
            }
            default: {
                std::uint8_t* const page = Page(Pick(Pages()));
                Overwrite(page, Interesting(page));
                return;
            }
        }
    }

    /// An offset where a page of its kind keeps something that others rely on.
    std::size_t Interesting(const std::uint8_t* page) {
        if (Pick(8) == 0) return Pick(page_);
        switch (page[0]) {
            case 1: {  // rows: header, slots, and the last bytes of a row with its counts and offsets
                const std::size_t slots = page_ == 4096 ? 14 : 10;
                const std::size_t count = std::min<std::size_t>(page[slots - 2], 255);
                if (count == 0 || Pick(4) == 0) return Pick(slots);
                const std::size_t slot = slots + 2 * Pick(count);
                if (Pick(2) == 0) return slot + Pick(2);
                const std::size_t begin = (page[slot] | page[slot + 1] << 8) & 0x1FFF;
                return Pick(2) == 0 ? begin + Pick(16) : begin - std::min<std::size_t>(begin, 1 + Pick(12));
            }
            case 2:  // a definition: its head more often than its columns and names
                return Pick(2) == 0 ? Pick(64) : Pick(1200);
            case 3:
            case 4:  // an index page: header and mask, or the first entries
                return Pick(3) == 0 ? 480 + Pick(200) : Pick(64);
            default:
                return Pick(160);
        }
    }

    void Overwrite(std::uint8_t* page, std::size_t offset) {
        offset = std::min(offset, page_ - 4);
        switch (Pick(6)) {
            case 0:
                page[offset] ^= static_cast<std::uint8_t>(1U << Pick(8));
                break;
            case 1:
                page[offset] = static_cast<std::uint8_t>(Pick(256));
                break;
            case 2:
                page[offset] = static_cast<std::uint8_t>(page[offset] + (Pick(2) == 0 ? 1 : 255));
                break;
            case 3:
                page[offset] = Pick(2) == 0 ? 0 : 0xFF;
                break;
            case 4: {  // a page number or a pointer to a row that might be
                const auto number = static_cast<std::uint32_t>(Pick(Pages() + 2));
                const std::uint32_t value =
                    Pick(2) == 0 ? number : number << 8 | static_cast<std::uint32_t>(Pick(8));
                std::memcpy(page + offset, &value, sizeof value);
                break;
            }
            default: {
                static constexpr std::uint16_t kEdges[] = {0,    1,    254,    255,    256,
                                                           4095, 4096, 0x7FFF, 0x8000, 0xFFFF};
                const std::uint16_t value = kEdges[Pick(std::size(kEdges))];
                std::memcpy(page + offset, &value, sizeof value);
                break;
            }
        }
    }

    std::uint8_t* data_;
    std::size_t size_, maxSize_, page_;
    std::minstd_rand random_;
};

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    return PageMutator(data, size, maxSize, seed).Run();
}

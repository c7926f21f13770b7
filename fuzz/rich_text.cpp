// Help texts: any bytes give paragraphs, and not more of them than the bytes can stand for.

#include <cstdlib>
#include <string_view>

#include "databook_bytes.h"
#include "platform/text/utf8.h"
#include "records/rich_text_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::size_t text = 0;
    const auto paragraphs = records::ReadRichText(bytes);
    for (const controls::RichParagraph& paragraph : paragraphs) {
        for (const controls::RichRun& run : paragraph.runs) {
            if (run.text.empty() || !text::IsUtf8(run.text)) std::abort();
            text += run.text.size();
        }
    }
    // A byte stands for one character, three bytes of UTF-8 at the most.
    if (paragraphs.size() > size || text > 3 * size + 3) std::abort();
    return 0;
}

// Delimited text, as a file and line by line.

#include <string>
#include <string_view>
#include <vector>

#include "databook_bytes.h"
#include "import/delimited_line.h"
#include "import/delimited_source.h"
#include "import/source_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    const std::string text = importing::SourceTextOf({reinterpret_cast<const char*>(data), size});
    for (const bool headerRow : {true, false}) {
        fuzz::Tolerate([&] {
            importing::SourceGrid grid;
            importing::DelimitedFormat format;
            std::vector<std::uint32_t> lines;
            importing::ParseDelimitedText(text, "fuzz.csv", headerRow, grid, format, lines);
        });
    }
    const std::string_view line = std::string_view(text).substr(0, text.find('\n'));
    const char delimiter = importing::DetectDelimiter(line);
    fuzz::Tolerate([&] {
        std::string scratch;
        static_cast<void>(importing::NormalizeLine(line, delimiter, scratch));
    });
    fuzz::Tolerate([&] {
        bool bookEnd = false;
        static_cast<void>(importing::CountDelimitedFields(line, delimiter, bookEnd));
    });
    return 0;
}

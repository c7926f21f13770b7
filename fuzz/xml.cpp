// XML sources: the scan for tags, and the records with the tags that it found.

#include <string>
#include <vector>

#include "databook_bytes.h"
#include "import/source_text.h"
#include "import/xml_source.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    const std::string text = importing::SourceTextOf({reinterpret_cast<const char*>(data), size});
    fuzz::Tolerate([&] {
        const std::vector<std::string> tags = importing::ScanXmlTags(text, "fuzz.xml");
        importing::SourceGrid grid;
        std::vector<std::uint32_t> lines;
        importing::ParseXmlText(text, "fuzz.xml", tags, grid, lines);
    });
    return 0;
}

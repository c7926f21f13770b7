#include <cstdio>
#include <exception>
#include <filesystem>

#include "databook/template.h"

namespace {

/// A fixed day, so that every build makes the same bytes.
constexpr int kYear = 2026;

}  // namespace

/// make_template OUT.mdb: makes the template Databook that the program copies new Databooks from.
int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: make_template OUT.mdb\n", stderr);
        return 2;
    }
    const std::filesystem::path out = arguments[1];
    std::filesystem::path unfinished = out;
    unfinished += ".new";
    try {
        if (out.has_parent_path()) std::filesystem::create_directories(out.parent_path());
        std::filesystem::remove(unfinished);
        zenvora::databook::CreateTemplate(unfinished, *zenvora::text::DayNumber(kYear, 1, 1));
        std::filesystem::rename(unfinished, out);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "make_template: %s: %s\n", arguments[1], failure.what());
        return 3;
    }
    return 0;
}

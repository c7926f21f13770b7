#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

/// Independent readers of PDF files (poppler-utils).
namespace zenvora::testing_support {

/// What a command writes to standard output.
[[nodiscard]] inline std::string OutputOf(const std::string& command) {
    struct Close {
        void operator()(FILE* pipe) const { pclose(pipe); }
    };
    const std::unique_ptr<FILE, Close> pipe(popen(command.c_str(), "r"));
    std::string output;
    std::array<char, 4096> piece{};
    std::size_t count = 0;
    while (pipe && (count = fread(piece.data(), 1, piece.size(), pipe.get())) > 0)
        output.append(piece.data(), count);
    return output;
}

[[nodiscard]] inline bool HasCommand(const std::string& name) {
    return !OutputOf("command -v " + name).empty();
}

}  // namespace zenvora::testing_support

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): GTEST_SKIP must stand in the test itself
#define NEEDS_POPPLER() \
    if (!testing_support::HasCommand("pdftotext")) GTEST_SKIP() << "pdftotext is not installed"

#include "support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>  // mkdtemp is no part of <cstdlib>
#include <string>

namespace zenvora::testing_support {

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zenvora-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder: " + pattern);
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempFolder::Write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + path.string());
    return path;
}

std::string TempFolder::Read(std::string_view name) const {
    std::ifstream in(path_ / name, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << name;
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace zenvora::testing_support

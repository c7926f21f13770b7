// Gives a fuzz target every file of a folder: what once was found must not come back.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::cerr << entry.path().filename().string()
                  << std::endl;  // the last one named is the one that fails
        std::ifstream in(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    return files > 0 ? 0 : 1;
}

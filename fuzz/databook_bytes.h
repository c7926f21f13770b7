#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "platform/jet/database.h"
#include "support/memory_disk.h"

/// What the fuzz targets over .mdb files share.
namespace zenvora::fuzz {

/// Where the file under test lies on its disk in memory.
inline constexpr const char* kDatabook = "fuzz.mdb";

/// A disk in memory that holds the bytes as kDatabook.
[[nodiscard]] testing_support::MemoryDisk DiskWith(const std::uint8_t* data, std::size_t size);

/// Runs `work`; a Fault is what damage must end in, so it passes. Everything else ends the program.
/// Returns true when there was no fault.
bool Tolerate(const std::function<void()>& work);

/// Reads every row and value of every table, and every index. Faults pass; damage in one table or index does
/// not keep the others from being read.
void ReadAll(jet::Database& databook);

}  // namespace zenvora::fuzz

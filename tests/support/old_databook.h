#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zenvora::testing_support {

/// A record of a Databook from before the listing columns.
struct OldRecord {
    std::string key;
    std::string neighbourhood{};  ///< NEIGHBORHD, the free address line
    std::string otherArea1{};     ///< original list price
    std::string otherArea2{};     ///< original list date
    std::string contrKDate{};     ///< current list date
    std::string ercFinal{};       ///< current list price
    std::string address2{};
    std::string city{};
    std::string state{};
    std::string zip{};
};

struct OldDatabook {
    bool takesEmptyText = true;  ///< false: as most old files have it
    bool hasCentralKey = true;
    bool hasOldColumns = true;  ///< OtherArea1 and the others that the listing columns are filled from
};

/// Makes an old Databook: the table COMPS without the eight listing columns. Into `path` itself when a file
/// without COMPS stands there. Texts that are empty are stored as Null.
void MakeOldDatabook(const std::filesystem::path& path, const std::vector<OldRecord>& records,
                     const OldDatabook& kind = {});

}  // namespace zenvora::testing_support

#pragma once

#include <string>
#include <vector>

namespace zenvora::importing {

enum class FieldType { Text, Date, Number };

/// A field that a source column can be mapped to.
struct DestinationField {
    std::string caption;  ///< as the lists and map files name it
    std::string column;   ///< column of COMPS
    std::string source;   ///< name of the source field mapped to it, empty while there is none
    FieldType type = FieldType::Text;
};

/// The thirteen destination fields in their order, none mapped.
[[nodiscard]] std::vector<DestinationField> DestinationFields();

}  // namespace zenvora::importing

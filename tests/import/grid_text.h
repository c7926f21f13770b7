#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "import/source_grid.h"
#include "platform/fault.h"

namespace zenvora::testing_support {

using Row = std::vector<std::string>;

/// The grid's cells, row by row.
inline std::vector<Row> CellsOf(const importing::SourceGrid& grid) {
    std::vector<Row> rows;
    for (int row = 0; row < grid.Rows(); ++row) {
        Row& cells = rows.emplace_back();
        for (int col = 0; col < grid.Cols(); ++col)
            cells.emplace_back(grid.TextMatrix(row, col));
    }
    return rows;
}

/// The fault that `action` ends in; without one the test fails.
inline Fault FaultOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const Fault& fault) {
        return fault;
    }
    ADD_FAILURE() << "a fault was expected";
    return Fault{0, ""};
}

}  // namespace zenvora::testing_support

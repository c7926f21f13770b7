#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/jet/detail/verify_table.h"

namespace zenvora::jet::detail {

/// Checks the catalog and then every table that it names.
class CatalogCheck {
  public:
    explicit CatalogCheck(PageBook& book) : book_(book), findings_(book.Found()) {}
    /// False when a table could not be looked at, so that its pages are not known.
    bool Run();

  private:
    struct Entry {
        RowId row;
        std::int32_t id = 0, parent = 0;
        bool table = false;
        std::string name;
    };
    bool ReadEntries(TableCheck& catalog);
    void CheckEntries();
    void CheckCatalogIndexes(TableCheck& catalog);
    void CheckProperties(TableCheck& catalog);
    [[nodiscard]] bool PropertiesReadable(const Bytes& bytes) const;
    void CheckRights(TableCheck& rights);
    [[nodiscard]] Spot At(const Entry& entry) const;

    PageBook& book_;
    Findings& findings_;
    std::vector<Entry> entries_;
};

}  // namespace zenvora::jet::detail

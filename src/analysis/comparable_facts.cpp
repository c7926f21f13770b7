#include "analysis/comparable_facts.h"

#include "databook/field_access.h"

namespace zenvora::analysis {

ComparableColumns::ComparableColumns(const ado::Recordset& records)
    : origListDate(records.FieldIndex("ORIGLISTDATE")),
      currListDate(records.FieldIndex("LASTLISTDATE")),
      contractDate(records.FieldIndex("CONTRACTDATE")),
      cancelDate(records.FieldIndex("LISTCANCELDATE")),
      saleDate(records.FieldIndex("SALEDATE")),
      origListPrice(records.FieldIndex("ORIGLISTPRICE")),
      currListPrice(records.FieldIndex("LASTLISTPRICE")),
      salePrice(records.FieldIndex("SELLINGPR")) {}

ComparableFacts ReadFacts(const ado::Recordset& records, const ComparableColumns& columns,
                          const shell::Clock& clock) {
    ComparableFacts facts;
    facts.origListDate = databook::FieldDate(records, columns.origListDate, clock);
    facts.currListDate = databook::FieldDate(records, columns.currListDate, clock);
    facts.contractDate = databook::FieldDate(records, columns.contractDate, clock);
    facts.cancelDate = databook::FieldDate(records, columns.cancelDate, clock);
    facts.saleDate = databook::FieldDate(records, columns.saleDate, clock);
    facts.origListPrice = databook::FieldDouble(records, columns.origListPrice);
    facts.currListPrice = databook::FieldDouble(records, columns.currListPrice);
    facts.salePrice = databook::FieldDouble(records, columns.salePrice);
    return facts;
}

}  // namespace zenvora::analysis

#include "import/destination_fields.h"

namespace zenvora::importing {

std::vector<DestinationField> DestinationFields() {
    using enum FieldType;
    return {
        {"Address", "CENTRALKEY", "", Text},
        {"Original Listing Date", "ORIGLISTDATE", "", Date},
        {"Original Listing Price", "ORIGLISTPRICE", "", Number},
        {"Current Listing Date", "LASTLISTDATE", "", Date},
        {"Current Listing Price", "LASTLISTPRICE", "", Number},
        {"Contract Date", "CONTRACTDATE", "", Date},
        {"Listing Cancel Date", "LISTCANCELDATE", "", Date},
        {"Sale Date", "SALEDATE", "", Date},
        {"Selling Price", "SELLINGPR", "", Number},
        {"City", "CITY", "", Text},
        {"State", "ST", "", Text},
        {"Zip", "ZIP", "", Text},
        {"Days On Market", "DAYSONMARKET", "", Number},
    };
}

}  // namespace zenvora::importing

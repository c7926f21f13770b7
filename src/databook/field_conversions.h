#pragma once

#include <string>
#include <vector>

#include "common/session.h"
#include "platform/ado/adodc.h"

namespace zenvora::databook {

/// A column and the value that its records hold where nothing else is known.
struct ColumnDefault {
    std::string column;
    std::string value;  ///< as the column's type takes it: "0", "01/01/1900", "3"
};

/// Fills the listing columns of every record of `control` from the columns that old Databooks kept them in,
/// and writes each record once. Without records nothing happens.
///
/// The address line of NEIGHBORHD goes to ADDRESS2 where that is empty; its city, state and zip are read and
/// stored through `adoDatabook`, the control of the main form, whatever `control` is (left out while that one
/// has no current record), and NEIGHBORHD is emptied when they hold a state. The original list price comes
/// from OtherArea1, the current list date from ContrKDate (where none is stored yet), the current list price
/// from ERCFinal (likewise), the original list date from OtherArea2. Doing all this again to a record changes
/// nothing.
///
/// `defaults`: what is still Null in these columns at the end gets their value. Faults: 3265 (a listing
/// column is missing), those of Recordset::Update, with the record as their place; the records before it are
/// done. False: a disk fault stopped it and the user chose to leave it at that.
bool PerformFieldConversions(common::Session& session, ado::Adodc& control, ado::Adodc& adoDatabook,
                             const std::vector<ColumnDefault>& defaults = {});

}  // namespace zenvora::databook

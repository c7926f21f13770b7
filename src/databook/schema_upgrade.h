#pragma once

#include <array>
#include <filesystem>
#include <string_view>

#include "common/session.h"
#include "platform/ado/adodc.h"

/// Brings Databooks of older programs up to date: the columns of listings, and what goes into them.
namespace zenvora::databook {

/// A column with the texts of its type and its default (empty: none) as the statements take them.
struct ListingColumn {
    std::string_view name;
    std::string_view type;
    std::string_view defaultText;
};

/// The columns that old Databooks lack, in the order of their adding. One without ORIGLISTPRICE is old.
inline constexpr std::array<ListingColumn, 8> kListingColumns{{
    {"ORIGLISTPRICE", "DOUBLE", "0"},
    {"ORIGLISTDATE", "DATE", "01/01/1900"},
    {"LISTINGDOM", "CHAR(4)", ""},
    {"SELECTED", "CHAR(1)", "3"},
    {"LASTLISTPRICE", "DOUBLE", "0"},
    {"LASTLISTDATE", "DATE", "01/01/1900"},
    {"CONTRACTDATE", "DATE", "01/01/1900"},
    {"LISTCANCELDATE", "DATE", "01/01/1900"},
}};

/// Adds the listing columns that the Databook at `path` lacks, without a word; records that it holds get the
/// defaults of the columns added. A file that is not there, or is empty, is passed over, and so is a column
/// that cannot be added, because it exists or because the file may not be written. `mapper` leads from `path`
/// to the host, as for data controls. Faults: those of opening the Databook; 3078 it has no table COMPS.
void InsertMissingCompsFields(common::Session& session, std::string_view path,
                              const ado::PathMapper& mapper = {});

/// What Check4NewListingFieldsMain did.
struct UpgradeOutcome {
    bool converted =
        false;              ///< the Databook was of Access 97 and was brought into the format that is written
    bool upgraded = false;  ///< the Databook was old and is up to date now
    long records = 0;       ///< records of an upgraded Databook
    std::filesystem::path backup;  ///< the old file, when either happened
};

/// Checks the Databook that `control` is connected to, upgrades an old one, and leaves all its columns
/// selected.
///
/// A Databook without CENTRALKEY is none: a message says so, and the program ends (common::ProgramEnds). One
/// with ORIGLISTPRICE is up to date and nothing happens. Any other is kept as NAME.bak, gets the listing
/// columns, has its old fields converted (PerformFieldConversions; `adoDatabook` is the main form's control,
/// often the same one), and every record ends up with the default in each new column that nothing filled; one
/// message before, one behind. When an earlier upgrade was broken off, the user is asked whether to do it
/// again from NAME.bak. A Databook of Access 97 is first brought into the format that can be written, with a
/// message; NAME.bak is then that original.
///
/// `fullPath` is named in messages and opened for the statements, through the control's mapper. Faults: those
/// of the store and of the copy, by the error rule; after one of the copy the Databook is untouched; 3027 and
/// others when the columns cannot be added.
UpgradeOutcome Check4NewListingFieldsMain(common::Session& session, ado::Adodc& control,
                                          std::string_view fullPath, ado::Adodc& adoDatabook);
/// The same on the main form's control.
UpgradeOutcome Check4NewListingFieldsMain(common::Session& session, ado::Adodc& adoDatabook,
                                          std::string_view fullPath);

}  // namespace zenvora::databook

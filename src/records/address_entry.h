#pragma once

#include <string>

#include "common/session.h"
#include "platform/ado/adodc.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/rich_text.h"
#include "platform/controls/text_box.h"
#include "records/city_list.h"

namespace zenvora::records {

/// The fields of an address in the editor.
struct AddressFields {
    controls::TextBox& txtStreet;
    controls::TextBox& txtCity;
    controls::TextBox& txtState;
    controls::TextBox& txtZip;
    controls::ComboBox& cboCity;
};

/// The rules of the address: the street in upper case is the record's key and must be unlike all others;
/// city, state and zip feed the list of known places.
class AddressEntry {
  public:
    /// `records` are those that a new street is searched in; `currentKey` is the key that the record is to
    /// bear, which a new unique street replaces.
    AddressEntry(common::Session& session, const AddressFields& fields, controls::RichText& rtxtInfo,
                 ado::Adodc& records, std::string& currentKey)
        : fields_(fields),
          rtxtInfo_(rtxtInfo),
          records_(records),
          currentKey_(currentKey),
          cities_(session) {}

    /// The street is left: an empty one becomes the key again; one that is the key of a record draws a
    /// warning in the panel; another one becomes the key. Faults: those of the search.
    void StreetLeft();
    void StateChanged();
    /// The city or the zip has changed.
    void PlaceChanged();
    /// An entry of cboCity was picked.
    void CityPicked();
    /// Writes the new places to the settings file.
    void StorePlaces() { cities_.Store(); }

  private:
    void AddCityToCombo();

    AddressFields fields_;
    controls::RichText& rtxtInfo_;
    ado::Adodc& records_;
    std::string& currentKey_;
    CityList cities_;
};

}  // namespace zenvora::records

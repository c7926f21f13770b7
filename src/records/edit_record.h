#pragma once

#include <string_view>

#include "records/application.h"
#include "records/main_form.h"

/// Adding, changing and deleting the record that the key box names.
///
/// A fault that nobody handles on the way is told in one message, and the program goes on; only
/// common::ProgramEnds comes out of here.
namespace zenvora::records {

/// Opens the dialog frmEdit on a record, and brings the main form up to date afterwards.
///
/// Mode (trimmed, any case) "ADD": a record with the key box's text as its key and address is stored first,
/// and stays whatever the dialog does; the figures are worked out anew at the end. "RENAME": no dialog, the
/// main form alone is brought up to date. Any other mode: the record of the key box. Every mode ends with a
/// validity run over all records.
void EditRecord(const Application& application, MainForm& main, std::string_view mode);

/// Asks, deletes the current record of the main form's adoDatabook, and selects the one behind it, or the
/// last one. Neither a validity run nor a calculation follows.
void DeleteRecord(const Application& application, MainForm& main);

}  // namespace zenvora::records

// The dialog side of the wizard: its controls, and what their buttons do.

#include <filesystem>
#include <utility>

#include "common/error_rule.h"
#include "import/csv_wizard.h"
#include "import/mapping.h"

namespace zenvora::importing {

namespace {

constexpr float kWidth = 11700;
constexpr float kClosedHeight = 7515;
constexpr float kOpenHeight = 11580;
/// Enough to see what the mappings make of a source, and tried in no time.
constexpr int kPreviewRows = 50;

}  // namespace

std::optional<std::string> frmCSVWizard::SourceRows::Value(int row, int column) const {
    if (row < 0 || row >= RowCount() || column < 0 || column >= grid_.Cols()) return std::nullopt;
    return std::string(grid_.TextMatrix(row + 1, column));
}

void frmCSVWizard::LayOut() {
    const auto add = [this](controls::CaptionControl& control, const char* caption) {
        control.SetCaption(caption);
        Add(control);
    };
    Add(gridSource);
    gridSource.SetRows(&sourceRows_);
    add(cbHeaderRow, "Header Row");
    cbHeaderRow.SetValue(controls::CheckBox::kChecked);
    Add(lbSourceFields);
    lbSourceFields.SetMultiSelect(true);
    Add(lbDestFields);
    add(btnAddMapping, "Add Map Item");
    add(btnJoinFields, "Join Fields");
    add(btnSuggestMap, "Suggest Map");
    add(btnLastMap, "Last Map");
    btnLastMap.SetEnabled(false);
    Add(lbMappings);
    add(btnRemoveMapItem, "Remove Item");
    add(btnReset, "Reset Map");
    add(btnLoadMappings, "Load Map");
    add(btnSaveMappings, "Save Map");
    Add(lbNotes);
    add(btnPreview, "Preview");
    add(btnLoadDB, "Load DB");
    add(btnCancel, "Cancel");
    Add(pbLoadStatus);
    pbLoadStatus.SetVisible(false);
    add(btnShowAdvanced1, "Show the preview and the log");
    add(btnShowAdvanced2, "Hide the preview and the log");
    btnShowAdvanced1.SetPicture("open-panel");
    btnShowAdvanced2.SetPicture("close-panel");
    btnShowAdvanced2.SetVisible(false);
    add(fraAdvanced, "");
    fraAdvanced.SetVisible(false);
    Add(gridPreview);
    gridPreview.SetColumns(LoadPreview::Columns(fields_));
    gridPreview.SetRows(&preview_);
    add(lblSummary, "");
    Add(ListBox1);
    add(btnSaveLog, "Save Log");
    add(btnClear, "Clear");
    Add(lbScratch);
    lbScratch.SetVisible(false);
    SetPlacement({.width = kWidth, .height = kClosedHeight});

    dlgMaps.title = "Load Map";
    dlgMaps.filter = "Map Files (*.map)|*.map";
    dlgMaps.defaultExtension = "map";
    dlgLog.title = "Save Log";
    dlgLog.filter = "Log Files (*.log)|*.log|Text Files (*.txt)|*.txt";
    dlgLog.defaultExtension = "log";
    dlgLog.forSaving = true;
}

void frmCSVWizard::SetRules() {
    btnAddMapping.OnClick([this] { btnAddMapping_Click(); });
    btnJoinFields.OnClick([this] { btnJoinFields_Click(); });
    btnSuggestMap.OnClick([this] { btnSuggestMap_Click(); });
    btnLastMap.OnClick([this] { btnLastMap_Click(); });
    btnRemoveMapItem.OnClick([this] { btnRemoveMapItem_Click(); });
    btnReset.OnClick([this] { btnReset_Click(); });
    btnLoadMappings.OnClick([this] { btnLoadMappings_Click(); });
    btnSaveMappings.OnClick([this] { btnSaveMappings_Click(); });
    btnPreview.OnClick([this] { btnPreview_Click(); });
    btnLoadDB.OnClick([this] { btnLoadDB_Click(); });
    btnCancel.OnClick([] { btnCancel_Click(); });
    btnSaveLog.OnClick([this] { btnSaveLog_Click(); });
    btnClear.OnClick([this] { btnClear_Click(); });
    btnShowAdvanced1.OnClick([this] { btnShowAdvanced1_Click(); });
    btnShowAdvanced2.OnClick([this] { btnShowAdvanced2_Click(); });
}

void frmCSVWizard::OnActivate() {
    ReadSource(std::filesystem::path(CSVMDBFilename).parent_path().string());
}

void frmCSVWizard::Say(const char* message) {
    desktop_.Show({.text = message, .title = "Zenvora"});
}

void frmCSVWizard::ShowSource() {
    std::vector<controls::GridColumn> columns;
    columns.reserve(static_cast<std::size_t>(DataGridView1.Cols()));
    for (int col = 0; col < DataGridView1.Cols(); ++col)
        columns.push_back({.caption = FieldCaption(col), .fitsValues = true});
    gridSource.SetColumns(std::move(columns));
    gridSource.Refresh();
}

void frmCSVWizard::btnAddMapping_Click() {
    const int source = SelectedListIndex(lbSourceFields);
    const int destination = SelectedListIndex(lbDestFields);
    if (source == -1 || destination == -1) {
        Say("To Map fields, you must select one Source Field and one Dest Field and THEN press the Add Map "
            "Item Button");
        return;
    }
    AddMapItem(lbSourceFields.List(source), lbDestFields.List(destination));
    lbSourceFields.RemoveItem(source);
    lbDestFields.RemoveItem(destination);
}

void frmCSVWizard::btnJoinFields_Click() {
    std::vector<std::string> names;
    for (int i = 0; i < lbSourceFields.ListCount(); ++i) {
        if (lbSourceFields.Selected(i)) names.push_back(lbSourceFields.List(i));
    }
    if (names.size() < 2) {
        Say("To Join fields, you must select two or more Source Fields and THEN press the Join Fields "
            "Button");
        return;
    }
    if (!JoinFields(names)) {
        Say("These fields cannot be joined: a field without a name of its own is among them, or they are "
            "joined already.");
        return;
    }
    lbSourceFields.SetListIndex(lbSourceFields.ListCount() - 1);
}

void frmCSVWizard::btnSuggestMap_Click() {
    const SuggestedMap suggested = Suggest();
    lbNotes.Clear();
    for (const std::string& note : suggested.notes)
        lbNotes.AddItem(note);
    if (suggested.mappings.empty())
        Say("No further field of the source is known by its name. Map the others by hand.");
}

void frmCSVWizard::btnLastMap_Click() {
    const std::optional<std::vector<std::string>> mappings = LastMap();
    if (!mappings) return;
    lbMappings.Clear();
    for (const std::string& mapping : *mappings)
        lbMappings.AddItem(mapping);
    TakeInJoinedFields();
}

void frmCSVWizard::btnRemoveMapItem_Click() {
    const int row = SelectedListIndex(lbMappings);
    if (row == -1) return;
    const std::string text = lbMappings.List(row);
    const Mapping mapping = RequiredMapping(text, {});
    lbMappings.RemoveItem(row);
    lbSourceFields.AddItem(std::string(mapping.source));
    lbDestFields.AddItem(std::string(mapping.destination));
}

void frmCSVWizard::btnReset_Click() {
    LoadDestFields();
    LoadSourceFields();
    lbMappings.Clear();
    lbNotes.Clear();
}

void frmCSVWizard::btnLoadMappings_Click() {
    LoadMapFile();
}

void frmCSVWizard::btnSaveMappings_Click() {
    if (lbMappings.ListCount() == 0) {
        Say("There are no mappings to save");
        return;
    }
    dlgMaps.forSaving = true;
    const std::string path = desktop_.Choose(dlgMaps);
    if (!path.empty()) SaveMap(path);
}

void frmCSVWizard::btnPreview_Click() {
    preview_.SetRows(Preview(kPreviewRows));
    gridPreview.Refresh();
    if (btnShowAdvanced1.Visible()) btnShowAdvanced1_Click();
}

void frmCSVWizard::btnLoadDB_Click() {
    pbLoadStatus.SetVisible(true);
    LoadMasterFieldArrayMap();
    LoadDB();
    // With the lower panel open the dialog stays, so that the log can be read.
    if (btnShowAdvanced1.Visible()) Unload();
}

void frmCSVWizard::btnCancel_Click() {
    throw common::ProgramEnds{};
}

void frmCSVWizard::btnSaveLog_Click() {
    if (ListBox1.ListCount() == 0) {
        Say("There is no log to save");
        return;
    }
    const std::string path = desktop_.Choose(dlgLog);
    if (!path.empty()) SaveLog(path);
}

void frmCSVWizard::btnClear_Click() {
    ListBox1.Clear();
}

void frmCSVWizard::btnShowAdvanced1_Click() {
    controls::Placement placement = Placement();
    placement.height = kOpenHeight;
    SetPlacement(placement);
    btnShowAdvanced1.SetVisible(false);
    btnShowAdvanced2.SetVisible(true);
    fraAdvanced.SetVisible(true);
}

void frmCSVWizard::btnShowAdvanced2_Click() {
    controls::Placement placement = Placement();
    placement.height = kClosedHeight;
    SetPlacement(placement);
    btnShowAdvanced1.SetVisible(true);
    btnShowAdvanced2.SetVisible(false);
    fraAdvanced.SetVisible(false);
}

}  // namespace zenvora::importing

#include "import/csv_wizard.h"

#include <utility>

#include "import/mapping.h"
#include "import/source_text.h"
#include "import/xml_source.h"
#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

/// The sides of a row of lbMappings; `place` says where a row that is no mapping came from.
Mapping SplitOrFault(std::string_view row, Place place) {
    if (const std::optional<Mapping> mapping = SplitMapping(row)) return *mapping;
    throw Fault{fault::kInvalidCall,
                "\"" + std::string(row) +
                    "\" is no mapping: it must read SOURCE FIELD <-> DESTINATION FIELD. Correct the line or "
                    "take it out.",
                std::move(place)};
}

}  // namespace

frmCSVWizard::frmCSVWizard(controls::Desktop& desktop, const shell::Clock& clock, LoadTarget& target,
                           files::HostDisk& disk)
    : desktop_(desktop), clock_(clock), target_(target), disk_(disk), fields_(DestinationFields()) {
    dlgMaps.title = "Load Map";
    dlgMaps.filter = "Map Files (*.map)|*.map";
    dlgMaps.defaultExtension = "map";
}

void frmCSVWizard::Say(const char* message) {
    desktop_.Show({.text = message, .title = "Zenvora"});
}

void frmCSVWizard::Activate(std::string_view folder) {
    dlgMaps.directory = folder;
    InitDataGrid();
    InitMasterFieldArray();
    LoadDestFields();
    if (CSVFilename.find(".xml") != std::string::npos) {
        ParseXML(CSVFilename);
    } else {
        ParseCSV(CSVFilename);
    }
    LoadSourceFields();
}

void frmCSVWizard::RunUnattended(SourceKind kind) {
    PrepareUnattended(kind);
    LoadDB();
}

void frmCSVWizard::PrepareUnattended(SourceKind kind) {
    InitDataGrid();
    InitMasterFieldArray();
    LoadDestFields();
    if (kind == SourceKind::Xml) {
        ParseXML(CSVFilename);
    } else {
        ParseCSV(CSVFilename);
    }
    LoadSourceFields();
    LoadMapFile();
    LoadMasterFieldArrayMap();
}

void frmCSVWizard::InitDataGrid() {
    DataGridView1.SetCols(1);
    DataGridView1.SetRows(1);
    DataGridView1.Clear();
}

void frmCSVWizard::InitMasterFieldArray() {
    fields_ = DestinationFields();
}

void frmCSVWizard::LoadDestFields() {
    lbDestFields.Clear();
    for (const DestinationField& field : fields_)
        lbDestFields.AddItem(field.caption);
}

void frmCSVWizard::LoadSourceFields() {
    lbSourceFields.Clear();
    for (int col = 0; col < DataGridView1.Cols(); ++col) {
        const std::string_view name = DataGridView1.TextMatrix(0, col);
        lbSourceFields.AddItem(name.empty() ? "Field " + std::to_string(col) : std::string(name));
    }
}

void frmCSVWizard::ParseCSV(const std::string& path) {
    const std::string text = ReadSourceText(disk_, path);
    ParseDelimitedText(text, path, cbHeaderRow, DataGridView1, format_, lines_);
}

void frmCSVWizard::ParseXML(const std::string& path) {
    const std::string text = ReadSourceText(disk_, path);
    const std::vector<std::string> tags = ScanXmlTags(text, path);
    lbScratch.Clear();
    for (const std::string& tag : tags)
        lbScratch.AddItem(tag);
    ParseXmlText(text, path, tags, DataGridView1, lines_);
}

void frmCSVWizard::LoadMapFile() {
    if (g_MapFileName.empty()) {
        dlgMaps.forSaving = false;
        g_MapFileName = desktop_.Choose(dlgMaps);
    }
    if (!g_MapFileName.empty()) LoadMap(g_MapFileName);
}

void frmCSVWizard::LoadMap(const std::string& path) {
    lbMappings.Clear();
    mapFile_ = path;
    badMapLine_ = 0;
    for (std::string& line : ReadMapFile(disk_, path)) {
        if (badMapLine_ == 0 && !SplitMapping(line)) badMapLine_ = lbMappings.ListCount() + 1;
        lbMappings.AddItem(std::move(line));
    }
}

void frmCSVWizard::SaveMap(const std::string& path) {
    std::vector<std::string> rows;
    rows.reserve(static_cast<std::size_t>(lbMappings.ListCount()));
    for (int row = 0; row < lbMappings.ListCount(); ++row)
        rows.push_back(lbMappings.List(row));
    WriteMapFile(disk_, path, rows);
}

void frmCSVWizard::LoadMasterFieldArrayMap() {
    if (lbMappings.ListCount() == 0) {
        Say("There are no field mappings specified. Either set them up now or load an existing Map");
        return;
    }
    for (int row = 0; row < lbMappings.ListCount(); ++row) {
        const std::string text = lbMappings.List(row);
        const Mapping mapping = SplitOrFault(text, PlaceIn(mapFile_, badMapLine_));
        for (DestinationField& field : fields_) {
            if (field.caption == mapping.destination) field.source = mapping.source;
        }
    }
}

bool frmCSVWizard::IsMapped(std::string_view caption) const {
    for (int row = 0; row < lbMappings.ListCount(); ++row) {
        if (lbMappings.List(row).find(caption) != std::string::npos) return true;
    }
    return false;
}

int frmCSVWizard::SelectedListIndex(const controls::ListBox& list) {
    return list.ListIndex();
}

void frmCSVWizard::AddMapItem(std::string_view source, std::string_view destination) {
    lbMappings.AddItem(MappingText(source, destination));
}

LoadPlan frmCSVWizard::Plan() const {
    LoadPlan plan{.columns = {}, .fileDate = CSVFiledate, .currentYear = clock_.Year()};
    for (int col = 0; col < DataGridView1.Cols(); ++col) {
        const std::string_view name = DataGridView1.TextMatrix(0, col);
        const DestinationField* found = nullptr;
        for (const DestinationField& field : fields_) {
            if (field.source == name && IsMapped(field.caption)) found = &field;
        }
        if (found != nullptr) plan.columns.push_back({col, *found});
    }
    return plan;
}

long frmCSVWizard::LineOf(int row) const {
    const auto at = static_cast<std::size_t>(row);
    return at < lines_.size() ? static_cast<long>(lines_[at]) : 0;
}

void frmCSVWizard::BuildRow(InsertStatement& statement, int row, LoadLog* log) const {
    try {
        statement.Build(DataGridView1, row, log);
    } catch (Fault& fault) {
        fault.place.file = CSVFilename;
        fault.place.line = LineOf(row);
        fault.place.record = row;
        throw;
    }
}

void frmCSVWizard::CheckFirstRow() const {
    if (DataGridView1.Rows() < 2) return;
    InsertStatement statement(Plan());
    BuildRow(statement, 1, nullptr);
}

void frmCSVWizard::LoadRow(InsertStatement& statement, int row, LoadLog* log) {
    if (log != nullptr) {
        log->AddItem("");
        log->AddItem("Row  " + std::to_string(row));
        log->AddItem("");
    }
    BuildRow(statement, row, log);
    statement.CatchFaults();
    ++outcome_.rows;
    try {
        target_.Execute(statement.Text());
        ++outcome_.written;
        if (log != nullptr) log->AddItem("Record Written");
    } catch (const Fault& fault) {
        if (log != nullptr) log->AddItem("Record NOT Written");
        RefusedRow refused = ExplainRefusal(fault, statement, DataGridView1, row);
        refused.row = row;
        refused.line = LineOf(row);
        outcome_.refused.push_back(std::move(refused));
    }
}

void frmCSVWizard::LoadDB() {
    const int lastRow = DataGridView1.Rows() - 1;
    outcome_ = {};
    pbLoadStatus.minimum = 0;
    pbLoadStatus.maximum = lastRow;
    pbLoadStatus.value = 0;
    InsertStatement statement(Plan());
    target_.Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + CSVMDBFilename +
                 ";Mode=ReadWrite;Persist Security Info=False");
    try {
        for (int row = 1; row <= lastRow; ++row) {
            pbLoadStatus.value = row;
            desktop_.Progress(row, lastRow);
            LoadRow(statement, row, LogWanted ? &ListBox1 : nullptr);
        }
    } catch (...) {
        try {
            target_.Close();
        } catch (const Fault&) {  // the first fault says what went wrong
        }
        throw;
    }
    target_.Close();
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

void frmCSVWizard::btnRemoveMapItem_Click() {
    const int row = SelectedListIndex(lbMappings);
    if (row == -1) return;
    const std::string text = lbMappings.List(row);
    const Mapping mapping = SplitOrFault(text, {});
    lbMappings.RemoveItem(row);
    lbSourceFields.AddItem(std::string(mapping.source));
    lbDestFields.AddItem(std::string(mapping.destination));
}

void frmCSVWizard::btnReset_Click() {
    LoadDestFields();
    LoadSourceFields();
    lbMappings.Clear();
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

void frmCSVWizard::btnLoadDB_Click() {
    pbLoadStatus.visible = true;
    LoadMasterFieldArrayMap();
    LoadDB();
    // With the lower panel open the dialog stays, so that the log can be read.
    if (btnShowAdvanced1Visible) isUnloaded = true;
}

void frmCSVWizard::btnClear_Click() {
    ListBox1.Clear();
}

void frmCSVWizard::btnShowAdvanced1_Click() {
    heightTwips = 11580;
    btnShowAdvanced1Visible = false;
}

void frmCSVWizard::btnShowAdvanced2_Click() {
    heightTwips = 7515;
    btnShowAdvanced1Visible = true;
}

std::optional<SourceKind> SourceKindOf(const std::string& path) {
    const std::string extension = text::Upper(std::filesystem::path(path).extension().string());
    if (extension == ".CSV" || extension == ".TXT") return SourceKind::Delimited;
    if (extension == ".XML") return SourceKind::Xml;
    return std::nullopt;
}

}  // namespace zenvora::importing

#include "import/csv_wizard.h"

#include <utility>

#include "common/dates.h"
#include "import/joined_fields.h"
#include "import/mapping.h"
#include "import/remembered_maps.h"
#include "import/source_text.h"
#include "import/xml_source.h"
#include "platform/fault.h"
#include "platform/files/whole_file.h"
#include "platform/jet/value.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

/// A stored value as the Comps grid shows it: nothing for a missing date or price.
std::string ShownValue(const jet::Value& value) {
    if (const auto* date = std::get_if<jet::DateTime>(&value);
        date != nullptr && date->serial == common::kDayZero)
        return {};
    if (const auto* number = std::get_if<double>(&value); number != nullptr && *number == 0) return {};
    return text::Trim(jet::ValueText(value));
}

}  // namespace

frmCSVWizard::frmCSVWizard(common::Session& session, LoadTarget& target, files::HostDisk& disk)
    : Form(session.forms, "frmCSVWizard", "CSV Load Wizard"),
      desktop_(session.desktop),
      clock_(session.clock),
      target_(target),
      disk_(disk),
      fields_(DestinationFields()) {
    LayOut();
    SetRules();
}

void frmCSVWizard::ReadSource(std::string_view folder) {
    dlgMaps.directory = folder;
    dlgLog.directory = folder;
    InitDataGrid();
    InitMasterFieldArray();
    LoadDestFields();
    if (CSVFilename.find(".xml") != std::string::npos) {
        ParseXML(CSVFilename);
    } else {
        ParseCSV(CSVFilename);
    }
    LoadSourceFields();
    const std::vector<std::string> joined = std::move(joined_);
    joined_.clear();
    for (const std::string& name : joined)
        AddJoinedField(name);
    TakeInJoinedFields();
    btnLastMap.SetEnabled(LastMap().has_value());
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
    ShowSource();
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
    for (int col = 0; col < DataGridView1.Cols(); ++col)
        lbSourceFields.AddItem(FieldCaption(col));
}

std::string frmCSVWizard::FieldCaption(int col) const {
    const std::string_view name = DataGridView1.TextMatrix(0, col);
    return name.empty() ? "Field " + std::to_string(col) : std::string(name);
}

void frmCSVWizard::ParseCSV(const std::string& path) {
    const std::string text = ReadSourceText(disk_, path);
    ParseDelimitedText(text, path, cbHeaderRow.Value() == controls::CheckBox::kChecked, DataGridView1,
                       format_, lines_);
    SourceIsRead();
}

void frmCSVWizard::ParseXML(const std::string& path) {
    const std::string text = ReadSourceText(disk_, path);
    const std::vector<std::string> tags = ScanXmlTags(text, path);
    lbScratch.Clear();
    for (const std::string& tag : tags)
        lbScratch.AddItem(tag);
    ParseXmlText(text, path, tags, DataGridView1, lines_);
    SourceIsRead();
}

void frmCSVWizard::SourceIsRead() {
    layout_ = LayoutOf(DataGridView1);
    ShowSource();
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
    TakeInJoinedFields();
}

void frmCSVWizard::SaveMap(const std::string& path) {
    WriteMapFile(disk_, path, Mappings());
}

std::vector<std::string> frmCSVWizard::Mappings() const {
    std::vector<std::string> rows;
    rows.reserve(static_cast<std::size_t>(lbMappings.ListCount()));
    for (int row = 0; row < lbMappings.ListCount(); ++row)
        rows.push_back(lbMappings.List(row));
    return rows;
}

void frmCSVWizard::TakeInJoinedFields() {
    for (const std::string& row : Mappings()) {
        if (const std::optional<Mapping> mapping = SplitMapping(row))
            AddJoinedField(std::string(mapping->source));
    }
}

bool frmCSVWizard::AddJoinedField(const std::string& name) {
    if (AddJoinedColumn(DataGridView1, name) < 0) return false;
    joined_.push_back(name);
    lbSourceFields.AddItem(name);
    ShowSource();
    return true;
}

bool frmCSVWizard::JoinFields(const std::vector<std::string>& names) {
    return names.size() > 1 && AddJoinedField(JoinedName(names));
}

SuggestedMap frmCSVWizard::Suggest() {
    SuggestedMap suggested = SuggestMap(DataGridView1, Mappings(), clock_.Year());
    const auto take = [](controls::ListBox& list, const std::string& text) {
        for (int i = 0; i < list.ListCount(); ++i) {
            if (list.List(i) == text) return list.RemoveItem(i);
        }
    };
    for (const ProposedMapping& mapping : suggested.mappings) {
        AddJoinedField(mapping.source);
        AddMapItem(mapping.source, mapping.destination);
        take(lbSourceFields, mapping.source);
        take(lbDestFields, mapping.destination);
    }
    return suggested;
}

void frmCSVWizard::LoadMasterFieldArrayMap() {
    if (lbMappings.ListCount() == 0) {
        Say("There are no field mappings specified. Either set them up now or load an existing Map");
        return;
    }
    TakeInJoinedFields();
    for (int row = 0; row < lbMappings.ListCount(); ++row) {
        const std::string text = lbMappings.List(row);
        const Mapping mapping = RequiredMapping(text, PlaceIn(mapFile_, badMapLine_));
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
    constexpr int kRowsBetweenLooks = 200;
    const int lastRow = DataGridView1.Rows() - 1;
    outcome_ = {};
    pbLoadStatus.SetRange(0, lastRow);
    pbLoadStatus.SetValue(0);
    InsertStatement statement(Plan());
    target_.Open(ConnectionText());
    try {
        for (int row = 1; row <= lastRow; ++row) {
            pbLoadStatus.SetValue(row);
            desktop_.Progress(row, lastRow);
            LoadRow(statement, row, LogWanted ? &ListBox1.Log() : nullptr);
            if (LogWanted && row % kRowsBetweenLooks == 0) ListBox1.Changed();
        }
    } catch (...) {
        try {
            target_.Close();
        } catch (const Fault&) {  // the first fault says what went wrong
        }
        ListBox1.Changed();
        throw;
    }
    target_.Close();
    ListBox1.Changed();
    lblSummary.SetCaption(SummaryText(outcome_));
    RememberMap();
}

std::string frmCSVWizard::ConnectionText() const {
    return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + CSVMDBFilename +
           ";Mode=ReadWrite;Persist Security Info=False";
}

std::optional<std::vector<std::string>> frmCSVWizard::LastMap() const {
    if (MapsFolder.empty()) return std::nullopt;
    return RememberedMaps(MapsFolder, disk_).Find(layout_);
}

void frmCSVWizard::RememberMap() {
    if (MapsFolder.empty() || outcome_.written == 0) return;
    try {
        RememberedMaps(MapsFolder, disk_).Remember(layout_, Mappings());
    } catch (const Fault&) {
        // The load has gone well, and the map can be made again.
        return;
    }
}

std::vector<PreviewRow> frmCSVWizard::Preview(int rows) {
    const std::vector<DestinationField> fields = fields_;
    try {
        if (lbMappings.ListCount() > 0) LoadMasterFieldArrayMap();
        std::vector<PreviewRow> shown = TryRows(std::min(rows, DataGridView1.Rows() - 1));
        fields_ = fields;
        return shown;
    } catch (...) {
        fields_ = fields;
        throw;
    }
}

std::vector<PreviewRow> frmCSVWizard::TryRows(int last) {
    std::vector<PreviewRow> tried;
    InsertStatement statement(Plan());
    target_.BeginTrial(ConnectionText());
    try {
        for (int row = 1; row <= last; ++row)
            tried.push_back(TryRow(statement, row));
    } catch (...) {
        target_.EndTrial();
        throw;
    }
    target_.EndTrial();
    return tried;
}

PreviewRow frmCSVWizard::TryRow(InsertStatement& statement, int row) {
    PreviewRow shown{.row = row, .line = LineOf(row), .values = std::vector<std::string>(fields_.size())};
    try {
        statement.Build(DataGridView1, row, nullptr);
    } catch (const Fault& fault) {
        shown.refusal = fault.description;
        return shown;
    }
    statement.CatchFaults();
    try {
        target_.Execute(statement.Text());
    } catch (const Fault& fault) {
        shown.refusal = ExplainRefusal(fault, statement, DataGridView1, row).reason;
        return shown;
    }
    std::string key;
    const std::vector<MappedColumn>& columns = statement.Plan().columns;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        if (columns[k].field.column == "CENTRALKEY") key = statement.Values()[k];
    }
    for (const StoredField& stored : target_.FindRecord(key)) {
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (text::EqualsNoCase(fields_[i].column, stored.column))
                shown.values[i] = ShownValue(stored.value);
        }
    }
    return shown;
}

void frmCSVWizard::SaveLog(const std::string& path) {
    std::string text;
    for (int line = 0; line < ListBox1.ListCount(); ++line)
        text.append(ListBox1.Log().List(static_cast<std::size_t>(line))).append("\r\n");
    files::WriteWholeFile(path, text, files::Replaced::KeptAsBak, disk_);
}

std::optional<SourceKind> SourceKindOf(const std::string& path) {
    const std::string extension = text::Upper(std::filesystem::path(path).extension().string());
    if (extension == ".CSV" || extension == ".TXT") return SourceKind::Delimited;
    if (extension == ".XML") return SourceKind::Xml;
    return std::nullopt;
}

}  // namespace zenvora::importing

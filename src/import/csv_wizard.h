#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/delimited_source.h"
#include "import/destination_fields.h"
#include "import/load_log.h"
#include "import/load_outcome.h"
#include "import/load_target.h"
#include "import/source_grid.h"
#include "platform/controls/desktop.h"
#include "platform/controls/list_box.h"
#include "platform/files/host_file.h"
#include "platform/shell/clock.h"
#include "platform/text/date.h"

namespace zenvora::importing {

enum class SourceKind { Delimited, Xml };

/// "CSV Load Wizard": turns a source file into records of a Databook, by mappings of source fields to the
/// thirteen destination fields. Shown, the user builds the mappings; unattended, they come from a map file.
///
/// Paths are host paths. Faults of a parser, a map file or the disk pass through, with file and line as their
/// place.
class frmCSVWizard {
  public:
    frmCSVWizard(controls::Desktop& desktop, const shell::Clock& clock, LoadTarget& target,
                 files::HostDisk& disk = files::SystemDisk());

    // Set by the caller before anything else runs.
    std::string CSVFilename;
    text::Date CSVFiledate = 0;  ///< last change of the source file; listing dates are derived from it
    std::string CSVMDBFilename;  ///< a Databook that exists when LoadDB runs
    std::string g_MapFileName;   ///< empty: LoadMapFile asks for it
    bool DetailedView = false;   ///< shown instead of unattended
    bool LogWanted = true;       ///< false: LoadDB leaves ListBox1 alone, which saves time on large sources

    // The dialog and its controls.
    bool cbHeaderRow = true;
    bool btnShowAdvanced1Visible = true;  ///< the lower panel is closed; else btnShowAdvanced2 can close it
    bool isUnloaded = false;  ///< a load has ended the dialog: its view closes and brings the main window up
    int heightTwips = 7515;
    struct {
        int minimum = 0;
        int maximum = 0;
        int value = 0;
        bool visible = false;
    } pbLoadStatus;
    controls::FileDialog dlgMaps;
    SourceGrid DataGridView1;  ///< row 0 names the columns, the source's rows follow
    controls::ListBox lbSourceFields{"lbSourceFields"};
    controls::ListBox lbDestFields{"lbDestFields"};
    controls::ListBox lbMappings{"lbMappings"};  ///< a row is the whole of a mapping: "Sale Dt <-> Sale Date"
    controls::ListBox lbScratch{"lbScratch"};
    LoadLog ListBox1;

    /// The destination fields with what is mapped to them.
    [[nodiscard]] const std::vector<DestinationField>& FieldName() const noexcept { return fields_; }
    [[nodiscard]] char Delimiter() const noexcept { return format_.Delimiter; }
    [[nodiscard]] bool BookEnd() const noexcept { return format_.BookEnd; }
    /// What became of the rows of the last LoadDB.
    [[nodiscard]] const LoadOutcome& Outcome() const noexcept { return outcome_; }

    /// The shown dialog comes to the front: the source is read anew; the mappings stay. `folder` is that of
    /// the current Databook.
    void Activate(std::string_view folder);
    /// The whole import without the dialog.
    void RunUnattended(SourceKind kind);
    /// The same in two halves, so that a caller can make the Databook between them: all that can go wrong
    /// with the source and the map goes wrong in the first one. LoadDB is the second.
    void PrepareUnattended(SourceKind kind);

    void InitDataGrid();
    void InitMasterFieldArray();
    void LoadDestFields();
    /// The names in row 0 of the grid; "Field 3" for column 3 when it has none.
    void LoadSourceFields();
    void ParseCSV(const std::string& path);
    void ParseXML(const std::string& path);
    /// Loads g_MapFileName; asks for it when it is empty. Cancelled: nothing happens.
    void LoadMapFile();
    /// The rows of a map file become lbMappings, unchecked.
    void LoadMap(const std::string& path);
    void SaveMap(const std::string& path);
    /// Takes the mappings over into FieldName; shows a message when there are none. Names that match nothing
    /// are passed over, of two sources for one destination the later counts, earlier names stay until they
    /// are overwritten. Fault 5: a row without "<->", with map file and line as its place.
    void LoadMasterFieldArrayMap();
    /// True when a row of lbMappings holds the caption anywhere, source side included.
    [[nodiscard]] bool IsMapped(std::string_view caption) const;
    [[nodiscard]] static int SelectedListIndex(const controls::ListBox& list);
    void AddMapItem(std::string_view source, std::string_view destination);
    /// Sends every row of the grid to the Databook as a statement of its own. A refused row is logged and the
    /// load goes on. Faults: those of LoadTarget::Open and Close; 13 or 6 when the listing date of the first
    /// row cannot be worked out from its days on market (see InsertStatement): nothing is written then.
    void LoadDB();
    /// Raises the fault with which LoadDB would end at its first row, if any.
    void CheckFirstRow() const;

    void btnAddMapping_Click();
    void btnRemoveMapItem_Click();
    void btnReset_Click();
    void btnLoadMappings_Click();
    void btnSaveMappings_Click();
    void btnLoadDB_Click();
    void btnClear_Click();
    void btnShowAdvanced1_Click();
    void btnShowAdvanced2_Click();

  private:
    void Say(const char* message);
    [[nodiscard]] LoadPlan Plan() const;
    void BuildRow(InsertStatement& statement, int row, LoadLog* log) const;
    void LoadRow(InsertStatement& statement, int row, LoadLog* log);
    [[nodiscard]] long LineOf(int row) const;

    controls::Desktop& desktop_;
    const shell::Clock& clock_;
    LoadTarget& target_;
    files::HostDisk& disk_;
    std::vector<DestinationField> fields_;
    std::vector<std::uint32_t> lines_;  // of the source file, by grid row
    std::string mapFile_;               // loaded last
    long badMapLine_ = 0;               // first line of it that is no mapping
    LoadOutcome outcome_;
    DelimitedFormat format_;
};

/// The reader for a source file by its extension, whatever its case: CSV and TXT, or XML. Nothing for any
/// other.
[[nodiscard]] std::optional<SourceKind> SourceKindOf(const std::string& path);

}  // namespace zenvora::importing

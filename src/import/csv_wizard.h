#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/session.h"
#include "import/delimited_source.h"
#include "import/destination_fields.h"
#include "import/load_log_box.h"
#include "import/load_outcome.h"
#include "import/load_preview.h"
#include "import/load_target.h"
#include "import/source_grid.h"
#include "import/suggested_map.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/desktop.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/grid.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"
#include "platform/controls/list_box.h"
#include "platform/controls/progress_bar.h"
#include "platform/files/host_file.h"
#include "platform/shell/clock.h"
#include "platform/text/date.h"

namespace zenvora::importing {

enum class SourceKind { Delimited, Xml };

/// "CSV Load Wizard": turns a source file into records of a Databook, by mappings of source fields to the
/// thirteen destination fields. Shown, the user builds the mappings; unattended, they come from a map file.
///
/// A mapping's source may name several fields, "Street Number + Street Name": where no field bears that name
/// and each part is a field, the joined field becomes one of its own in the grid and in lbSourceFields.
///
/// Paths are host paths. Faults of a parser, a map file or the disk pass through, with file and line as their
/// place.
class frmCSVWizard final : public controls::Form {
  public:
    frmCSVWizard(common::Session& session, LoadTarget& target, files::HostDisk& disk = files::SystemDisk());

    // Set by the caller before anything else runs.
    std::string CSVFilename;
    text::Date CSVFiledate = 0;  ///< last change of the source file; listing dates are derived from it
    std::string CSVMDBFilename;  ///< a Databook that exists when LoadDB runs
    std::string g_MapFileName;   ///< empty: LoadMapFile asks for it
    bool DetailedView = false;   ///< shown instead of unattended
    bool LogWanted = true;       ///< false: LoadDB leaves ListBox1 alone, which saves time on large sources
    std::string MapsFolder;      ///< where the maps used last are remembered; empty: they are not

    // ---- controls ----
    SourceGrid DataGridView1;                    ///< row 0 names the columns, the source's rows follow
    controls::Grid gridSource{"DataGridView1"};  ///< what shows it
    controls::CheckBox cbHeaderRow{"cbHeaderRow"};
    controls::ListBox lbSourceFields{"lbSourceFields"};  ///< several can be selected, to be joined
    controls::ListBox lbDestFields{"lbDestFields"};
    controls::CommandButton btnAddMapping{"btnAddMapping"};
    controls::CommandButton btnJoinFields{"btnJoinFields"};
    controls::CommandButton btnSuggestMap{"btnSuggestMap"};
    controls::CommandButton btnLastMap{"btnLastMap"};  ///< enabled when this layout was loaded before
    controls::ListBox lbMappings{"lbMappings"};  ///< a row is the whole of a mapping: "Sale Dt <-> Sale Date"
    controls::CommandButton btnRemoveMapItem{"btnRemoveMapItem"};
    controls::CommandButton btnReset{"btnReset"};
    controls::CommandButton btnLoadMappings{"btnLoadMappings"};
    controls::CommandButton btnSaveMappings{"btnSaveMappings"};
    controls::ListBox lbNotes{"lbNotes"};  ///< what the user should look at, after a suggestion
    controls::CommandButton btnPreview{"btnPreview"};
    controls::CommandButton btnLoadDB{"btnLoadDB"};
    controls::CommandButton btnCancel{"btnCancel"};
    controls::ProgressBar pbLoadStatus{"pbLoadStatus"};
    controls::Image btnShowAdvanced1{"btnShowAdvanced1"};  ///< opens the lower panel
    controls::Image btnShowAdvanced2{"btnShowAdvanced2"};  ///< closes it
    // The lower panel.
    controls::Frame fraAdvanced{"fraAdvanced"};
    controls::Grid gridPreview{"gridPreview"};
    controls::Label lblSummary{"lblSummary"};
    LoadLogBox ListBox1{"ListBox1"};
    controls::CommandButton btnSaveLog{"btnSaveLog"};
    controls::CommandButton btnClear{"btnClear"};
    controls::ListBox lbScratch{"lbScratch"};  ///< never shown
    controls::FileDialog dlgMaps;
    controls::FileDialog dlgLog;

    /// The destination fields with what is mapped to them.
    [[nodiscard]] const std::vector<DestinationField>& FieldName() const noexcept { return fields_; }
    [[nodiscard]] char Delimiter() const noexcept { return format_.Delimiter; }
    [[nodiscard]] bool BookEnd() const noexcept { return format_.BookEnd; }
    /// What became of the rows of the last LoadDB.
    [[nodiscard]] const LoadOutcome& Outcome() const noexcept { return outcome_; }

    /// The shown dialog comes to the front: the source is read anew; the mappings stay. The form does so by
    /// itself, with the folder of CSVMDBFilename. `folder` is that of the current Databook.
    void ReadSource(std::string_view folder);
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
    /// The rows of a map file become lbMappings, unchecked. Joined fields that they name become columns.
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

    /// Makes a joined field of source fields; returns false, and does nothing, when they are fewer than two
    /// or one of them is no field with a name of its own.
    bool JoinFields(const std::vector<std::string>& names);
    /// Adds what the program proposes for fields that are not mapped yet.
    SuggestedMap Suggest();
    /// What the first rows would become with the mappings as they stand. They are sent to the Databook and
    /// taken back, so that it says itself what it refuses. Faults: those of LoadTarget::BeginTrial.
    [[nodiscard]] std::vector<PreviewRow> Preview(int rows);
    /// The map that was used last for this layout; nothing when there is none.
    [[nodiscard]] std::optional<std::vector<std::string>> LastMap() const;
    /// The load log as a text file, a line each; a file that stands there is kept as NAME.bak.
    void SaveLog(const std::string& path);
    /// The user's answer to the last load: counts, and the reasons with their rows. Empty before a load.
    [[nodiscard]] const std::string& Summary() const noexcept { return lblSummary.Caption(); }

    void btnAddMapping_Click();
    void btnJoinFields_Click();
    void btnSuggestMap_Click();
    void btnLastMap_Click();
    void btnRemoveMapItem_Click();
    void btnReset_Click();
    void btnLoadMappings_Click();
    void btnSaveMappings_Click();
    void btnPreview_Click();
    /// With the lower panel closed the form is unloaded at the end; the caller brings the main window up.
    void btnLoadDB_Click();
    /// Ends the whole program (common::ProgramEnds).
    [[noreturn]] static void btnCancel_Click();
    void btnSaveLog_Click();
    void btnClear_Click();
    void btnShowAdvanced1_Click();
    void btnShowAdvanced2_Click();

  protected:
    void OnActivate() override;

  private:
    /// The grid as its control shows it: all rows but the names.
    class SourceRows final : public controls::GridRows {
      public:
        explicit SourceRows(const SourceGrid& grid) : grid_(grid) {}
        [[nodiscard]] int RowCount() const override { return std::max(grid_.Rows() - 1, 0); }
        [[nodiscard]] std::optional<std::string> Value(int row, int column) const override;

      private:
        const SourceGrid& grid_;
    };

    void LayOut();
    void SetRules();
    void Say(const char* message);
    void ShowSource();
    [[nodiscard]] std::string FieldCaption(int col) const;
    [[nodiscard]] std::vector<std::string> Mappings() const;
    /// Makes columns of the joined fields that lbMappings names and that are none yet.
    void TakeInJoinedFields();
    bool AddJoinedField(const std::string& name);
    void SourceIsRead();
    void RememberMap();
    [[nodiscard]] std::string ConnectionText() const;
    [[nodiscard]] LoadPlan Plan() const;
    void BuildRow(InsertStatement& statement, int row, LoadLog* log) const;
    void LoadRow(InsertStatement& statement, int row, LoadLog* log);
    [[nodiscard]] std::vector<PreviewRow> TryRows(int last);
    [[nodiscard]] PreviewRow TryRow(InsertStatement& statement, int row);
    [[nodiscard]] long LineOf(int row) const;

    controls::Desktop& desktop_;
    const shell::Clock& clock_;
    LoadTarget& target_;
    files::HostDisk& disk_;
    SourceRows sourceRows_{DataGridView1};
    LoadPreview preview_;
    std::vector<DestinationField> fields_;
    std::vector<std::uint32_t> lines_;  // of the source file, by grid row
    std::vector<std::string> joined_;   // joined fields, to be made again when the source is read anew
    std::string layout_;                // of the source as it was read
    std::string mapFile_;               // loaded last
    long badMapLine_ = 0;               // first line of it that is no mapping
    LoadOutcome outcome_;
    DelimitedFormat format_;
};

/// The reader for a source file by its extension, whatever its case: CSV and TXT, or XML. Nothing for any
/// other.
[[nodiscard]] std::optional<SourceKind> SourceKindOf(const std::string& path);

}  // namespace zenvora::importing

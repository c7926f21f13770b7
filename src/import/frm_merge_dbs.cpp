#include "import/frm_merge_dbs.h"

#include <utility>

#include "common/error_rule.h"
#include "common/fault_text.h"
#include "common/file_helpers.h"
#include "common/hourglass.h"
#include "common/placement.h"
#include "common/primitives.h"
#include "common/text_helpers.h"
#include "databook/schema_upgrade.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

constexpr std::array kTitles{"Source 1", "Source 2", "Destination"};
constexpr std::string_view kFilter = "Databooks (*.mdb)|*.mdb";
/// No record bears that mark, so that the grid goes blank.
constexpr std::string_view kNothing = "SELECT SELECTED FROM COMPS WHERE SELECTED ='9'";

/// The folder of a path with its backslash, and the name behind it.
std::pair<std::string, std::string> FolderAndFile(const std::string& path) {
    const std::size_t slash = path.rfind('\\');
    const std::size_t cut = slash == std::string::npos ? 0 : slash + 1;
    return {path.substr(0, cut), path.substr(cut)};
}

ado::PathMapper MapperOf(common::Session& session) {
    return [&session](std::string_view path) { return session.drives.HostPath(path); };
}

}  // namespace

frmMergeDBs::frmMergeDBs(common::Session& session, ado::Adodc& openDatabook, std::filesystem::path newData)
    : Form(session.forms, "frmMergeDBs", "Merge Databook(s)"),
      session_(session),
      openDatabook_(openDatabook),
      newData_(std::move(newData)),
      books_{Book(session, MapperOf(session)), Book(session, MapperOf(session)),
             Book(session, MapperOf(session))} {
    LayOut();
    SetRules();
}

void frmMergeDBs::LayOut() {
    SetPlacement({.width = 11700, .height = 10200});
    const auto add = [this](controls::CaptionControl& control, const char* caption) {
        control.SetCaption(caption);
        Add(control);
    };
    const auto addChoice = [&](controls::Frame& frame, const char* caption,
                               controls::ControlArray<controls::OptionButton>& options,
                               std::initializer_list<const char*> captions) {
        add(frame, caption);
        int index = 0;
        for (const char* text : captions) {
            add(options[index], text);
            if (index > 0) options[index].JoinGroupOf(options[0]);
            ++index;
        }
    };
    const std::array frames{&fraSource1, &fraSource2, &fraDestination};
    for (int i = 0; i < txtFilename.Count(); ++i) {
        add(*frames[static_cast<std::size_t>(i)], kTitles[static_cast<std::size_t>(i)]);
        Add(txtFilename[i]);
        add(cmdFileDialog[i], "...");
        if (i == 0) addChoice(fraCopy1, "Copy", optSource1, {"Selected", "All"});
        if (i == 1) addChoice(fraCopy2, "Copy", optSource2, {"Selected", "All"});
        Add(tdbgData[i]);
        tdbgData[i].SetColumns(analysis::CompsGridColumns());
        tdbgData[i].SetRows(&At(i).rows);
    }
    addChoice(fraOverwrite, "If Comp/Listing exists already?", optOverwrite,
              {"Overwrite all", "Skip all", "Ask first"});
    optSource1[1].SetValue(true);
    optSource2[1].SetValue(true);
    optOverwrite[2].SetValue(true);
    add(cmdRefreshGrids, "&Refresh Grids");
    add(cmdCopy, "&Merge");
    add(cmdOK, "&OK");
    add(lblResult, "");
    EnableCopy();
}

void frmMergeDBs::SetRules() {
    for (int i = 0; i < txtFilename.Count(); ++i) {
        txtFilename[i].OnChange([this] { EnableCopy(); });
        txtFilename[i].OnGotFocus([this, i] { At(i).remembered = txtFilename[i].Text(); });
        txtFilename[i].OnLostFocus([this, i] { PathTyped(i); });
        cmdFileDialog[i].OnClick([this, i] { ChooseFileOf(i); });
    }
    cmdRefreshGrids.OnClick([this] { RefreshGrids(); });
    cmdCopy.OnClick([this] { MergeAll(); });
    cmdOK.OnClick([this] { Close(); });
}

void frmMergeDBs::OnLoad() {
    common::ResetFormPosition(*this);
    for (Book& book : books_)
        book.remembered.clear();
    mergedInto_.clear();
}

void frmMergeDBs::OnQueryUnload(bool& /*cancel*/) {
    for (Book& book : books_) {
        if (!book.records.HasRecordset()) continue;
        ado::Recordset& records = book.records.Recordset();
        if (!records.Eof() && !records.Bof() && records.Edit() != ado::EditMode::None) records.Update();
    }
}

void frmMergeDBs::OnUnload() {
    common::SaveWindowPlacement(session_, *this);
    for (Book& book : books_) {
        book.grid.Close();
        book.records.Close();
    }
}

void frmMergeDBs::EnableCopy() {
    cmdCopy.SetEnabled(!txtFilename[kDestination].Text().empty() &&
                       (!txtFilename[0].Text().empty() || !txtFilename[1].Text().empty()));
}

bool frmMergeDBs::FileIsThere(const std::string& path) const {
    return common::FileExists(session_, session_.drives, path);
}

// ---- choosing a file ----

std::string frmMergeDBs::AskForFile(int index) {
    std::string path = txtFilename[index].Text();
    if (path.empty())
        path = common::CkRSlash(session_.settings.currentDirectory) + session_.settings.currentFile;
    const auto [folder, file] = FolderAndFile(path);
    const std::string chosen =
        common::ChooseFile(session_.desktop, kTitles[static_cast<std::size_t>(index)],
                           common::Shown(session_.drives.HostPath(folder)), file, kFilter);
    return chosen.empty() ? chosen : files::DriveMap::TextPath(chosen);
}

void frmMergeDBs::ChooseFileOf(int index) {
    controls::TextBox& box = txtFilename[index];
    // The press takes the focus from the box, if it had it: what stands there now is what to come back to.
    if (!box.Text().empty()) At(index).remembered = box.Text();
    for (;;) {
        box.SetText(AskForFile(index));
        if (box.Text().empty()) box.SetText(At(index).remembered);
        if (box.Text().empty()) {
            EnableCopy();
            return;
        }
        if (FileIsThere(box.Text())) break;
        if (index == kDestination) {
            databook::CopyNewData(session_, newData_, session_.drives.HostPath(box.Text()));
            break;
        }
        const controls::Answer answer =
            session_.desktop.Show({.text = "Please choose an existing database to copy from.",
                                   .title = "File Does Not Exist",
                                   .icon = controls::Icon::Critical,
                                   .buttons = controls::Buttons::OkCancel});
        if (answer != controls::Answer::Ok) {
            EnableCopy();
            return;
        }
    }
    Connect(index);
    EnableCopy();
}

void frmMergeDBs::PathTyped(int index) {
    controls::TextBox& box = txtFilename[index];
    const std::string typed = text::Trim(box.Text());
    // Where case counts, capitals may lead to another file than the one that was typed.
    const std::string upper = text::Upper(typed);
    const bool leadsAway = !typed.empty() && FileIsThere(typed) &&
                           session_.drives.HostPath(upper) != session_.drives.HostPath(typed);
    box.SetText(leadsAway ? typed : upper);
    const std::string& path = box.Text();
    const bool isThere = !path.empty() && FileIsThere(path);
    if (!At(index).grid.Connectionstring.empty() && !isThere) {
        Disconnect(index);
    } else if (isThere && path != At(index).taken) {
        Connect(index);
    }
    EnableCopy();
}

// ---- connecting ----

void frmMergeDBs::ConnectGrid(int index) {
    const std::string& path = txtFilename[index].Text();
    const auto [folder, file] = FolderAndFile(path);
    Book& book = At(index);
    databook::AdoConnect(book.grid, folder, file);
    databook::Check4NewListingFieldsMain(session_, book.grid, path, openDatabook_);
    databook::AdoSelect(book.grid, session_.table, "*", databook::kKeyOrder);
    ShowGrid(index);
}

void frmMergeDBs::Connect(int index) {
    Book& book = At(index);
    book.taken.clear();
    const common::Hourglass hourglass(session_.desktop);
    try {
        ConnectGrid(index);
        book.records.Connectionstring = book.grid.Connectionstring;
        databook::AdoSelect(book.records, session_.table, "*", databook::kKeyOrder);
    } catch (...) {
        Disconnect(index);
        throw;
    }
    book.taken = txtFilename[index].Text();
}

void frmMergeDBs::Disconnect(int index) {
    Book& book = At(index);
    book.grid.RecordSource = kNothing;
    book.grid.Close();
    book.records.Close();
    book.grid.Connectionstring.clear();
    book.records.Connectionstring.clear();
    book.taken.clear();
    tdbgData[index].Refresh();
}

void frmMergeDBs::ShowGrid(int index) {
    tdbgData[index].SetColumns(analysis::CompsGridColumns());
    tdbgData[index].Refresh();
}

void frmMergeDBs::RefreshGrids() {
    const common::Hourglass hourglass(session_.desktop);
    for (int i = 0; i < txtFilename.Count(); ++i) {
        if (!txtFilename[i].Text().empty() && FileIsThere(txtFilename[i].Text())) ConnectGrid(i);
    }
}

// ---- the merge ----

ExistingRecords frmMergeDBs::Existing() const {
    if (optOverwrite[0].Value()) return ExistingRecords::Overwrite;
    return optOverwrite[1].Value() ? ExistingRecords::Skip : ExistingRecords::Ask;
}

void frmMergeDBs::MergeAll() {
    // A path that was typed and whose box still has the focus.
    for (int i = 0; i < txtFilename.Count(); ++i) {
        if (txtFilename[i].Text() != At(i).taken) PathTyped(i);
    }
    ado::Adodc& destination = adoSQL(kDestination);
    if (!destination.HasRecordset()) {
        session_.desktop.Show({.text = "Please choose a destination database to copy to.",
                               .title = "File Does Not Exist",
                               .icon = controls::Icon::Critical});
        return;
    }
    MergeCounts counts;
    lblResult.SetCaption("");
    const common::Hourglass hourglass(session_.desktop);
    destination.Refresh();
    for (int i = 0; i < kDestination; ++i) {
        const std::string& path = txtFilename[i].Text();
        if (path.empty() || !FileIsThere(path) || !adoSQL(i).HasRecordset()) continue;
        adoSQL(i).Refresh();
        mergedInto_.push_back(txtFilename[kDestination].Text());
        try {
            MergeRecords(session_, adoSQL(i).Recordset(), destination.Recordset(), Existing(), counts);
        } catch (Fault& fault) {
            lblResult.SetCaption(CountsText(counts));
            fault.place.file = path;
            fault.description += " The merge ended here; what was done before stays in the destination: " +
                                 CountsText(counts) + ".";
            throw;
        }
    }
    RefreshGrids();
    lblResult.SetCaption(CountsText(counts));
}

}  // namespace zenvora::importing

#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "desktop/binder.h"
#include "platform/fault.h"

namespace zenvora::testing_support {

using Texts = std::vector<std::string>;

/// Rows that are made up when they are asked for, and count how often that is.
class MadeRows final : public controls::GridRows {
  public:
    int count = 0;
    bool broken = false;
    std::string text{};  ///< of every cell; empty: made up
    mutable long asked = 0;
    [[nodiscard]] int RowCount() const override { return count; }
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const override {
        ++asked;
        if (broken) throw Fault{fault::kDeviceIo, "The disk is gone."};
        if (!text.empty()) return text;
        if (column == 0) return row % 2 == 0 ? "1" : "0";
        return "r" + std::to_string(row) + "c" + std::to_string(column);
    }
};

/// One control of each kind.
class KindsForm final : public controls::Form {
  public:
    explicit KindsForm(controls::Forms& forms) : Form(forms, "frmKinds", "Kinds") {
        lblName.SetCaption("&Name");
        lblLink.SetCaption("Get <Help>");
        lblLink.OnClick([this] { events.emplace_back("link"); });
        cmdOK.SetCaption("&OK");
        cmdOK.SetDefault(true);
        cmdCancel.SetCaption("Cancel");
        cmdCancel.SetCancel(true);
        chkFlag.SetCaption("Flag");
        optTwo.JoinGroupOf(optOne);
        imgCalendar.SetPicture("calendar");
        imgCalendar.SetCaption("Choose a date");
        imgCalendar.OnClick([this] { events.emplace_back("calendar"); });
        fraGroup.SetCaption("Sale && List");
        tdbgRows.SetColumns(
            {{.caption = "", .width = 355, .pictures = true, .valueItems = {{"0", "cross"}, {"1", "check"}}},
             {.caption = "Address", .width = 2295},
             {.caption = "Price", .rightAligned = true, .valueItems = {{"r0c2", ""}}}});
        tdbgRows.SetRows(&rows);
        mnuFile.SetCaption("File");
        mnuItem[1].SetCaption("Open");
        mnuItem[1].SetShortcut("Ctrl+O");
        Add(txtFirst);
        Add(txtCell);
        Add(lblName);
        Add(lblLink);
        Add(cmdOK);
        Add(cmdCancel);
        Add(chkFlag);
        Add(optOne);
        Add(optTwo);
        Add(cboText);
        Add(cboPick);
        Add(lstOne);
        Add(lstMany);
        Add(fraGroup);
        Add(txtInside);
        Add(imgCalendar);
        Add(tabs);
        Add(tdbgRows);
        Add(bar);
        Add(mvwDate);
        Add(rtbHelp);
        AddMenu({&mnuFile, {{&mnuItem[0]}, {}, {&mnuItem[1]}}});
        cmdOK.OnClick([this] { events.emplace_back("ok"); });
        cmdCancel.OnClick([this] { events.emplace_back("cancel"); });
        mnuItem[1].OnClick([this] { events.emplace_back("open"); });
        for (controls::Control* control : Controls()) {
            control->OnGotFocus([this, control] { focus.push_back(control->Name() + " comes"); });
            control->OnLostFocus([this, control] { focus.push_back(control->Name() + " leaves"); });
        }
    }

    MadeRows rows;
    controls::TextBox txtFirst{"txtFirst"};
    controls::ControlArray<controls::TextBox> txtCell{"txtCell", 2};
    controls::Label lblName{"lblName"};
    controls::Label lblLink{"lblLink"};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::CommandButton cmdCancel{"cmdCancel"};
    controls::CheckBox chkFlag{"chkFlag"};
    controls::OptionButton optOne{"optOne"};
    controls::OptionButton optTwo{"optTwo"};
    controls::ComboBox cboText{"cboText"};
    controls::ComboBox cboPick{"cboPick"};
    controls::ListBox lstOne{"lstOne"};
    controls::ListBox lstMany{"lstMany"};
    controls::Frame fraGroup{"fraGroup"};
    controls::TextBox txtInside{"txtInside"};
    controls::Image imgCalendar{"imgCalendar"};
    controls::TabPages tabs{"tabs", {"One", "Two", "Three"}};
    controls::Grid tdbgRows{"tdbgRows"};
    controls::ProgressBar bar{"bar"};
    controls::MonthView mvwDate{"mvwDate"};
    controls::RichText rtbHelp{"rtbHelp"};
    controls::MenuItem mnuFile{"mnuFile"};
    controls::ControlArray<controls::MenuItem> mnuItem{"mnuItem", 2};

    Texts events;
    Texts focus;
    int closings = 0;
    bool refusesToClose = false;
    int helps = 0;
    int activations = 0;

  protected:
    void OnQueryUnload(bool& cancel) override {
        ++closings;
        cancel = refusesToClose;
    }
    void OnHelp() override { ++helps; }
    void OnActivate() override { ++activations; }
};

/// Its window: the controls below each other, and the menus.
[[nodiscard]] QWidget* LayOut(KindsForm& form, desktop::Binder& bind, QWidget* parent);

}  // namespace zenvora::testing_support

#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/dates.h"
#include "databook/selection.h"
#include "platform/controls/form.h"
#include "records/edit_record.h"
#include "records/frm_edit.h"
#include "records/main_form.h"
#include "records/small_main_form.h"
#include "support/test_session.h"

namespace zenvora::records {

/// The dialog in a user's hands: everything by the names of its controls.
class User {
  public:
    explicit User(controls::Form& form) : form_(form) {}

    /// Goes to a text box, and puts a text into it as a whole.
    void Type(std::string_view field, std::string_view text);
    /// Letter by letter, behind the old text emptied.
    void TypeSlowly(std::string_view field, std::string_view text);
    void GoTo(std::string_view control) { Control(control).SetFocus(); }
    void Press(std::string_view button);
    void DblClickLabel(std::string_view label);

    [[nodiscard]] std::string Text(std::string_view field) const;
    [[nodiscard]] controls::Color Color(std::string_view control) const {
        return Control(control).BackColor();
    }
    [[nodiscard]] std::string Tip(std::string_view control) const { return Control(control).ToolTipText(); }
    [[nodiscard]] std::string Focus() const;
    [[nodiscard]] controls::RichText& Panel() const;
    [[nodiscard]] frmEdit& Edit() const { return dynamic_cast<frmEdit&>(form_); }

  private:
    template <class T = controls::Control>
    [[nodiscard]] T& Control(std::string_view name) const {
        auto* const control = dynamic_cast<T*>(form_.Find(name));
        if (control == nullptr) throw std::logic_error("no such control: " + std::string(name));
        return *control;
    }
    controls::Form& form_;
};

/// A test with a Databook, a main form over it, and the clock and the Effective Appraisal Date at 6/30/2010.
class EditorTest : public testing::Test {
  protected:
    using Fields = std::vector<std::pair<std::string_view, jet::Value>>;
    static constexpr text::Date kToday = 40359;  // 6/30/2010

    EditorTest();

    [[nodiscard]] static jet::Value Day(int year, int month, int day);
    /// Stores a record; columns that are not named take their defaults.
    void Store(std::string_view key, const Fields& fields = {});
    /// A field as it is in the Databook now, read anew: a date as M/D/YYYY, Null as "(null)".
    [[nodiscard]] std::string Stored(std::string_view key, std::string_view column);
    [[nodiscard]] std::vector<std::string> Keys();

    /// The user adds or edits the record of a key box's text, does something in the dialog, and leaves it
    /// open for the close box unless that closed it.
    void Add(std::string_view keyBox, const std::function<void(User)>& user);
    void Edit(std::string_view keyBox, const std::function<void(User)>& user);

    /// A file of the application directory, C:\ZVR.
    void WriteHelp(std::string_view name, std::string_view bytes);
    [[nodiscard]] std::string Settings() { return test.driveC.Read("Appraise/ZVR.INI"); }

    testing_support::TestSession test;
    common::Session& session = test.session;
    testing_support::ScriptedDesktop& desktop = test.desktop;
    SmallMainForm main{session};
    Application application{session, {}};

  private:
    void Run(std::string_view keyBox, std::string_view mode, const std::function<void(User)>& user);
};

}  // namespace zenvora::records

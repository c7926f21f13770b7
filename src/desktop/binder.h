#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTextBrowser>
#include <functional>
#include <utility>
#include <vector>

#include "platform/controls/check_box.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/grid.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"
#include "platform/controls/list_box.h"
#include "platform/controls/menu.h"
#include "platform/controls/month_view.h"
#include "platform/controls/option_button.h"
#include "platform/controls/progress_bar.h"
#include "platform/controls/rich_text.h"
#include "platform/controls/tab_pages.h"
#include "platform/controls/text_box.h"

namespace zenvora::desktop {

class QtDesktop;

/// Makes the widgets of one window and ties them to the controls of its form, both ways.
///
/// What the user does reaches a control once, as an event of the program; what the program does to a control
/// shows on its widget at once, and is not taken for the user's doing. A widget carries its control's name as
/// objectName ("cmdExit", "mnuFileItem_1"), and its caption as accessible name.
///
/// The widgets belong to the window that they are laid out in. A binder is detached when its form leaves the
/// screen: from then on neither side reaches the other, in whatever order window, form and binder go.
class Binder final : public QObject {
  public:
    Binder(QtDesktop& screen, controls::Form& form);

    [[nodiscard]] QLineEdit* Bind(controls::TextBox& control);
    /// A text.
    [[nodiscard]] QLabel* Bind(controls::Label& control);
    /// A text that is pressed, as a link that the keyboard reaches.
    [[nodiscard]] QAbstractButton* BindLink(controls::Label& control);
    /// A text that names the widget beside it, for the mnemonic and for those who do not see it.
    [[nodiscard]] QLabel* Bind(controls::Label& control, QWidget& named);
    [[nodiscard]] QPushButton* Bind(controls::CommandButton& control);
    [[nodiscard]] QCheckBox* Bind(controls::CheckBox& control);
    [[nodiscard]] QRadioButton* Bind(controls::OptionButton& control);
    [[nodiscard]] QComboBox* Bind(controls::ComboBox& control);
    /// Any list; the selection is that of a ListBox.
    [[nodiscard]] QListView* Bind(controls::ListControl& control);
    [[nodiscard]] QGroupBox* Bind(controls::Frame& control);
    /// A picture, or with a click rule a button that shows it; `height` in pixels of 96 dpi.
    [[nodiscard]] QWidget* Bind(controls::Image& control, int height);
    /// Empty pages to lay controls out in: widget(0), widget(1)...
    [[nodiscard]] QTabWidget* Bind(controls::TabPages& control);
    [[nodiscard]] QTableView* Bind(controls::Grid& control);
    [[nodiscard]] QProgressBar* Bind(controls::ProgressBar& control);
    [[nodiscard]] QCalendarWidget* Bind(controls::MonthView& control);
    [[nodiscard]] QTextBrowser* Bind(controls::RichText& control);
    /// Fills a menu bar with the form's menus.
    void BindMenus(QMenuBar& bar);

    /// Says what a widget is for, where no caption does.
    static void Name(QWidget& widget, const std::string& name);

    /// The window is complete: brings the order of the keyboard into that of the form's controls, and follows
    /// the window's closing, keys, drops and place.
    void SetWindow(QWidget& window);
    [[nodiscard]] QWidget* Window() const noexcept { return window_; }
    /// Gives the focus to the control that has it, else to the first one that takes it.
    void GiveFocus();
    void Detach();

    [[nodiscard]] controls::Form& BoundForm() const noexcept { return form_; }
    [[nodiscard]] QWidget* WidgetOf(const controls::Control& control) const;

    /// Runs what the user did. Nothing is thrown.
    void User(const std::function<void()>& rule);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    using Show = std::function<void(controls::Property)>;

    /// Ties what all controls have in common, and shows all properties; `show` serves those of the kind.
    void Attach(controls::Control& control, QWidget& widget, Show show);
    void ShowCommon(const controls::Control& control, QWidget& widget, controls::Property property);
    void ShowBackColor(const controls::Control& control, QWidget& widget) const;
    [[nodiscard]] QAction* BindItem(controls::MenuItem& item, QWidget& parent);
    /// Runs `rule` on mouse events of that type on the widget itself, behind what the widget does.
    void OnMouse(QWidget& widget, QEvent::Type type, const std::function<void()>& rule);
    void Watch(controls::Control& control, QWidget& widget);
    [[nodiscard]] bool KeyPressed(const QKeyEvent& key);
    void Pressed(bool (controls::CommandButton::*which)() const noexcept);
    [[nodiscard]] bool WindowEvent(QEvent& event);
    void TellPlacement();
    void ShowPlacement();

    struct Tie {
        controls::Control* control;
        QWidget* widget;
    };

    QtDesktop& screen_;
    controls::Form& form_;
    QWidget* window_ = nullptr;
    QObject* context_;  ///< receives the widgets' signals; without it none arrives
    bool attached_ = true;
    bool placing_ = false;
    std::vector<Tie> ties_;
    QHash<const QObject*, controls::Control*> watched_;
    std::vector<controls::Observation> observations_;
    std::vector<std::function<void()>> themes_;  ///< what is drawn anew when the colours of the theme change
    std::vector<std::function<void()>> partings_;  ///< what the models of lists and grids do at the end
    controls::Form::FormObservation formObservation_;
};

/// Object name of a control's widget: its name, in a control array with "_" and the index.
[[nodiscard]] QString ObjectName(const controls::Control& control);

/// Pixels of 96 dpi for twips of the dialogs' layout.
[[nodiscard]] constexpr int PixelsOf(double twips) noexcept {
    return static_cast<int>(twips / 15);
}

}  // namespace zenvora::desktop

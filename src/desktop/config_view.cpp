#include <QGridLayout>
#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {
namespace {

using frame::frmConfig;

QGroupBox* Framed(Binder& bind, controls::Frame& frame, std::initializer_list<QWidget*> widgets) {
    QGroupBox* const box = bind.Bind(frame);
    auto* const layout = new QVBoxLayout(box);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    return box;
}

void LayOutGeneral(frmConfig& form, Binder& bind, QWidget& page) {
    auto* const layout = new QVBoxLayout(&page);
    layout->addWidget(bind.Bind(form.chkOpeningScreen));
    layout->addWidget(Framed(bind, form.Frame4, {bind.Bind(form.chkAddZeroes)}));
    layout->addWidget(Framed(bind, form.Frame3, {bind.Bind(form.Check1)}));
    layout->addWidget(
        Framed(bind, form.Frame2, {bind.Bind(form.optDirToUse[1]), bind.Bind(form.optDirToUse[0])}));
    layout->addStretch();
    layout->addLayout(Row({nullptr, bind.Bind(form.cmdOK), bind.Bind(form.cmdCancel)}));
}

void LayOutDirectories(frmConfig& form, Binder& bind, QWidget& page) {
    auto* const layout = new QVBoxLayout(&page);
    QGroupBox* const box = bind.Bind(form.Frame1);
    Binder::Name(*box, "Directories");
    auto* const grid = new QGridLayout(box);
    grid->setVerticalSpacing(4);
    int row = 0;
    const auto add = [&](controls::Label& caption, controls::TextBox& text, controls::CommandButton& choose) {
        constexpr int kCharacters = 44;
        QLineEdit* const edit = Wide(bind.Bind(text), kCharacters);
        grid->addWidget(bind.Bind(caption, *edit), row++, 0, 1, 2);
        grid->addWidget(edit, row, 0);
        QPushButton* const button = bind.Bind(choose);
        button->setFixedWidth(button->sizeHint().height() * 3 / 2);
        Binder::Name(*button, choose.ToolTipText());
        grid->addWidget(button, row++, 1);
        grid->setRowMinimumHeight(row++, 4);
    };
    add(form.Label1, form.txtDataDir, form.cmdChooseDataDir);
    add(form.lblUserDir, form.txtUserDir, form.cmdChooseUserDir);
    add(form.lblProgramDir, form.txtProgramDir, form.cmdChooseProgDir);
    grid->setColumnStretch(0, 1);
    layout->addWidget(box);
    layout->addStretch();
    layout->addLayout(Row({nullptr, Accented(bind.Bind(form.cmdOk2)), bind.Bind(form.PushButton1)}));
}

}  // namespace

QWidget* ConfigView(frmConfig& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(8, 8, 8, 8);
    QTabWidget* const pages = bind.Bind(form.tdgConfig);
    LayOutGeneral(form, bind, *pages->widget(0));
    LayOutDirectories(form, bind, *pages->widget(1));
    layout->addWidget(pages);
    return window;
}

}  // namespace zenvora::desktop

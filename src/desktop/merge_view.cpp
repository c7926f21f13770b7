#include <QGridLayout>
#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {
namespace {

using importing::frmMergeDBs;

constexpr int kPathCharacters = 44;
constexpr int kRowsOfAGrid = 6;

/// The path, the choice and the records of one Databook.
QGroupBox* Book(frmMergeDBs& form, Binder& bind, controls::Frame& frame, int index) {
    QGroupBox* const box = bind.Bind(frame);
    auto* const layout = new QVBoxLayout(box);
    auto* const path = new QHBoxLayout;
    QLineEdit* const name = Wide(bind.Bind(form.txtFilename[index]), kPathCharacters);
    Binder::Name(*name, frame.Caption());
    path->addWidget(name, 1);
    QPushButton* const choose = bind.Bind(form.cmdFileDialog[index]);
    choose->setFixedWidth(choose->sizeHint().height() * 3 / 2);
    Binder::Name(*choose, "Choose " + frame.Caption());
    path->addWidget(choose);
    layout->addLayout(path);
    QTableView* const records = bind.Bind(form.tdbgData[index]);
    Binder::Name(*records, "Records of " + frame.Caption());
    records->setMinimumHeight(records->fontMetrics().lineSpacing() * kRowsOfAGrid);
    layout->addWidget(records, 1);
    return box;
}

QGroupBox* Options(Binder& bind, controls::Frame& frame,
                   controls::ControlArray<controls::OptionButton>& options) {
    QGroupBox* const box = bind.Bind(frame);
    auto* const layout = new QVBoxLayout(box);
    for (controls::OptionButton& option : options)
        layout->addWidget(bind.Bind(option));
    layout->addStretch();
    return box;
}

}  // namespace

QWidget* MergeView(frmMergeDBs& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(14, 12, 14, 12);
    layout->setSpacing(10);
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->addWidget(Book(form, bind, form.fraSource1, 0), 0, 0);
    grid->addWidget(Options(bind, form.fraCopy1, form.optSource1), 0, 1);
    grid->addWidget(Book(form, bind, form.fraSource2, 1), 1, 0);
    grid->addWidget(Options(bind, form.fraCopy2, form.optSource2), 1, 1);
    grid->addWidget(Book(form, bind, form.fraDestination, frmMergeDBs::kDestination), 2, 0);
    grid->addWidget(Options(bind, form.fraOverwrite, form.optOverwrite), 2, 1);
    grid->setColumnStretch(0, 1);
    layout->addLayout(grid, 1);
    QLabel* const result = bind.Bind(form.lblResult);
    result->setWordWrap(true);
    result->setMinimumHeight(result->fontMetrics().lineSpacing());
    layout->addWidget(result);
    layout->addLayout(Row({bind.Bind(form.cmdRefreshGrids), nullptr, Accented(bind.Bind(form.cmdCopy)),
                           bind.Bind(form.cmdOK)}));
    return window;
}

}  // namespace zenvora::desktop

#include <QGridLayout>
#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {
namespace {

using importing::frmCSVWizard;

constexpr int kListCharacters = 28;
constexpr int kMappingCharacters = 52;
constexpr int kRowsOfAList = 9;

/// A list under its heading.
QVBoxLayout* Column(Binder& bind, const char* heading, controls::ListControl& list,
                    int characters = kListCharacters) {
    auto* const column = new QVBoxLayout;
    column->setSpacing(4);
    QListView* const view = Wide(bind.Bind(list), characters);
    view->setMinimumHeight(view->fontMetrics().lineSpacing() * kRowsOfAList);
    Binder::Name(*view, heading);
    column->addWidget(Heading(QString::fromLatin1(heading)));
    column->addWidget(view, 1);
    return column;
}

QVBoxLayout* Stack(std::initializer_list<QWidget*> widgets) {
    auto* const stack = new QVBoxLayout;
    stack->setSpacing(8);
    for (QWidget* widget : widgets)
        stack->addWidget(widget);
    return stack;
}

QGridLayout* MappingRow(frmCSVWizard& form, Binder& bind) {
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->addLayout(Column(bind, "Source Fields", form.lbSourceFields), 0, 0);
    grid->addLayout(Column(bind, "Dest Fields", form.lbDestFields), 0, 1);
    grid->addLayout(Stack({bind.Bind(form.btnAddMapping), bind.Bind(form.btnJoinFields),
                           bind.Bind(form.btnSuggestMap), bind.Bind(form.btnLastMap)}),
                    0, 2, Qt::AlignVCenter);
    grid->addLayout(Column(bind, "Mappings", form.lbMappings, kMappingCharacters), 0, 3);
    grid->addLayout(Stack({bind.Bind(form.btnRemoveMapItem), bind.Bind(form.btnReset),
                           bind.Bind(form.btnLoadMappings), bind.Bind(form.btnSaveMappings)}),
                    0, 4, Qt::AlignVCenter);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(3, 3);
    return grid;
}

QGroupBox* LowerPanel(frmCSVWizard& form, Binder& bind) {
    QGroupBox* const panel = bind.Bind(form.fraAdvanced);
    Binder::Name(*panel, "Preview and load log");
    auto* const layout = new QVBoxLayout(panel);
    QTableView* const preview = bind.Bind(form.gridPreview);
    Binder::Name(*preview, "Preview");
    preview->setMinimumHeight(preview->fontMetrics().lineSpacing() * kRowsOfAList);
    layout->addWidget(preview, 1);
    QLabel* const summary = bind.Bind(form.lblSummary);
    summary->setWordWrap(true);
    summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(summary);
    QListView* const log = bind.Bind(form.ListBox1);
    Binder::Name(*log, "Load log");
    log->setMinimumHeight(log->fontMetrics().lineSpacing() * (kRowsOfAList - 3));
    layout->addWidget(log);
    layout->addLayout(Row({nullptr, bind.Bind(form.btnSaveLog), bind.Bind(form.btnClear)}));
    return panel;
}

}  // namespace

QWidget* WizardView(frmCSVWizard& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    layout->setContentsMargins(14, 12, 14, 12);
    layout->setSpacing(10);

    QTableView* const source = bind.Bind(form.gridSource);
    Binder::Name(*source, "Source");
    source->setMinimumHeight(source->fontMetrics().lineSpacing() * kRowsOfAList);
    layout->addWidget(source, 2);
    layout->addLayout(Row({bind.Bind(form.cbHeaderRow), nullptr}));
    layout->addLayout(MappingRow(form, bind), 2);

    QListView* const notes = bind.Bind(form.lbNotes);
    Binder::Name(*notes, "Notes on the suggested map");
    notes->setMaximumHeight(notes->fontMetrics().lineSpacing() * 5);
    layout->addWidget(Heading(QStringLiteral("Notes on the suggested map")));
    layout->addWidget(notes);

    QProgressBar* const progress = bind.Bind(form.pbLoadStatus);
    Binder::Name(*progress, "Loaded");
    layout->addWidget(progress);
    layout->addWidget(LowerPanel(form, bind), 3);
    layout->addLayout(
        Row({bind.Bind(form.btnShowAdvanced1, 20), bind.Bind(form.btnShowAdvanced2, 20), nullptr,
             bind.Bind(form.btnPreview), Accented(bind.Bind(form.btnLoadDB)), bind.Bind(form.btnCancel)}));
    return window;
}

}  // namespace zenvora::desktop

#include <QGridLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QVBoxLayout>

#include "analysis/period.h"
#include "desktop/layouts.h"
#include "desktop/strings.h"
#include "desktop/views.h"

namespace zenvora::desktop {
namespace {

using frame::frmMain;

constexpr int kDateCharacters = 14;

QGroupBox* AddressGroup(frmMain& form, Binder& bind) {
    QGroupBox* const box = bind.Bind(form.GroupBox2);
    auto* const row = new QHBoxLayout(box);
    QLineEdit* const key = Wide(bind.Bind(form.txtCentralKey), 28);
    Binder::Name(*key, form.GroupBox2.Caption());
    row->addWidget(key, 1);
    row->addWidget(bind.Bind(form.cmdAdd));
    row->addWidget(bind.Bind(form.cmdEdit));
    row->addWidget(bind.Bind(form.cmdDelete));
    return box;
}

QGroupBox* DateGroup(frmMain& form, Binder& bind) {
    QGroupBox* const box = bind.Bind(form.GroupBox1);
    Binder::Name(*box, form.Label1.Caption());
    auto* const layout = new QHBoxLayout(box);
    QLineEdit* const date = Wide(bind.Bind(form.txtBaseDate), kDateCharacters);
    layout->addWidget(bind.Bind(form.Label1, *date));
    layout->addWidget(date);
    QComboBox* const dates = Wide(bind.Bind(form.cboBaseDate), kDateCharacters + 3);
    Binder::Name(*dates, form.Label1.Caption() + ", choose");
    layout->addWidget(dates);
    layout->addWidget(bind.Bind(form.imaBaseDateCal, 18));
    // As high as the box beside it.
    layout->addStrut(bind.WidgetOf(form.cmdAdd)->sizeHint().height());
    return box;
}

void LayOutComps(frmMain& form, Binder& bind, QWidget& page) {
    auto* const layout = new QVBoxLayout(&page);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    auto* const top = new QHBoxLayout;
    top->setSpacing(12);
    top->addWidget(AddressGroup(form, bind), 1, Qt::AlignBottom);
    top->addWidget(DateGroup(form, bind), 0, Qt::AlignBottom);
    layout->addLayout(top);

    QTableView* const grid = bind.Bind(form.tdbgData);
    Binder::Name(*grid, "Comps and Listings");
    layout->addWidget(grid, 1);

    QLabel* const explanation = bind.Bind(form.lblExplanation);
    explanation->setWordWrap(true);
    explanation->setTextInteractionFlags(Qt::TextSelectableByMouse);
    explanation->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // Room for two lines at all times, so that the grid does not jump from record to record.
    explanation->setMinimumHeight(2 * explanation->fontMetrics().lineSpacing());
    layout->addWidget(explanation);

    layout->addLayout(Row({bind.Bind(form.cmdChkValidity), nullptr, Accented(bind.Bind(form.txtCalculate)),
                           bind.Bind(form.cmdPrintAudit), bind.Bind(form.cmdExit2)}));
}

/// The rows of one frame of the results, under the names of the periods.
QGroupBox* Results(frmMain& form, Binder& bind, controls::Frame& frame, std::string_view group) {
    QGroupBox* const box = bind.Bind(frame);
    auto* const grid = new QGridLayout(box);
    grid->setContentsMargins(14, 10, 14, 12);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(6);
    for (int column = 0; column < 3; ++column) {
        const auto& period = analysis::kPeriodColumns[static_cast<std::size_t>(column)];
        QLabel* const heading = Heading(Shown(period.name));
        heading->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(heading, 0, 1 + column);
    }
    int place = 1;
    for (const analysis::ResultRow& row : analysis::kResultRows) {
        if (row.frame != group) continue;
        const std::string caption = controls::PlainCaption(std::string(row.caption));
        grid->addWidget(new QLabel(Shown(caption)), place, 0);
        for (int column = 0; column < 3; ++column) {
            QLineEdit* const cell = Wide(bind.Bind(form.results.Row(row.name)[column]), 16);
            cell->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            const auto& period = analysis::kPeriodColumns[static_cast<std::size_t>(column)];
            Binder::Name(*cell, caption + ", " + std::string(period.name));
            grid->addWidget(cell, place, 1 + column);
        }
        ++place;
    }
    grid->setColumnStretch(0, 1);
    return box;
}

void LayOutCalculations(frmMain& form, Binder& bind, QWidget& page) {
    auto* const layout = new QVBoxLayout(&page);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    layout->addWidget(Results(form, bind, form.Frame1, analysis::kInventoryFrame));
    layout->addWidget(Results(form, bind, form.Frame2, analysis::kMedianFrame));
    layout->addStretch(1);

    QLineEdit* const date = Wide(bind.Bind(form.txtBaseDateT2), kDateCharacters);
    date->setMaximumWidth(date->minimumWidth());
    QLabel* const label = bind.Bind(form.Label19, *date);
    QGroupBox* const transfer = bind.Bind(form.fraTransfer);
    auto* const buttons = new QHBoxLayout(transfer);
    buttons->addWidget(bind.Bind(form.cmdTransfer));
    buttons->addWidget(bind.Bind(form.cmdTransferAudit));
    buttons->addWidget(bind.Bind(form.cmdTransferCondoCoop));
    auto* const middle = Row(
        {label, date, nullptr, bind.Bind(form.imgDataSentMsg, 18), bind.Bind(form.lblDataSentMsg), transfer});
    layout->addLayout(middle);
    QLabel* const status = bind.Bind(form.lblTransferStatus);
    status->setWordWrap(true);
    status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(status);

    layout->addLayout(
        Row({bind.Bind(form.cmdBack), nullptr, bind.Bind(form.cmdPrintCalc), bind.Bind(form.cmdExit)}));
}

}  // namespace

QWidget* MainView(frmMain& form, Binder& bind, QWidget* /*parent*/) {
    auto* const window = new QMainWindow;
    bind.BindMenus(*window->menuBar());
    QTabWidget* const pages = bind.Bind(form.tdgViewer);
    LayOutComps(form, bind, *pages->widget(frmMain::kCompsPage));
    LayOutCalculations(form, bind, *pages->widget(frmMain::kCalculationsPage));
    auto* const body = new QWidget;
    auto* const layout = new QVBoxLayout(body);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(pages);
    window->setCentralWidget(body);
    return window;
}

}  // namespace zenvora::desktop

#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/strings.h"
#include "desktop/views.h"

namespace zenvora::desktop {
namespace {

using analysis::frmDataViewer;

frmDataViewer::Cells& CellsOf(frmDataViewer& form, int row) {
    frmDataViewer::Cells* const cells[] = {&form.txtAverage, &form.txtMedian, &form.txtTotal, &form.txtLowest,
                                           &form.txtHighest};
    return *cells[row];
}

/// Room for the total of many prices, "1234567890", and for a scroll bar beside an entry.
constexpr int kCharacters = 13;
constexpr int kGroupMargin = 6;

/// The three lists of a group side by side, with their figures below.
QGroupBox* Group(frmDataViewer& form, controls::Frame& frame, int group, Binder& bind) {
    QGroupBox* const box = bind.Bind(frame);
    auto* const grid = new QGridLayout(box);
    grid->setContentsMargins(kGroupMargin, kGroupMargin, kGroupMargin, kGroupMargin);
    grid->setSpacing(4);
    for (int column = 0; column < 3; ++column) {
        const int index = 3 * group + column;
        const std::string period(analysis::kStatisticColumns[static_cast<std::size_t>(column)]);
        const std::string name = controls::PlainCaption(frame.Caption()) + ", " + period;
        auto* const heading = new QLabel(Shown(period));
        heading->setAlignment(Qt::AlignCenter);
        grid->addWidget(heading, 0, column);
        QListView* const list = Wide(bind.Bind(form.lstData[index]), kCharacters);
        Binder::Name(*list, name);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        grid->addWidget(list, 1, column);
        int row = 0;
        for (const analysis::StatisticRow& statistic : analysis::kStatisticRows) {
            QLineEdit* const cell = Wide(bind.Bind(CellsOf(form, row)[index]), kCharacters);
            cell->setAlignment(Qt::AlignRight);
            Binder::Name(*cell, name + ", " + std::string(statistic.caption));
            grid->addWidget(cell, 2 + row++, column);
        }
    }
    grid->setRowStretch(1, 1);
    return box;
}

/// The captions of the rows, in line with the cells `like` of the groups beside them.
QWidget* Captions(const QWidget& group, const QWidget& like) {
    auto* const captions = new QWidget;
    auto* const layout = new QGridLayout(captions);
    layout->setContentsMargins(0, 0, 0, kGroupMargin + group.contentsMargins().bottom());
    layout->setSpacing(4);
    layout->setRowStretch(0, 1);
    int row = 1;
    for (const analysis::StatisticRow& statistic : analysis::kStatisticRows) {
        auto* const label = new QLabel(Shown(statistic.caption));
        label->setMinimumHeight(like.sizeHint().height());
        layout->addWidget(label, row++, 0);
    }
    return captions;
}

/// Scrolls when the screen is too narrow, and wants no more than its body needs.
class Scrolled final : public QScrollArea {
  public:
    [[nodiscard]] QSize sizeHint() const override {
        constexpr int kHeight = 480;
        return widget()->minimumSizeHint().expandedTo(QSize(0, kHeight));
    }
};

}  // namespace

QWidget* DataViewerView(frmDataViewer& form, Binder& bind, QWidget* /*parent*/) {
    // A window of its own, beside the main window and not in front of it.
    auto* const window = new Scrolled;
    auto* const body = new QWidget;
    auto* const row = new QHBoxLayout(body);
    controls::Frame* const frames[] = {&form.Frame1, &form.Frame2, &form.Frame3,
                                       &form.Frame4, &form.Frame5, &form.Frame6};
    QList<QWidget*> groups;
    for (int group = 0; group < 6; ++group)
        groups << Group(form, *frames[group], group, bind);
    row->addWidget(Captions(*groups.constFirst(), *bind.WidgetOf(form.txtAverage[0])));
    for (QWidget* group : groups)
        row->addWidget(group, 1);
    window->setWidget(body);
    window->setWidgetResizable(true);
    window->setFrameStyle(QFrame::NoFrame);
    return window;
}

}  // namespace zenvora::desktop

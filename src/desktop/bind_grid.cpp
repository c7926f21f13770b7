#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <memory>
#include <utility>

#include "desktop/binder.h"
#include "desktop/event_watch.h"
#include "desktop/grid_model.h"
#include "desktop/qt_desktop.h"
#include "desktop/quiet.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

namespace {

/// A table that wants to be as wide as its columns.
class GridView final : public QTableView {
  public:
    [[nodiscard]] QSize sizeHint() const override {
        constexpr int kRows = 16;
        return {columns_ + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
                kRows * verticalHeader()->defaultSectionSize()};
    }
    void ColumnsAre(int width) {
        columns_ = width;
        updateGeometry();
    }

  private:
    int columns_ = 0;
};

/// What the first values of a column need, and no more than thirty characters.
int WidthOfValues(const QAbstractItemView& view, int column) {
    constexpr int kMostCharacters = 30;
    return std::min(view.sizeHintForColumn(column), kMostCharacters * view.fontMetrics().averageCharWidth());
}

/// Widths of the columns: those of the layout, as wide as the font needs; the widest column takes what is
/// left over.
void ShowColumns(GridView& view, const controls::Grid& grid) {
    // The layout's widths are those of a font with characters of five pixels.
    const double scale = std::max(1.0, view.fontMetrics().averageCharWidth() / 5.0);
    QHeaderView& header = *view.horizontalHeader();
    int widest = -1;
    int all = 0;
    for (int column = 0; column < static_cast<int>(grid.Columns().size()); ++column) {
        const controls::GridColumn& shape = grid.Columns()[static_cast<std::size_t>(column)];
        // A date is seen whole, however narrow the layout had its column.
        const int date = view.fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000")) + 16;
        int needed = std::max(header.sectionSizeHint(column), shape.pictures ? 0 : date);
        if (shape.fitsValues) needed = std::max(needed, WidthOfValues(view, column));
        const int width = std::max(static_cast<int>(PixelsOf(shape.width) * scale), needed);
        header.setSectionResizeMode(column, QHeaderView::Interactive);
        view.setColumnWidth(column, width);
        all += width;
        if (widest < 0 || shape.width > grid.Columns()[static_cast<std::size_t>(widest)].width)
            widest = column;
    }
    if (widest >= 0) header.setSectionResizeMode(widest, QHeaderView::Stretch);
    // Addresses are longer than the layout had room for.
    constexpr int kMoreCharacters = 12;
    view.ColumnsAre(all + kMoreCharacters * view.fontMetrics().averageCharWidth());
}

void SetUp(QTableView& view) {
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setTabKeyNavigation(false);
    view.setAlternatingRowColors(true);
    view.setShowGrid(false);
    view.setWordWrap(false);
    view.setCornerButtonEnabled(false);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.verticalHeader()->hide();
    // Rows of one height, so that a hundred thousand of them need no measuring.
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + 8);
    view.horizontalHeader()->setHighlightSections(false);
    view.horizontalHeader()->setMinimumSectionSize(24);
    constexpr int kMeasuredRows = 50;
    view.horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
}

}  // namespace

QTableView* Binder::Bind(controls::Grid& control) {
    auto* const view = new GridView;
    SetUp(*view);
    // Later, because a cell is read while it is painted.
    const auto failed = [this](const std::exception_ptr& fault) {
        if (!attached_) return;
        QMetaObject::invokeMethod(
            context_, [this, fault] { User([&] { std::rethrow_exception(fault); }); }, Qt::QueuedConnection);
    };
    auto* const model = new GridModel(control, failed, view);
    partings_.emplace_back([model] { model->Drop(); });
    view->setModel(model);
    ShowColumns(*view, control);

    const auto showing = std::make_shared<bool>(false);
    const auto showCurrent = [view, model, &control, showing] {
        const Quiet quiet(*showing);
        const QModelIndex cell = model->index(control.Row(), control.Col());
        if (cell != view->currentIndex() || !view->selectionModel()->isSelected(cell))
            view->setCurrentIndex(cell);
    };
    const auto show = [view, model, &control, showing, showCurrent, columns = control.Columns().size(),
                       hadRows = model->rowCount() > 0](Property property) mutable {
        if (property == Property::Items) {
            const Quiet quiet(*showing);
            const int top = view->verticalScrollBar()->value();
            if (model->Refresh()) view->verticalScrollBar()->setValue(top);
            const bool hasRows = model->rowCount() > 0;
            const bool rowsCame = !std::exchange(hadRows, hasRows) && hasRows;
            const bool otherColumns =
                control.Columns().size() != std::exchange(columns, control.Columns().size());
            if (otherColumns ||
                (rowsCame && std::ranges::any_of(control.Columns(), &controls::GridColumn::fitsValues)))
                ShowColumns(*view, control);
        }
        if (property == Property::Items || property == Property::Selection) showCurrent();
    };
    Attach(control, *view, show);
    showCurrent();

    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, context_,
            [this, &control, showing, showCurrent](const QModelIndex& cell) {
                if (*showing || !cell.isValid()) return;
                User([&] { control.MoveTo(cell.row(), cell.column()); });
                if (attached_) showCurrent();
            });
    connect(view, &QTableView::clicked, context_, [this, &control] { User([&] { control.Click(); }); });
    const auto pressed = [this, &control] { User([&] { control.DblClick(); }); };
    connect(view, &QTableView::doubleClicked, context_, pressed);
    // What the mouse does by a double click the keyboard does by Enter and by the space bar.
    auto* const watch = new EventWatch(view, [this, view, &control, pressed](QEvent& event) {
        if (event.type() != QEvent::KeyPress || !attached_ || !control.HasDblClickRule()) return false;
        const int key = static_cast<const QKeyEvent&>(event).key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space) return false;
        if (view->currentIndex().isValid()) pressed();
        return true;
    });
    view->installEventFilter(watch);
    return view;
}

}  // namespace zenvora::desktop

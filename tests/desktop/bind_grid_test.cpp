// The grid, both ways.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"
#include "desktop/pictures.h"
#include "desktop/shades.h"

namespace zenvora::desktop {
namespace {

TEST_F(BinderTest, TheMarkOfASelectedRowIsSeenAsWellAsTheOthers) {
    form.rows.count = 2;
    Show();
    form.tdbgRows.MoveTo(0, 1);
    Settle();
    auto& view = Find<QTableView>("tdbgRows");
    ASSERT_TRUE(view.selectionModel()->isSelected(view.model()->index(0, 0)));
    for (const int row : {0, 1}) {
        const QImage cell = view.viewport()->grab(view.visualRect(view.model()->index(row, 0))).toImage();
        const QPoint middle = cell.rect().center();
        const QColor ground = cell.pixelColor(middle + QPoint(0, -6));
        double most = 1;
        for (int x = -6; x <= 6; ++x) {
            for (int y = -5; y <= 6; ++y)
                most = std::max(most, Contrast(cell.pixelColor(middle + QPoint(x, y)), ground));
        }
        constexpr double kSeen = 3;
        EXPECT_GE(most, kSeen) << "row " << row;
    }
}

TEST_F(BinderTest, AColumnThatFitsItsValuesGrowsWhenTheyCome) {
    form.tdbgRows.SetColumns({{.caption = "No", .fitsValues = true}, {.caption = "No", .width = 2000}});
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    const int before = view.columnWidth(0);
    form.rows.count = 1;
    form.rows.text = "12345 Martin Luther King Blvd and all that follows, without an end";
    form.tdbgRows.Refresh();
    Settle();
    EXPECT_GE(view.columnWidth(0),
              view.fontMetrics().horizontalAdvance(QStringLiteral("12345 Martin Luther King")));
    EXPECT_LT(view.columnWidth(0),
              view.fontMetrics().horizontalAdvance(QString::fromStdString(form.rows.text)))
        << "within reason";
    EXPECT_GT(view.columnWidth(0), before);

    // Others come in the place of none: they are measured anew.
    form.rows.count = 0;
    form.tdbgRows.Refresh();
    form.rows.count = 1;
    form.rows.text = "1 Elm St";
    form.tdbgRows.Refresh();
    EXPECT_EQ(view.columnWidth(0), before);
}

TEST_F(BinderTest, AGridReadsTheRowsOnTheScreenAndNoOthers) {
    form.rows.count = 100000;
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    view.grab();
    EXPECT_LT(form.rows.asked, 2000) << "of 300,000 cells";
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    view.grab();
    EXPECT_LT(form.rows.asked, 4000);
    EXPECT_EQ(view.model()->rowCount(), 100000);
}

TEST_F(BinderTest, AGridShowsPicturesValueItemsAndNumbersAtTheRight) {
    form.rows.count = 3;
    Show();
    const QAbstractItemModel& model = *Find<QTableView>("tdbgRows").model();
    EXPECT_FALSE(qvariant_cast<QIcon>(model.index(0, 0).data(Qt::DecorationRole)).isNull());
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("valid"));
    EXPECT_EQ(model.index(1, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("invalid"));
    EXPECT_TRUE(model.index(1, 0).data().toString().isEmpty());
    EXPECT_EQ(model.index(0, 1).data().toString(), QStringLiteral("r0c1"));
    EXPECT_EQ(model.index(0, 2).data().toString(), QString()) << "a value item";
    EXPECT_TRUE(model.index(0, 2).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Address"));
}

TEST_F(BinderTest, TheCurrentCellGoesBothWaysAndItsRuleRunsOnce) {
    form.rows.count = 50;
    Show();
    int moves = 0;
    form.tdbgRows.OnRowColChange([&] { ++moves; });
    auto& view = Find<QTableView>("tdbgRows");
    form.tdbgRows.ShowCurrent(20);
    EXPECT_EQ(view.currentIndex().row(), 20);
    EXPECT_EQ(moves, 0) << "following the records runs no rule";
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(form.tdbgRows.Row(), 21);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(form.tdbgRows.Col(), 1);
    EXPECT_EQ(moves, 2);
}

TEST_F(BinderTest, AGridIsClickedAndDoubleClickedByMouseAndByKeyboard) {
    form.rows.count = 5;
    Texts seen;
    form.tdbgRows.OnClick([&] { seen.push_back("click " + std::to_string(form.tdbgRows.Row())); });
    form.tdbgRows.OnDblClick([&] { seen.push_back("double " + std::to_string(form.tdbgRows.Row())); });
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    const QPoint cell = view.visualRect(view.model()->index(1, 0)).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell);
    EXPECT_EQ(seen, (Texts{"click 1", "double 1"}));
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen.back(), "double 1");
    EXPECT_TRUE(form.events.empty()) << "Enter does not press the default button here";
}

TEST_F(BinderTest, ChangedRowsKeepThePlaceAndNewRowsAppear) {
    form.rows.count = 1000;
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    form.tdbgRows.ShowCurrent(500);
    const int top = view.verticalScrollBar()->value();
    form.tdbgRows.Refresh();
    EXPECT_EQ(view.verticalScrollBar()->value(), top);
    form.rows.count = 1001;
    form.tdbgRows.Refresh();
    EXPECT_EQ(view.model()->rowCount(), 1001);
    EXPECT_EQ(view.currentIndex().row(), 500);
    EXPECT_EQ(view.verticalScrollBar()->value(), top);
    form.tdbgRows.SetRows(nullptr);
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(BinderTest, AFaultInReadingACellIsToldOnceAndCrossesNoLoop) {
    form.rows.count = 100;
    Show();
    form.rows.broken = true;
    Find<QTableView>("tdbgRows").viewport()->repaint();
    Settle();
    EXPECT_EQ(told, (Texts{"The disk is gone."}));
}

}  // namespace
}  // namespace zenvora::desktop

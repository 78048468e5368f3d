#include "window/WindowTest.h"

namespace varnith::test {

// The list on the screen.
class ResultsTest : public WindowTest {
  protected:
    void ShowRows(int rows) {
        for (int row = 0; row < rows; ++row) documents.File(std::to_string(row) + ".tif", TiffBytes(row + 1));
        Scan(documents.Path(), false);
        WaitFor([&] { return Table().model()->rowCount() == rows; });
    }
    // Does something with the menu that the next press brings up, which closes it.
    void WithMenu(const std::function<void(QMenu&)>& work) {
        user_.disconnect();
        user_.callOnTimeout([this, work] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu) return;
            user_.stop();
            work(*menu);
        });
        user_.start(5);
    }

  private:
    QTimer user_;
};

TEST_F(ResultsTest, AnswersMouseAndKeys) {
    for (const char* name : {"b10.tif", "b9.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    documents.File(std::string(200, 'w') + "<b>.tif", TiffBytes(12));
    for (int i = 0; i < 60; ++i) documents.File("a" + std::to_string(i) + ".tif", TiffBytes(2));
    Start([&] {
        Listbox& list = Main().Listbox1;
        QTableView& table = Table();
        Scan(documents.Path(), false);
        WaitFor([&] { return table.model()->rowCount() == 64; });
        Frame().findChild<QCheckBox*>()->setFocus();
        table.setFocus();
        const auto click = [](QWidget* where, const QPoint& place) {
            QTest::mouseClick(where, Qt::LeftButton, {}, place);
        };
        const auto press = [&](Qt::Key key) {
            QTest::keyClick(&table, key);
            return list.ListIndex();
        };
        EXPECT_FALSE(table.currentIndex().isValid()) << "none is highlighted until the user does it";
        click(table.viewport(), Centre(2, 3));
        EXPECT_EQ(list.ListIndex(), 2);
        EXPECT_EQ(press(Qt::Key_Down), 3);
        EXPECT_EQ(press(Qt::Key_Left), 3);
        EXPECT_GT(press(Qt::Key_PageDown), 10);
        EXPECT_EQ(press(Qt::Key_End), 63);
        EXPECT_EQ(press(Qt::Key_C), 62);
        for (const bool ticked : {true, false}) {
            press(Qt::Key_Space);
            EXPECT_EQ(list.CellCheck(62, 0), ticked);
        }
        EXPECT_EQ(press(Qt::Key_Home), 0);
        click(table.viewport(), QPoint(10, Centre(1, 0).y()));
        EXPECT_EQ(Tags()[1], "2*");
        EXPECT_EQ(list.ListIndex(), 1);

        auto* header = table.horizontalHeader();
        const auto click_heading = [&](int column) {
            click(header->viewport(), QPoint(header->sectionViewportPosition(column) + 20, 8));
        };
        click_heading(2);
        WaitFor([&] { return header->isSortIndicatorShown() && table.currentIndex().row() == 4; });
        EXPECT_TRUE(Shown(0).starts_with("|b9.tif|") && Shown(1).starts_with("|b10.tif|"));
        EXPECT_EQ(list.ListIndex(), 4);  // the row that was highlighted, where it is now
        EXPECT_EQ(Tags()[4], "2*");
        click_heading(2);
        EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
        EXPECT_NE(Shown(0).find("|12|"), std::string::npos);

        // What is cut off shows as a tip, and nothing else does.
        table.scrollToTop();
        for (const auto& [row, tip] : {std::pair(1, ""), {0, "www&lt;b&gt;.tif"}}) {
            const QPoint place = Centre(row, 1);
            QHelpEvent help(QEvent::ToolTip, place, table.viewport()->mapToGlobal(place));
            QApplication::sendEvent(table.viewport(), &help);
            EXPECT_TRUE(QToolTip::text().contains(tip) && QToolTip::text().isEmpty() == (row == 1)) << row;
        }
        QString headings;
        for (int column = 0; column < 5; ++column)
            headings += table.model()->headerData(column, Qt::Horizontal).toString() + "|";
        EXPECT_EQ(headings, " |Name|Count|Path|Type|");
    });
}

TEST_F(ResultsTest, MenuComesUpAtThePressAndTicks) {
    Start([&] {
        ShowRows(3);
        const QTableView& table = Table();
        const QPoint place = Centre(1, 3);
        WithMenu([&](QMenu& menu) {
            EXPECT_EQ(menu.pos(), table.viewport()->mapToGlobal(place));
            // The list has not made anything of the press yet.
            EXPECT_EQ(Main().Listbox1.ListIndex(), -1);
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions()[3]).center());
        });
        QTest::mouseClick(table.viewport(), Qt::RightButton, {}, place);
        EXPECT_EQ(Ticks(), "xxx");
        EXPECT_EQ(Main().Listbox1.ListIndex(), 1);

        bool asked = false;
        WithMenu([&](QMenu& menu) {
            const QRect row = table.visualRect(table.currentIndex());
            EXPECT_EQ(menu.pos(), table.viewport()->mapToGlobal(row.center()));
            asked = menu.close();
        });
        Press("Menu");
        WaitFor([&] { return asked; });
        EXPECT_EQ(Ticks(), "xxx");

        WithMenu([](QMenu& menu) {
            Main().Close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            menu.close();
        });
        QTest::mousePress(table.viewport(), Qt::RightButton, {}, place);
        EXPECT_EQ(desktop.quit_status, 0);
    });
}

TEST_F(ResultsTest, DoubleClickOpensTheRowUnderTheMouse) {
    Start([&] {
        ShowRows(3);
        // In any column but that of the check box, on which each click ticks, and below the rows not at all.
        for (const QPoint& place :
             {Centre(1, 1), Centre(2, 4), QPoint(10, Centre(0, 0).y()), Centre(2, 1) + QPoint(0, 100)})
            QTest::mouseDClick(Table().viewport(), Qt::LeftButton, {}, place);
        EXPECT_EQ(desktop.opened, Lines({documents / "1.tif", documents / "2.tif"}));
        EXPECT_EQ(Ticks(), "---");
        EXPECT_EQ(Main().Listbox1.ListIndex(), -1);
        EXPECT_TRUE(desktop.messages.empty());
    });
}

}  // namespace varnith::test

#include "window/WindowTest.h"

namespace varnith::test {

// The list on the screen.
using ResultsTest = WindowTest;

// 64 rows in the window, the first with a name that no column can show whole.
struct RowsTest : ResultsTest {
    void WorkOnRows(const std::function<void(QTableView& table, Listbox& list)>& user) {
        documents.File("<b>" + std::string(200, 'w') + ".tif", TiffBytes(12));
        for (int i = 1; i <= 60; ++i) documents.File("a" + std::to_string(i) + ".tif", TiffBytes(2));
        for (const char* name : {"b 10.tif", "b9.tif", "c.tif"}) documents.File(name, TiffBytes(1));
        Work([&] {
            Scan(documents.Path(), false);
            ServeUntil([&] { return Table().model()->rowCount() == 64; });
            user(Table(), Main().Listbox1);
        });
    }
    // Presses a key in the table and returns the row that is highlighted then.
    std::int32_t PressKey(Qt::Key key) {
        QTest::keyClick(&Table(), key);
        return Main().Listbox1.ListIndex();
    }
};

TEST_F(RowsTest, MovesAmongRowsByKeys) {
    WorkOnRows([&](QTableView& table, Listbox& list) {
        EXPECT_EQ(table.model()->headerData(1, Qt::Horizontal), "Name");
        frame->findChild<QCheckBox*>()->setFocus();
        table.setFocus();
        EXPECT_EQ(PressKey(Qt::Key_Return), -1) << "no row is highlighted until the user highlights one";
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, Centre(2, 3));
        EXPECT_EQ(list.ListIndex(), 2);
        PressKey(Qt::Key_Return);
        EXPECT_EQ(desktop.opened, Lines({documents / "a2.tif"}));
        QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
                  "a2.tif\t2\t" + documents.Path() + "\ttif");
        EXPECT_EQ(PressKey(Qt::Key_Down), 3);
        EXPECT_EQ(PressKey(Qt::Key_Left), 3);
        EXPECT_GT(PressKey(Qt::Key_PageDown), 10);
        EXPECT_EQ(PressKey(Qt::Key_End), 63);
        EXPECT_EQ(PressKey(Qt::Key_Home), 0);

        // In the headings: sorts by the third, the number of pages, and makes the last column wider. The
        // others make room.
        for (const char* keys : {"Tab", "Right", "Right", "space", "Right", "Right", "alt+Right"})
            Press(keys);
        const QHeaderView& headings = *table.horizontalHeader();
        ServeUntil(
            [&] { return table.columnWidth(4) == 65 && headings.length() == table.viewport()->width(); });
        EXPECT_EQ(list.Cell(0, 2) + list.Cell(63, 2), "112");
        Press("Tab");
        ServeUntil([&] { return frame->findChild<QLineEdit*>()->hasFocus(); });
    });
}

TEST_F(RowsTest, TakesASpaceForATickOrForTheNameThatIsBeingTyped) {
    WorkOnRows([&](QTableView&, Listbox& list) {
        const int interval = QApplication::keyboardInputInterval();
        QApplication::setKeyboardInputInterval(1);
        const auto press_alone = [&](Qt::Key key) {
            QElapsedTimer pause;
            pause.start();
            ServeUntil([&] { return pause.hasExpired(1); });
            return PressKey(key);
        };
        for (const auto& [key, row] : {std::pair(Qt::Key_X, -1), {Qt::Key_C, 63}, {Qt::Key_B, 61}})
            EXPECT_EQ(press_alone(key), row);
        for (const bool ticked : {true, false}) {
            press_alone(Qt::Key_Space);
            EXPECT_EQ(list.CellCheck(61, 0), ticked);
        }
        EXPECT_EQ(press_alone(Qt::Key_B), 62);
        QApplication::setKeyboardInputInterval(60'000);
        EXPECT_EQ(PressKey(Qt::Key_Space), 61);
        EXPECT_EQ(Ticks(), std::string(64, '-'));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Space}) PressKey(key);
        EXPECT_EQ(Ticks(), std::string(62, '-') + "x-");
        QApplication::setKeyboardInputInterval(interval);
    });
}

TEST_F(RowsTest, ShowsCutTextsAsTipsAndTicksAndSortsByTheMouse) {
    WorkOnRows([&](QTableView& table, Listbox& list) {
        // A text that is cut off has a tool tip, and no other has.
        for (const auto& [row, tip] : {std::pair(1, ""), {0, "&lt;b&gt;www"}}) {
            const QPoint place = Centre(row, 1);
            QHelpEvent help(QEvent::ToolTip, place, table.viewport()->mapToGlobal(place));
            QApplication::sendEvent(table.viewport(), &help);
            EXPECT_TRUE(QToolTip::text().contains(tip) && QToolTip::text().isEmpty() == (row == 1)) << row;
        }

        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        EXPECT_EQ(Tags()[1], "2*");
        EXPECT_EQ(list.ListIndex(), 1);
        auto* header = table.horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(2) + 20, 8});
        ServeUntil([&] { return header->isSortIndicatorShown() && table.currentIndex().row() == 3; });
        EXPECT_EQ(list.ListIndex(), 3) << "the highlighted row, at its new place";
        EXPECT_EQ(Tags()[3], "2*");
    });
}

TEST_F(ResultsTest, OpensTheRowUnderTheMouseAndItsMenu) {
    for (const char* name : {"0.tif", "1.tif", "2.tif"}) documents.File(name);
    Work([&] {
        QTableView& table = Table();
        Scan(documents.Path(), false);
        ServeUntil([&] { return table.model()->rowCount() == 3; });
        // A double-click below the rows opens nothing. On a check box, each click also changes the tick.
        for (const QPoint& place :
             {Centre(1, 1), Centre(2, 1) + QPoint(0, 100), QPoint(10, Centre(0, 0).y()), Centre(2, 4)})
            Click(table.viewport()->mapToGlobal(place), 2);
        ServeUntil([&] { return desktop.opened.size() == 3; });
        EXPECT_EQ(desktop.opened, Lines({documents / "1.tif", documents / "0.tif", documents / "2.tif"}));
        EXPECT_TRUE(desktop.messages.empty());
        EXPECT_EQ(Ticks(), "---");

        QTimer watch;
        // Acts as the user of the menu that opens next at that place.
        const auto with_menu_at = [&](const QPoint& place, const std::function<void(QMenu&)>& user) {
            watch.callOnTimeout([&table, &watch, place, user] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                if (!menu) return;
                watch.stop();
                watch.disconnect();
                EXPECT_EQ(menu->pos(), table.viewport()->mapToGlobal(place));
                user(*menu);
            });
            watch.start();
        };
        with_menu_at(table.visualRect(table.currentIndex()).center(), [](QMenu& menu) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&menu));
            Click(menu.mapToGlobal(menu.actionGeometry(menu.actions()[3]).center()));
            ServeUntil([&] { return !menu.isVisible(); });
            menu.close();
        });
        Press("shift+F10");
        ServeUntil([&] { return Ticks() == "xxx"; });

        with_menu_at(Centre(1, 3), [](QMenu& menu) {
            EXPECT_EQ(Main().Listbox1.ListIndex(), 2) << "the list handles the press after the menu";
            Main().Close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            menu.close();
        });
        QTest::mousePress(table.viewport(), Qt::RightButton, {}, Centre(1, 3));
        EXPECT_EQ(desktop.quit_status, 0);
    });
}

TEST_F(ResultsTest, PicksInTheFilterWhatItShows) {
    Work([&] {
        PopupMenu& filter = Main().PopupMenu1;
        auto& popup = *frame->findChild<QComboBox*>();
        const auto fill = [&](const Lines& entries) {
            filter.DeleteAllRows();
            for (const std::string& entry : entries) filter.AddRow(entry);
            Main().SetTitle(Main().Title() + ".");
        };
        const auto wait_for_frame = [&] {
            ServeUntil([&] { return frame->windowTitle().toStdString() == Main().Title(); });
        };
        // What a scan fills the filter with while it shows "All" and "tif", with its list open or closed, and
        // the result when the user picks "tif".
        for (const auto& [entries, picked] :
             {std::pair(Lines{"All", "TIF", "tif"}, "tif"), {{"tif", "All"}, "tif"}, {{"All", "tiff"}, ""}}) {
            for (const bool open : {false, true}) {
                SCOPED_TRACE(entries.back() + (open ? " open" : ""));
                fill({"All", "tif"});
                wait_for_frame();
                QWheelEvent wheel({5, 5}, popup.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {},
                                  Qt::NoScrollPhase, false);
                QApplication::sendEvent(&popup, &wheel);
                EXPECT_EQ(filter.Text(), "") << "the mouse wheel picks nothing";
                if (open) popup.showPopup();
                fill(entries);
                if (open) wait_for_frame();
                QTest::keyClick(open ? popup.view() : static_cast<QWidget*>(&popup), Qt::Key_End);
                if (open) QTest::keyClick(popup.view(), Qt::Key_Return);
                EXPECT_EQ(filter.Text(), picked);
                ServeUntil([&] { return popup.itemText(popup.count() - 1).toStdString() == entries.back(); });
                EXPECT_EQ(popup.currentText(), picked);
            }
        }
    });
}

}  // namespace varnith::test

#include "platform/ui/Application.h"
#include "window/WindowTest.h"

namespace varnith::test {

class ResultsTest : public WindowTest {
  protected:
    void ShowRows(int rows) {
        for (int row = 0; row < rows; ++row) documents.File(std::to_string(row) + ".tif", TiffBytes(row + 1));
        Scan(documents.Path(), false);
        WaitFor([&] { return Table().model()->rowCount() == rows; });
    }
    // Does something with the menu that the next press brings up.
    static void WithMenu(const std::function<void(QMenu&)>& work) {
        auto* timer = new QTimer(QApplication::instance());
        QObject::connect(timer, &QTimer::timeout, [work, timer] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu) return;
            timer->deleteLater();
            timer->stop();
            const QPointer<QMenu> still_there(menu);
            work(*menu);
            if (still_there) menu->close();
        });
        timer->start(5);
    }
};

TEST_F(ResultsTest, MenuComesUpAtThePressAndTicks) {
    Start([&] {
        ShowRows(3);
        const QTableView& table = Table();
        const QPoint place = Centre(1, 3);
        WithMenu([&](QMenu& menu) {
            EXPECT_EQ(menu.pos(), table.viewport()->mapToGlobal(place));
            // The list has not made anything of the press yet.
            EXPECT_EQ(Main().Listbox1.ListIndex(), -1);
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions()[0]).center());
        });
        QTest::mouseClick(table.viewport(), Qt::RightButton, {}, place);
        EXPECT_EQ(Ticks(), "xxx");
        EXPECT_EQ(Main().Listbox1.ListIndex(), 1);

        bool asked = false;
        WithMenu([&](QMenu& menu) {
            const QRect row = table.visualRect(table.currentIndex());
            EXPECT_EQ(menu.pos(), table.viewport()->mapToGlobal(row.center()));
            QTest::keyClick(&menu, Qt::Key_Escape);
            asked = true;
        });
        QProcess::execute("xdotool", {"key", "Menu"});
        WaitFor([&] { return asked; });
        EXPECT_EQ(Ticks(), "xxx");
    });
}

TEST_F(ResultsTest, WindowMayCloseBehindItsMenu) {
    Start([&] {
        ShowRows(1);
        WithMenu([](QMenu& menu) {
            Main().Close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            menu.close();
        });
        QTest::mousePress(Table().viewport(), Qt::RightButton, {}, Centre(0, 1));
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

TEST_F(ResultsTest, ExportWindowIsWhiteAndOfOneSize) {
    Start([&] {
        Frame();
        Application::Current().Choose(Main().FileExport());
        QWidget* frame = nullptr;
        WaitFor([&] { return (frame = QApplication::activeWindow()) && frame->windowTitle() == "Export"; });
        EXPECT_EQ(frame->size(), QSize(253, 179));
        EXPECT_EQ(frame->minimumSize(), frame->maximumSize());
        EXPECT_EQ(frame->grab().toImage().pixelColor(5, 5), QColor(Qt::white));
        QProcess::execute("xdotool", {"key", "w"});
        WaitFor([&] { return frame->findChild<QLineEdit*>()->text() == "w"; });
        QProcess::execute("xdotool", {"key", "ctrl+w"});
        WaitFor([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
        EXPECT_FALSE(desktop.quit_status);
    });
}

}  // namespace varnith::test

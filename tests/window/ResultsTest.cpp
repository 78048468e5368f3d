#include "export/Exporter.h"
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
    static QMainWindow& ExportFrame() {
        Application::Current().Choose(Main().FileExport());
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* frame = qobject_cast<QMainWindow*>(widget);
                frame && frame->isVisible() && frame->windowTitle() == "Export") {
                EXPECT_TRUE(QTest::qWaitForWindowActive(frame));
                return *frame;
            }
        throw std::runtime_error("no export window");
    }
};

TEST_F(ResultsTest, MenuComesUpAtThePressAndTicks) {
    Start([&] {
        ShowRows(3);
        const QPoint place = Centre(1, 3);
        WithMenu([&](QMenu& menu) {
            EXPECT_EQ(menu.pos(), Table().viewport()->mapToGlobal(place));
            // The list has not made anything of the press yet.
            EXPECT_EQ(Main().Listbox1.ListIndex(), -1);
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions()[0]).center());
        });
        QTest::mouseClick(Table().viewport(), Qt::RightButton, {}, place);
        EXPECT_EQ(Ticks(), "xxx");
        EXPECT_EQ(Main().Listbox1.ListIndex(), 1);

        bool asked = false;
        WithMenu([&](QMenu& menu) {
            const QRect row = Table().visualRect(Table().currentIndex());
            EXPECT_EQ(menu.pos(), Table().viewport()->mapToGlobal(row.center()));
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

TEST_F(ResultsTest, ExportWindowIsLaidOutAndWorkedByKey) {
    Start([&] {
        Frame();
        QMainWindow& frame = ExportFrame();
        EXPECT_EQ(frame.size(), QSize(253, 179));
        EXPECT_EQ(frame.minimumSize(), frame.maximumSize());
        EXPECT_EQ(frame.grab().toImage().pixelColor(5, 5), QColor(Qt::white));
        auto& popup = *frame.findChild<QComboBox*>();
        auto& separator = *frame.findChild<QLineEdit*>();
        EXPECT_EQ(popup.geometry(), QRect(22, 40, 211, 20));
        EXPECT_EQ(separator.geometry(), QRect(22, 97, 127, 22));
        EXPECT_EQ(frame.findChild<QPushButton*>()->geometry(), QRect(88, 131, 80, 20));
        EXPECT_EQ(popup.currentText(), "Select Type");

        EXPECT_EQ(QApplication::focusWidget(), &separator);
        const auto press = [](const char* keys) {
            QProcess::execute("xdotool", {"key", "--clearmodifiers", keys});
        };
        for (const char* keys : {"w", "Tab", "t", "shift+Tab", "Return"}) press(keys);
        WaitFor([&] { return desktop.dialogs == 1; });
        EXPECT_EQ(separator.text(), "w");
        EXPECT_EQ(popup.currentText(), "Text Document");
        press("ctrl+w");
        WaitFor([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
        EXPECT_FALSE(desktop.quit_status);
        ExportFrame();
        press("ctrl+q");
        WaitFor([&] { return desktop.quit_status.has_value(); });
    });
}

}  // namespace varnith::test

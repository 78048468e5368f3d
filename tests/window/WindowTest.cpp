#include "window/WindowTest.h"

#include "platform/threads/Scheduler.h"

namespace varnith::test {

QMainWindow& WindowTest::Frame() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* frame = qobject_cast<QMainWindow*>(widget); frame && frame->isVisible()) {
            // A window manager may leave a new window behind; its user would then click on it.
            if (!QTest::qWaitForWindowActive(frame, 2'000))
                QProcess::execute("xdotool", {"windowactivate", QString::number(frame->winId())});
            EXPECT_TRUE(QTest::qWaitForWindowActive(frame));
            return *frame;
        }
    throw std::runtime_error("no window");
}

std::string WindowTest::Shown(int row, int column) {
    return Table().model()->index(row, column).data().toString().toStdString();
}

QPoint WindowTest::Centre(int row, int column) {
    return Table().visualRect(Table().model()->index(row, column)).center();
}

std::string WindowTest::Property(const char* name) {
    QProcess xprop;
    xprop.start("xprop", {"-id", QString::number(Frame().winId()), name});
    EXPECT_TRUE(xprop.waitForFinished());
    return xprop.readAllStandardOutput().toStdString();
}

TEST_F(WindowTest, FollowsItsLayoutAtEverySize) {
    Start([&] {
        MainWindow& w = Main();
        EXPECT_EQ(Frame().pos(), QPoint(w.Left(), w.Top()));
        EXPECT_EQ(Frame().centralWidget()->size(), QSize(774, 670));
        const std::pair<const QWidget&, const Control&> shown[] = {
            {Table(), w.Listbox1},
            {Find<QLabel>("Address:"), w.StaticText1},
            {*Frame().findChild<QLineEdit*>(), w.EditField1},
            {Find<QPushButton>("Locate"), w.PushButton2},
            {Find<QLabel>(""), w.StaticText2},
            {Find<QCheckBox>("Include Subfolders"), w.CheckBox4},
            {*Frame().findChild<QComboBox*>(), w.PopupMenu1},
            {Find<QLabel>("Filter:"), w.StaticText16},
        };
        const int around = Frame().height() - 670;  // the menu bar
        // Larger, and then as small as it can be.
        for (const QSize size : {QSize(874, 730), QSize(774, 670)}) {
            Frame().resize(size.width() == 774 ? QSize(300, 300) : size + QSize(0, around));
            WaitFor([&] { return Frame().centralWidget()->size() == size; });
            EXPECT_EQ(QSize(w.Width(), w.Height()), size);
            for (const auto& [widget, control] : shown) {
                const Bounds& b = control.CurrentBounds();
                EXPECT_EQ(widget.geometry(), QRect(b.Left, b.Top, b.Width, b.Height));
            }
        }
        const std::string least =
            "program specified minimum size: 774 by " + std::to_string(Frame().height());
        EXPECT_NE(Property("WM_NORMAL_HINTS").find(least), std::string::npos) << Property("WM_NORMAL_HINTS");
    });
}

TEST_F(WindowTest, SharesTheWidthAmongTheColumns) {
    Start([&] {
        const auto widths = [] {
            std::vector<int> all;
            for (int column = 0; column < 5; ++column) all.push_back(Table().columnWidth(column));
            return all;
        };
        const int rest = Table().viewport()->width() - 30 - 65 - 55;
        EXPECT_EQ(widths(), std::vector<int>({30, rest / 2, 65, rest - rest / 2, 55}));
        Table().setColumnWidth(4, 75);
        Frame().resize(Frame().width() + 200, Frame().height());
        WaitFor([&] { return Table().viewport()->width() > rest + 300; });
        EXPECT_EQ(widths(), std::vector<int>({30, rest / 2 + 90, 65, rest - rest / 2 + 90, 75}));
        std::string headings;
        for (int column = 0; column < 5; ++column)
            headings += Table().model()->headerData(column, Qt::Horizontal).toString().toStdString() + "|";
        EXPECT_EQ(headings, " |Name|Count|Path|Type|");
    });
}

TEST_F(WindowTest, TellsTheWindowManagerWhatGoesOn) {
    documents.File("a[*].tif", TiffBytes(3));
    documents.File("b\n\xFF.tif", TiffBytes(2));
    Start([&] {
        const auto titled = [](const std::string& title) {
            WaitFor([&] { return Property("_NET_WM_NAME").find('"' + title + '"') != std::string::npos; });
        };
        titled("Varnith - Testix");
        QTest::mouseClick(&Find<QCheckBox>("Include Subfolders"), Qt::LeftButton, {}, QPoint(8, 10));
        desktop.choose = [&] { return documents.Path(); };
        QTest::mouseClick(&Find<QPushButton>("Locate"), Qt::LeftButton);
        titled("Varnith - Testix - Finished");
        WaitFor([] { return Table().model()->rowCount() == 2; });
        EXPECT_EQ(Shown(0, 1) + "|" + Shown(0, 2) + "|" + Shown(0, 4), "a[*].tif|3|tif");
        EXPECT_EQ(Shown(1, 1), "b\u240A\uFFFD.tif");
        EXPECT_EQ(Frame().findChild<QLineEdit*>()->text().toStdString(), documents.Path());
        for (const char* label : {"2 file(s)", "Filter:"})
            EXPECT_EQ(Find<QLabel>(label).alignment(), Qt::AlignRight | Qt::AlignVCenter);
        const auto& popup = *Frame().findChild<QComboBox*>();
        EXPECT_EQ(popup.itemText(0) + "|" + popup.itemText(1) + "|" + popup.itemText(2), "All|tif|");
        EXPECT_EQ(popup.currentIndex(), -1);
        Main().SetTitle("Processing Item: a[*].tif");
        titled("Processing Item: a[*].tif");
    });
}

TEST_F(WindowTest, ListAnswersMouseAndKeys) {
    for (const char* name : {"b10.tif", "b9.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    documents.File(std::string(200, 'w') + ".tif", TiffBytes(12));
    for (int i = 0; i < 60; ++i) documents.File("a" + std::to_string(i) + ".tif", TiffBytes(2));
    Start([&] {
        Listbox& list = Main().Listbox1;
        Scan(documents.Path(), false);
        WaitFor([] { return Table().model()->rowCount() == 64; });
        Table().setFocus();
        const auto click = [](QWidget* where, const QPoint& place) {
            QTest::mouseClick(where, Qt::LeftButton, {}, place);
        };
        const auto press = [&](Qt::Key key) {
            QTest::keyClick(&Table(), key);
            return list.ListIndex();
        };
        EXPECT_EQ(list.ListIndex(), -1);
        click(Table().viewport(), Centre(2, 3));
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
        click(Table().viewport(), QPoint(10, Centre(1, 0).y()));
        EXPECT_EQ(Tags()[1], "2*");
        EXPECT_EQ(list.ListIndex(), 1);

        const auto* header = Table().horizontalHeader();
        const auto click_heading = [&](int column) {
            click(header->viewport(), QPoint(header->sectionViewportPosition(column) + 20, 8));
        };
        click_heading(2);
        WaitFor([&] { return header->isSortIndicatorShown() && Table().currentIndex().row() == 4; });
        EXPECT_EQ(Shown(0, 1) + Shown(1, 1), "b9.tifb10.tif");
        EXPECT_EQ(list.ListIndex(), 4);  // the row that was highlighted, where it is now
        EXPECT_EQ(Tags()[4], "2*");
        click_heading(2);
        EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
        EXPECT_EQ(Shown(0, 2), "12");
    });
}

TEST_F(WindowTest, ShowsWhatIsCutOffAsATip) {
    documents.File("short.tif", TiffBytes(1));
    documents.File(std::string(100, 'w') + "<b>.tif", TiffBytes(1));
    Start([&] {
        Scan(documents.Path(), false);
        WaitFor([] { return Table().model()->rowCount() == 2; });
        const auto tip_at = [](int row) {
            const QPoint place = Centre(row, 1);
            QHelpEvent help(QEvent::ToolTip, place, Table().viewport()->mapToGlobal(place));
            QApplication::sendEvent(Table().viewport(), &help);
            return QToolTip::text().toStdString();
        };
        EXPECT_EQ(tip_at(0), "");
        EXPECT_NE(tip_at(1).find("www&lt;b&gt;.tif"), std::string::npos) << tip_at(1);
    });
}

TEST_F(WindowTest, LivesDuringAScan) {
    for (int i = 0; i < 20'000; ++i)
        documents.File("d" + std::to_string(i % 20) + "/" + std::to_string(i) + ".tif");
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        WaitFor([] { return Table().model()->rowCount() > 100; });
        QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        Table().scrollToBottom();
        Frame().resize(900, 800);
        WaitFor([] { return Table().width() > 860; });
        QMenu& help = *Frame().menuBar()->actions()[1]->menu();
        help.popup(Frame().mapToGlobal(QPoint(50, 20)));
        WaitFor([&] { return help.isVisible(); });
        WaitFor([rows = Main().Listbox1.ListCount()] { return Main().Listbox1.ListCount() > rows; });
        EXPECT_TRUE(Frame().windowTitle().startsWith("Processing Item: ")) << "the scan was over too soon";
        help.hide();
        Scheduler::Current().SetSlice(std::chrono::milliseconds(8));
        WaitFor([] { return Frame().windowTitle().endsWith(" - Finished"); });
        EXPECT_EQ(Main().StaticText2.Text(), "20000 file(s)");
        EXPECT_TRUE(Main().Listbox1.CellCheck(1, 0));
    });
}

TEST_F(WindowTest, MenusShowWhatCanBeChosen) {
    Start([&] {
        std::string menus;
        for (const QAction* menu : Frame().menuBar()->actions()) {
            menus += menu->text().toStdString() + ":";
            for (const QAction* entry : menu->menu()->actions())
                menus += entry->isSeparator()
                             ? "-;"
                             : entry->text().toStdString() + (entry->isEnabled() ? "+;" : ";");
        }
        EXPECT_EQ(menus, "&File:Export+;&Quit+;Help:Support+;Visit Website+;-;About+;");
        QTest::keyClick(&Frame(), Qt::Key_H, Qt::NoModifier);
        EXPECT_FALSE(desktop.quit_status);
        Frame().menuBar()->actions()[1]->menu()->actions()[1]->trigger();
        EXPECT_EQ(desktop.urls.size(), 1u);
    });
}

TEST_F(WindowTest, EndsByTheCloseKeyWithWhateverElseIsHeld) {
    for (const char* keys : {"super+w", "ctrl+shift+w"}) {
        desktop.quit_status.reset();
        Start([&] {
            Frame();
            QProcess::execute("xdotool", {"key", keys});
            WaitFor([&] { return desktop.quit_status.has_value(); });
        });
    }
}

}  // namespace varnith::test

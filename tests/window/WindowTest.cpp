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

namespace {

QRect RectOf(const Bounds& bounds) {
    return {bounds.Left, bounds.Top, bounds.Width, bounds.Height};
}

TEST_F(WindowTest, FollowsItsLayoutAtEverySize) {
    Start([&] {
        const QWidget& contents = *Frame().centralWidget();
        EXPECT_EQ(contents.size(), QSize(774, 670));
        EXPECT_EQ(Frame().pos(), QPoint(Main().Left(), Main().Top()));
        struct Case {
            const QWidget& widget;
            QRect design;
            QRect larger;  // with 100 more in width and 60 in height
        };
        const Case cases[] = {
            {Table(), {7, 38, 754, 601}, {7, 38, 854, 661}},
            {Find<QLabel>("Address:"), {9, 8, 56, 20}, {9, 8, 56, 20}},
            {*Frame().findChild<QLineEdit*>(), {72, 7, 438, 22}, {72, 7, 538, 22}},
            {Find<QPushButton>("Locate"), {686, 6, 80, 20}, {786, 6, 80, 20}},
            {Find<QLabel>(""), {624, 643, 132, 20}, {724, 703, 132, 20}},
            {Find<QCheckBox>("Include Subfolders"), {10, 645, 147, 20}, {10, 705, 147, 20}},
            {*Frame().findChild<QComboBox*>(), {560, 7, 114, 20}, {660, 7, 114, 20}},
            {Find<QLabel>("Filter:"), {515, 7, 40, 20}, {615, 7, 40, 20}},
        };
        for (const Case& c : cases) EXPECT_EQ(c.widget.geometry(), c.design);
        Frame().resize(Frame().width() + 100, Frame().height() + 60);
        WaitFor([&] { return contents.size() == QSize(874, 730); });
        for (const Case& c : cases) EXPECT_EQ(c.widget.geometry(), c.larger);
        EXPECT_EQ(RectOf(Main().Listbox1.CurrentBounds()), cases[0].larger);

        const std::string least =
            "program specified minimum size: 774 by " + std::to_string(Frame().height() - 60);
        EXPECT_NE(Property("WM_NORMAL_HINTS").find(least), std::string::npos) << Property("WM_NORMAL_HINTS");
        Frame().resize(300, 300);
        WaitFor([&] { return contents.size() == QSize(774, 670); });
        EXPECT_EQ(Table().geometry(), cases[0].design);
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
        WaitFor([] { return Property("_NET_WM_NAME").find("\"Varnith - Testix\"") != std::string::npos; });
        QTest::mouseClick(&Find<QCheckBox>("Include Subfolders"), Qt::LeftButton, {}, QPoint(8, 10));
        EXPECT_TRUE(Main().CheckBox4.Value());
        desktop.choose = [&] { return documents.Path(); };
        std::string during;
        disk.fails = [&](const std::string& path) {
            if (path.ends_with("a[*].tif")) during = Main().Title();
            return false;
        };
        QTest::mouseClick(&Find<QPushButton>("Locate"), Qt::LeftButton);
        WaitFor([] { return Frame().windowTitle().endsWith(" - Finished"); });
        EXPECT_EQ(during, "Processing Item: a[*].tif");
        EXPECT_NE(Property("_NET_WM_NAME").find("\"Varnith - Testix - Finished\""), std::string::npos);
        WaitFor([] { return Table().model()->rowCount() == 2; });
        EXPECT_EQ(Shown(0, 1) + "|" + Shown(0, 2) + "|" + Shown(0, 4), "a[*].tif|3|tif");
        EXPECT_EQ(Shown(1, 1), "b\u240A\uFFFD.tif");
        EXPECT_EQ(Frame().findChild<QLineEdit*>()->text().toStdString(), documents.Path());
        EXPECT_EQ(Find<QLabel>("2 file(s)").alignment(), Qt::AlignRight | Qt::AlignVCenter);
        const auto& popup = *Frame().findChild<QComboBox*>();
        EXPECT_EQ(popup.count(), 2);
        EXPECT_EQ(popup.itemText(0) + popup.itemText(1), "Alltif");
        EXPECT_EQ(popup.currentIndex(), -1);

        Main().SetTitle("Processing Item: a[*].tif");
        WaitFor([] {
            return Property("_NET_WM_NAME").find("\"Processing Item: a[*].tif\"") != std::string::npos;
        });
    });
}

TEST_F(WindowTest, ListAnswersMouseAndKeys) {
    for (const char* name : {"b10.tif", "b9.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    documents.File(std::string(200, 'w') + ".tif", TiffBytes(12));
    for (int i = 0; i < 60; ++i) documents.File("a" + std::to_string(i) + ".tif", TiffBytes(2));
    Start([&] {
        Scan(documents.Path(), false);
        WaitFor([] { return Table().model()->rowCount() == 64; });
        Table().setFocus();
        const auto press = [](Qt::Key key) {
            QTest::keyClick(&Table(), key);
            return Main().Listbox1.ListIndex();
        };
        EXPECT_EQ(Main().Listbox1.ListIndex(), -1);
        QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, Centre(2, 3));
        EXPECT_EQ(Main().Listbox1.ListIndex(), 2);
        EXPECT_EQ(press(Qt::Key_Down), 3);
        EXPECT_EQ(press(Qt::Key_Left), 3);
        EXPECT_GT(press(Qt::Key_PageDown), 10);
        EXPECT_EQ(press(Qt::Key_End), 63);
        EXPECT_EQ(press(Qt::Key_Home), 0);
        EXPECT_EQ(press(Qt::Key_C), 62);

        press(Qt::Key_Space);
        EXPECT_TRUE(Main().Listbox1.CellCheck(62, 0));
        press(Qt::Key_Space);
        EXPECT_FALSE(Main().Listbox1.CellCheck(62, 0));
        press(Qt::Key_Home);
        QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        EXPECT_EQ(Tags()[1], "2*");
        EXPECT_EQ(Main().Listbox1.ListIndex(), 1);

        const auto* header = Table().horizontalHeader();
        const auto click_heading = [&](int column) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              QPoint(header->sectionViewportPosition(column) + 20, 8));
            QTest::qWait(0);
        };
        click_heading(2);
        WaitFor([&] { return header->isSortIndicatorShown(); });
        EXPECT_EQ(Shown(0, 1) + Shown(1, 1), "b9.tifb10.tif");
        EXPECT_EQ(Main().Listbox1.ListIndex(), 4);  // the row that was highlighted, where it is now
        WaitFor([] { return Table().currentIndex().row() == 4; });
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
        const auto runs = [] { return Frame().windowTitle().startsWith("Processing Item: "); };
        WaitFor([&] { return runs() && Table().model()->rowCount() > 100; });
        QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        EXPECT_TRUE(Main().Listbox1.CellCheck(1, 0));
        Table().scrollToBottom();
        Frame().resize(900, 800);
        WaitFor([] { return Table().width() > 860; });
        QMenu& help = *Frame().menuBar()->actions()[1]->menu();
        help.popup(Frame().mapToGlobal(QPoint(50, 20)));
        WaitFor([&] { return help.isVisible(); });
        const int rows = Main().Listbox1.ListCount();
        WaitFor([&] { return Main().Listbox1.ListCount() > rows; });
        EXPECT_TRUE(runs()) << "the scan ended before the window was tried";
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
        EXPECT_EQ(menus, "&File:Export+;&Quit+;Help:Support;Visit Website+;-;About;");
        QTest::keyClick(&Frame(), Qt::Key_H, Qt::NoModifier);
        EXPECT_FALSE(desktop.quit_status);
        Frame().menuBar()->actions()[1]->menu()->actions()[1]->trigger();
        EXPECT_EQ(desktop.urls.size(), 1u);
    });
}

// Each way to end the program, and keys that are near it.
TEST_F(WindowTest, EndsByKeysAndCloseBox) {
    struct Case {
        const char* keys;
        bool ends;
    };
    for (const Case& c : {Case{"w", false},
                          {"shift+w", false},
                          {"ctrl+w", true},
                          {"ctrl+shift+w", true},
                          {"super+w", true},
                          {"ctrl+q", true}}) {
        desktop.quit_status.reset();
        Start([&] {
            Frame();
            QProcess::execute("xdotool", {"key", c.keys});
            if (c.ends)
                WaitFor([&] { return desktop.quit_status.has_value(); });
            else
                QTest::qWait(50);
            EXPECT_EQ(desktop.quit_status.has_value(), c.ends) << c.keys;
        });
    }
    desktop.quit_status.reset();
    Start([&] {
        Frame().close();
        EXPECT_EQ(desktop.quit_status, 0);
    });
}

}  // namespace
}  // namespace varnith::test

#include "window/WindowTest.h"

#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"
#include "support/SupportWindow.h"

namespace varnith::test {

QMainWindow& WindowTest::Frame(const std::string& title) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* frame = qobject_cast<QMainWindow*>(widget);
        if (!frame || !frame->isVisible()) continue;
        const bool is_main = frame->findChild<QTableView*>();
        if (title.empty() ? !is_main : frame->windowTitle().toStdString() != title) continue;
        // A window manager may leave a new window behind; its user would then click on it.
        if (!QTest::qWaitForWindowActive(frame, 2'000))
            Do({"windowactivate", QString::number(frame->winId())});
        EXPECT_TRUE(QTest::qWaitForWindowActive(frame));
        return *frame;
    }
    throw std::runtime_error("no window " + title);
}

QMainWindow& WindowTest::Opened(const Ref<MenuItem>& entry) {
    Application::Current().Choose(entry);
    QMainWindow& frame = Frame(Application::Current().FrontWindow()->Title());
    const QSize around = frame.screen()->size() - frame.size();
    EXPECT_EQ(frame.pos(), QPoint(around.width() / 2, around.height() / 2));
    EXPECT_EQ(frame.minimumSize(), frame.maximumSize());
    return frame;
}

Lines WindowTest::Layout(const QMainWindow& frame) {
    Lines lines;
    for (const auto* widget : frame.centralWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const QRect place = widget->geometry();
        const char* text = qobject_cast<const QComboBox*>(widget) ? "currentText" : "text";
        QString line;
        QTextStream(&line) << widget->property(text).toString() << " " << place.x() << "," << place.y() << " "
                           << place.width() << "," << place.height();
        lines.push_back(line.toStdString());
    }
    return lines;
}

std::string WindowTest::Shown(int row) {
    std::string shown;
    for (int column = 0; column < 5; ++column)
        shown += Table().model()->index(row, column).data().toString().toStdString() + "|";
    return shown;
}

void WindowTest::Click(const QWidget& widget) {
    const QPoint place = widget.mapToGlobal(widget.rect().center());
    Do({"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "1"});
}

// What the window system says of a property of a window.
std::string PropertyOf(const QMainWindow& frame, const QString& name) {
    QProcess xprop;
    xprop.start("xprop", {"-id", QString::number(frame.winId()), name});
    EXPECT_TRUE(xprop.waitForFinished());
    return xprop.readAllStandardOutput().toStdString();
}

TEST_F(WindowTest, FollowsItsLayoutAtEverySize) {
    Start([&] {
        QMainWindow& frame = Frame();
        const QTableView& table = Table();
        const auto resize = [&](const QSize& size, const QSize& contents) {
            frame.resize(size);
            WaitFor([&] { return frame.centralWidget()->size() == contents; });
            EXPECT_EQ(QSize(Main().Width(), Main().Height()), contents);
        };
        const auto column_widths = [&] {
            std::vector<int> widths;
            for (int column = 0; column < 5; ++column) widths.push_back(table.columnWidth(column));
            return widths;
        };
        EXPECT_EQ(frame.pos(), QPoint(Main().Left(), Main().Top()));
        EXPECT_EQ(frame.centralWidget()->size(), QSize(774, 670));
        const Lines design = Layout(frame);
        const int rest = table.viewport()->width() - 30 - 65 - 55;
        EXPECT_EQ(column_widths(), std::vector<int>({30, rest / 2, 65, rest - rest / 2, 55}));

        Table().setColumnWidth(4, 75);
        resize(frame.size() + QSize(200, 60), {974, 730});
        EXPECT_EQ(Layout(frame),
                  Lines({" 7,38 954,661", "Address: 9,8 56,20", " 72,7 638,22", "Locate 886,6 80,20",
                         " 824,703 132,20", "Include Subfolders 10,705 147,20", " 760,7 114,20",
                         "Filter: 715,7 40,20"}));
        EXPECT_EQ(column_widths(), std::vector<int>({30, rest / 2 + 90, 65, rest - rest / 2 + 90, 75}));
        resize({300, 300}, {774, 670});
        EXPECT_EQ(Layout(frame), design);
        const std::string least = "minimum size: 774 by " + std::to_string(frame.height());
        EXPECT_NE(PropertyOf(frame, "WM_NORMAL_HINTS").find(least), std::string::npos);
    });
}

TEST_F(WindowTest, TellsTheWindowManagerWhatGoesOn) {
    documents.File("a[*].tif", TiffBytes(3));
    documents.File("b\n\xFF.tif", TiffBytes(2));
    Start([&] {
        const QMainWindow& frame = Frame();
        const auto wait_for_title = [&](const std::string& title) {
            WaitFor([&] {
                return PropertyOf(frame, "_NET_WM_NAME").find('"' + title + '"') != std::string::npos;
            });
        };
        wait_for_title("Varnith - Testix");
        QTest::mouseClick(frame.findChild<QCheckBox*>(), Qt::LeftButton, {}, QPoint(8, 10));
        desktop.choose = [&] { return documents.Path(); };
        Click(*frame.findChild<QPushButton*>());
        wait_for_title("Varnith - Testix - Finished");
        WaitFor([] { return Table().model()->rowCount() == 2; });
        EXPECT_EQ(Shown(0), "|a[*].tif|3|" + documents.Path() + "|tif|");
        EXPECT_EQ(Shown(1), "|b\u240A\uFFFD.tif|2|" + documents.Path() + "|tif|");
        EXPECT_EQ(frame.findChild<QLineEdit*>()->text().toStdString(), documents.Path());
        QString labels;
        for (const auto* label : frame.findChildren<QLabel*>())
            labels += label->text() + (label->alignment() & Qt::AlignRight ? " right|" : " left|");
        EXPECT_EQ(labels, "Address: left|2 file(s) right|Filter: right|");
        const auto& popup = *frame.findChild<QComboBox*>();
        EXPECT_EQ(popup.currentText() + "|" + popup.itemText(0) + "|" + popup.itemText(1), "|All|tif");
        Main().SetTitle("Processing Item: a[*].tif");
        wait_for_title("Processing Item: a[*].tif");
    });
}

TEST_F(WindowTest, ScanGoesOnWhateverTheUserDoes) {
    for (int i = 0; i < 2'000; ++i)
        documents.File("d" + std::to_string(i % 20) + "/" + std::to_string(i) + ".tif");
    Start([&] {
        QMainWindow& frame = Frame();
        QTableView& table = Table();
        const auto& locate = *frame.findChild<QPushButton*>();
        const auto wait_for_rows = [] {
            WaitFor(
                [rows = Main().Listbox1.ListCount()] { return Main().Listbox1.ListCount() > rows + 100; });
        };
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        wait_for_rows();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        table.scrollToBottom();
        frame.resize(900, 800);
        WaitFor([&] { return table.width() > 860; });
        QMenu& help = *frame.menuBar()->actions()[1]->menu();
        help.popup(frame.mapToGlobal(QPoint(50, 20)));
        WaitFor([&] { return help.isVisible(); });
        wait_for_rows();
        help.hide();

        // The support window keeps the main window from answering.
        const auto& address = *Opened(Main().HelpSupport()).findChild<QLineEdit*>();
        Click(locate);
        Press("x");
        WaitFor([&] { return address.text() == "x"; });
        EXPECT_EQ(desktop.dialogs, 1);
        wait_for_rows();
        EXPECT_TRUE(Main().Title().starts_with("Processing Item: ")) << "the scan was over too soon";
        SupportWindow::Instance()->Close();

        Scheduler::Current().SetSlice(std::chrono::milliseconds(8));
        WaitFor([&] { return frame.windowTitle().endsWith(" - Finished"); });
        EXPECT_EQ(Main().StaticText2.Text(), "2000 file(s)");
        EXPECT_TRUE(Main().Listbox1.CellCheck(1, 0));
        Click(locate);
        WaitFor([&] { return desktop.dialogs == 2; });
    });
}

}  // namespace varnith::test

#include "export/Exporter.h"
#include "platform/ui/Application.h"
#include "support/SupportWindow.h"
#include "window/WindowTest.h"

namespace varnith::test {

// The menus and the windows that they open.
using MenusTest = WindowTest;

// What a menu bar's menus show when they are opened, with grey entries in brackets.
std::string Entries(const QMenuBar& bar) {
    QString entries;
    for (const QAction* menu : bar.actions()) {
        entries += menu->text() + ":";
        emit menu->menu()->aboutToShow();
        for (const QAction* entry : menu->menu()->actions()) {
            const QString text = entry->isSeparator() ? "-" : entry->text() + entry->shortcut().toString();
            entries += (entry->isEnabled() ? text : "(" + text + ")") + ";";
        }
    }
    return entries.toStdString();
}

TEST_F(MenusTest, OpenWindowsOnceThatCloseByTheirKey) {
    for (const char* keys : {"ctrl+w", "ctrl+shift+w", "super+w", "super+shift+w"}) {
        desktop.quit_status.reset();
        Start([&] {
            const QMenuBar& menus = *Frame().menuBar();
            for (const Ref<MenuItem>& entry :
                 {Main().FileExport(), Main().HelpSupport(), Ref<MenuItem>(Main().HelpAbout())}) {
                EXPECT_EQ(Entries(menus), "&File:Export;&QuitCtrl+Q;Help:Support;Visit Website;-;About;");
                const QMainWindow& frame = Opened(entry);
                EXPECT_EQ(Entries(menus),
                          "&File:(Export);&QuitCtrl+Q;Help:(Support);(Visit Website);-;(About);");
                Main().Show();
                EXPECT_EQ(&Opened(entry), &frame) << entry->Text;
                // Had one of these closed it, the next would end the program.
                Press("w");
                Press("shift+w");
                Press(keys);
                WaitFor([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
                EXPECT_EQ(&Frame(), menus.window());
                EXPECT_EQ(desktop.quit_status, std::nullopt) << entry->Text;
            }
            Press(keys);
            WaitFor([&] { return desktop.quit_status == 0; });
        });
    }
}

TEST_F(MenusTest, ExportIsWhiteAndAnswersReturn) {
    Start([&] {
        Frame();
        QMainWindow& frame = Opened(Main().FileExport());
        EXPECT_EQ(frame.size(), QSize(253, 179));
        EXPECT_EQ(Layout(frame), Lines({"Type: 21,14 72,20", "Select Type 22,40 211,20",
                                        "Separator: 22,72 75,20", " 22,97 127,22", "Save 88,131 80,20"}));
        EXPECT_EQ(frame.grab().toImage().pixelColor(5, 5), QColor(Qt::white));
        Exporter::Instance()->PopupMenu1.Pick(1);
        Press("w");
        Press("Return");
        WaitFor([&] { return desktop.dialogs == 1; });
        EXPECT_EQ(frame.findChild<QLineEdit*>()->text(), "w");
    });
}

TEST_F(MenusTest, AboutTellsTheProgram) {
    Start([&] {
        QMainWindow& main = Frame();
        QMainWindow& frame = Opened(Main().HelpAbout());
        Application::Current().Choose(Main().HelpVisitWebsite());
        EXPECT_EQ(desktop.urls, Lines()) << "grey behind another window";
        main.activateWindow();
        WaitFor([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
        Application::Current().Choose(Main().HelpVisitWebsite());
        EXPECT_EQ(frame.size(), QSize(305, 288));
        EXPECT_EQ(frame.windowTitle(), "About: Varnith - Testix");
        EXPECT_EQ(Layout(frame),
                  Lines({"Varnith 9,116 287,20", "Version: 1.2.3 9,167 287,20",
                         "Build Date: 2008-06-24 9,194 287,20", "© The Varnith developers 9,226 287,20",
                         "varnith.example 9,258 287,20", " 15,10 94,93", " 139,47 25,27", " 189,9 100,95"}));
        for (const auto* label : frame.findChildren<QLabel*>()) {
            EXPECT_EQ(label->alignment(), Qt::AlignCenter);
            EXPECT_EQ(label->font().bold(), label->y() == 116);
            EXPECT_EQ(label->font().underline(), label->y() == 258);
            EXPECT_EQ(label->palette().windowText().color().rgb() == qRgb(0, 0, 255), label->y() == 258);
        }
        for (const int line : {226, 258}) QTest::mouseClick(frame.childAt(150, line + 10), Qt::LeftButton);
        EXPECT_EQ(desktop.urls, Lines({"http://www.varnith.example", "http://www.varnith.example",
                                       "http://varnith.example"}));
        const QImage seen = frame.grab().toImage();
        for (const QRect& place : {QRect(15, 10, 94, 93), QRect(139, 47, 25, 27), QRect(189, 9, 100, 95)}) {
            QSet<QRgb> colours;
            for (int x = place.left(); x <= place.right(); ++x) colours += seen.pixel(x, place.center().y());
            EXPECT_GT(colours.size(), 3) << "nothing is drawn at " << place.left();
            EXPECT_EQ(seen.pixel(place.topLeft()), seen.pixel(1, 1)) << "no mask at " << place.left();
        }
    });
}

TEST_F(MenusTest, SupportIsLaidOutAndFilledIn) {
    Start([&] {
        Frame();
        QMainWindow& frame = Opened(Main().HelpSupport());
        SupportWindow& w = *SupportWindow::Instance();
        EXPECT_EQ(frame.size(), QSize(371, 358));
        std::string labels;
        for (const auto* label : frame.findChildren<QLabel*>()) {
            labels += std::to_string(label->y()) + label->text().toStdString() + " ";
            EXPECT_LE(label->sizeHint().width(), label->width()) << label->text().toStdString();
        }
        EXPECT_EQ(labels, "16Email: 48Name: 80Type: 114Details: ");
        auto& details = *frame.findChild<QPlainTextEdit*>();
        w.EditField1.SetText("a");
        w.EditField2.SetText("b");
        w.EditField3.SetText("c");
        WaitFor([&] { return w.PushButton1.Enabled(); });
        for (const QRect& place :
             {QRect(78, 14, 273, 22), QRect(78, 46, 273, 22), QRect(78, 80, 272, 20),
              QRect(12, 138, 338, 164), QRect(197, 317, 80, 20), QRect(105, 317, 80, 20)}) {
            WaitFor([&] { return QApplication::focusWidget()->geometry() == place; });
            Press("Tab");
        }

        QGuiApplication::clipboard()->setText("1\r\n2\n3\r4");
        for (const char* keys : {"ctrl+v", "super+v", "ctrl+shift+v", "super+shift+v"}) {
            w.EditField3.SetText("über\U0001F600 all");
            WaitFor([&] { return details.toPlainText() == "über\U0001F600 all"; });
            details.setFocus();
            details.moveCursor(QTextCursor::Start);
            ASSERT_TRUE(details.find("\U0001F600 "));
            Press(keys);
            Press("v");
            Press("Return");
            WaitFor([&] { return w.EditField3.Text() == "über1\r2\r3\r4v\rall"; });
        }

        // The same over itself: what is typed next comes behind it.
        QGuiApplication::clipboard()->setText(details.toPlainText());
        details.selectAll();
        Press("ctrl+v");
        Press("x");
        WaitFor([&] { return w.EditField3.Text() == "über1\r2\r3\r4v\rallx"; });

        // What is pasted stays as it is, when the window is drawn too.
        auto& address = *frame.findChild<QLineEdit*>();
        QGuiApplication::clipboard()->setText("a\tb\nc");
        address.setFocus();
        address.selectAll();
        address.paste();
        w.SetTitle("drawn");
        WaitFor([&] { return frame.windowTitle() == "drawn"; });
        Press("x");
        WaitFor([&] { return w.EditField1.Text() == "a\tb\ncx"; });

        // A text made to keep the search of an address busy.
        w.EditField1.SetText(std::string(1 << 20, 'a'));
        QElapsedTimer clock;
        clock.start();
        w.PushButton1.Press();
        EXPECT_LT(clock.elapsed(), 5'000);
        EXPECT_EQ(desktop.messages.size(), 1u);
    });
}

}  // namespace varnith::test

#include "platform/ui/Application.h"
#include "support/SupportWindow.h"
#include "update/AutoUpdateWindow.h"
#include "window/WindowTest.h"

namespace varnith::test {

// The menus, the windows that they open, and the windows that come by themselves.
using OtherWindowsTest = WindowTest;

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

bool MainIsInFront() {
    return Application::Current().FrontWindow() == Ref<Window>(MainWindow::Instance());
}

TEST_F(OtherWindowsTest, OpenOnceAsTheyAreLaidOutAndCloseByTheirKey) {
    for (const char* keys : {"ctrl+w", "ctrl+shift+w", "super+w", "super+shift+w"}) {
        desktop.quit_status.reset();
        Work([&] {
            const std::tuple<Ref<MenuItem>, QSize, Lines> windows[] = {
                {Main().FileExport(),
                 {253, 179},
                 {"Type: 21,14 72,20", "Select Type 22,40 211,20", "Separator: 22,72 75,20", " 22,97 127,22",
                  "Save 88,131 80,20"}},
                {Main().HelpSupport(),
                 {371, 358},
                 {"Email: 13,16 43,20", " 78,14 273,22", "Name: 13,48 43,20", " 78,46 273,22",
                  "Type: 12,80 46,20", "N/A 78,80 272,20", "Details: 12,114 53,20", " 12,138 338,164",
                  "Close 105,317 80,20", "Send 197,317 80,20"}},
                {Main().HelpAbout(),
                 {305, 288},
                 {"Varnith 9,116 287,20", "Version: 1.2.3 9,167 287,20",
                  "Build Date: 2008-06-24 9,194 287,20", "© The Varnith developers 9,226 287,20",
                  "varnith.example 9,258 287,20", " 15,10 94,93", " 139,47 25,27", " 189,9 100,95"}}};
            for (const auto& [entry, size, layout] : windows) {
                SCOPED_TRACE(entry->Text);
                EXPECT_EQ(Entries(*frame->menuBar()),
                          "&File:Export;&QuitCtrl+Q;Help:Support;Visit Website;-;About;");
                QMainWindow& window = Opened(entry);
                EXPECT_EQ(Entries(*frame->menuBar()),
                          "&File:(Export);&QuitCtrl+Q;Help:(Support);(Visit Website);-;(About);");
                EXPECT_EQ(Layout(window), layout);
                EXPECT_TRUE(window.minimumSize() == size && window.maximumSize() == size);
                const QSize around = window.screen()->size() - size;
                EXPECT_EQ(window.pos(), QPoint(around.width() / 2, around.height() / 2));
                EXPECT_EQ(window.grab().toImage().pixelColor(5, 5) == QColor(Qt::white),
                          entry == Main().FileExport());
                Main().Show();
                EXPECT_EQ(&Opened(entry), &window);
                // Had one of these closed it, the next would end the program.
                Press("w");
                Press("shift+w");
                const auto* first_field = window.findChild<QLineEdit*>();
                WaitFor([&] { return !first_field || first_field->text() == "wW"; });
                Press(keys);
                WaitFor(MainIsInFront);
                EXPECT_EQ(desktop.quit_status, std::nullopt);
            }
            Press(keys);
            WaitFor([&] { return desktop.quit_status == 0; });
        });
    }
}

TEST_F(OtherWindowsTest, AboutShowsThePicturesAndLeadsToTheSite) {
    Work([&] {
        QMainWindow& about = Opened(Main().HelpAbout());
        EXPECT_EQ(about.windowTitle(), "About: Varnith - Testix");
        for (const auto* label : about.findChildren<QLabel*>()) {
            EXPECT_EQ(label->alignment(), Qt::AlignCenter);
            EXPECT_EQ(label->font().bold(), label->y() == 116);
            EXPECT_EQ(label->font().underline(), label->y() == 258);
            EXPECT_EQ(label->palette().windowText().color().rgb() == qRgb(0, 0, 255), label->y() == 258);
        }
        const QImage seen = about.grab().toImage();
        for (const QRect& place : {QRect(15, 10, 94, 93), QRect(139, 47, 25, 27), QRect(189, 9, 100, 95)}) {
            QSet<QRgb> colours;
            for (int x = place.left(); x <= place.right(); ++x) colours += seen.pixel(x, place.center().y());
            EXPECT_GT(colours.size(), 3) << "nothing is drawn at " << place.left();
        }
        for (const int line : {226, 258}) QTest::mouseClick(about.childAt(150, line + 10), Qt::LeftButton);
        EXPECT_EQ(desktop.urls, Lines({"http://www.varnith.example", "http://varnith.example"}));
        frame->activateWindow();
        WaitFor(MainIsInFront);
        Application::Current().Choose(Main().HelpVisitWebsite());
        EXPECT_EQ(desktop.urls.back(), "http://www.varnith.example");
    });
}

TEST_F(OtherWindowsTest, SupportTakesWhatIsPasted) {
    Work([&] {
        QMainWindow& support = Opened(Main().HelpSupport());
        SupportWindow& w = *SupportWindow::Instance();
        auto& details = *support.findChild<QPlainTextEdit*>();
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
        Press("Tab");
        WaitFor([] { return qobject_cast<QPushButton*>(QApplication::focusWidget()); });

        // It stays as it is in a line too, when the window is drawn.
        auto& address = *support.findChild<QLineEdit*>();
        QGuiApplication::clipboard()->setText("a\tb\nc");
        address.setFocus();
        address.paste();
        w.SetTitle("drawn");
        WaitFor([&] { return support.windowTitle() == "drawn"; });
        Press("x");
        WaitFor([&] { return w.EditField1.Text() == "a\tb\ncx"; });
    });
}

TEST_F(OtherWindowsTest, AnUpdatesOfferAnswersReturnAndCannotBeClosed) {
    Work([&] {
        const auto window = AutoUpdateWindow::Instance();
        // Nobody can be at this address.
        window->Init("http://127.0.0.1:70000/New.tar.gz");
        QMainWindow& offer = Front();
        const auto& details = *offer.findChildren<QLabel*>()[1];
        WaitFor([&] { return details.text().startsWith("There"); });
        EXPECT_EQ(Layout(offer), Lines({"Update Available! 8,8 392,20",
                                        "There is a newer version of available for download.  Press the "
                                        "Update button to begin. 8,34 392,61",
                                        "0% 9,107 391,20", "Update 171,138 80,20"}));
        EXPECT_TRUE(details.wordWrap() && details.heightForWidth(392) <= 61) << "the text is cut off";
        EXPECT_NEAR(offer.geometry().center().x(), offer.screen()->geometry().center().x(), 1);
        EXPECT_EQ(QApplication::activeModalWidget(), &offer);

        offer.close();
        for (const char* keys : {"ctrl+w", "Escape", "alt+F4", "Return"}) Press(keys);
        WaitFor([&] { return window->Downloader->ErrorCode() != 0; });
        EXPECT_TRUE(offer.isVisible());
        EXPECT_FALSE(desktop.quit_status);
        Press("ctrl+q");
        WaitFor([&] { return desktop.quit_status == 0; });
    });
}

TEST_F(OtherWindowsTest, ThoseOfAnotherProgramAreBroughtToTheFront) {
    Work([&] {
        QProcess other;
        other.start("xmessage", {"other"});
        WaitFor([&] { return !frame->isActiveWindow(); });
        // It doesn't say itself whose the window is.
        QProcess::execute("xprop", {"-name", "xmessage", "-f", "_NET_WM_PID", "32c", "-set", "_NET_WM_PID",
                                    QString::number(other.processId())});
        frame->activateWindow();
        WaitFor([&] { return frame->isActiveWindow(); });
        Desktop::Current().BringToFront(other.processId());
        WaitFor([&] { return !frame->isActiveWindow(); });
        other.kill();
        other.waitForFinished();
    });
}

}  // namespace varnith::test

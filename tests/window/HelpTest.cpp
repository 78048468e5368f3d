#include "menus/About.h"
#include "platform/ui/Application.h"
#include "support/SupportWindow.h"
#include "window/WindowTest.h"

namespace varnith::test {
namespace {

// The windows that open beside the main window from its menus.
class HelpTest : public WindowTest {
  protected:
    // Chooses an entry. Returns the frame of the window that this opens, once it is in front.
    static QMainWindow& Opened(const Ref<MenuItem>& entry) {
        Frame();
        Application::Current().Choose(entry);
        const auto title = QString::fromStdString(Application::Current().FrontWindow()->Title());
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* frame = qobject_cast<QMainWindow*>(widget);
                frame && frame->isVisible() && frame->windowTitle() == title) {
                EXPECT_TRUE(QTest::qWaitForWindowActive(frame));
                EXPECT_NEAR(frame->pos().x(), (frame->screen()->size().width() - frame->width()) / 2, 1);
                EXPECT_EQ(frame->minimumSize(), frame->maximumSize());
                return *frame;
            }
        throw std::runtime_error("no window " + title.toStdString());
    }
    static bool MainIsInFront() {
        return Application::Current().FrontWindow() == Ref<Window>(&Main()) && Frame().isActiveWindow();
    }

    static void Do(const QStringList& actions) { QProcess::execute("xdotool", actions); }
    static void Press(const char* keys) { Do({"key", "--clearmodifiers", keys}); }
    static void Click(const QWidget& widget) {
        const QPoint place = widget.mapToGlobal(widget.rect().center());
        Do({"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "1"});
    }
};

TEST_F(HelpTest, WindowsOpenOnceAndCloseByTheirKey) {
    Start([&] {
        for (const Ref<MenuItem>& entry :
             {Main().FileExport(), Main().HelpSupport(), Ref<MenuItem>(Main().HelpAbout())})
            for (const char* keys : {"ctrl+w", "ctrl+shift+w", "super+w", "super+shift+w"}) {
                const QMainWindow& frame = Opened(entry);
                Main().Show();
                EXPECT_EQ(&Opened(entry), &frame) << entry->Text;
                // Had one of these closed it, the next would end the program.
                Press("w");
                Press("shift+w");
                Press(keys);
                WaitFor([] { return MainIsInFront(); });
                EXPECT_EQ(desktop.quit_status, std::nullopt) << entry->Text;
            }
    });
}

TEST_F(HelpTest, AboutTellsTheProgram) {
    Start([&] {
        QMainWindow& frame = Opened(Main().HelpAbout());
        EXPECT_EQ(frame.size(), QSize(305, 288));
        EXPECT_EQ(frame.windowTitle(), "About: Varnith - Testix");
        std::string labels;
        for (const auto* label : frame.findChildren<QLabel*>()) {
            labels += std::to_string(label->y()) + " " + label->text().toStdString() + "|";
            EXPECT_EQ(label->size(), QSize(287, 20));
            EXPECT_EQ(label->alignment(), Qt::AlignCenter);
            EXPECT_EQ(label->font().bold(), label->y() == 116);
            EXPECT_EQ(label->font().underline(), label->y() == 258);
            EXPECT_EQ(label->palette().windowText().color().rgb() == qRgb(0, 0, 255), label->y() == 258);
        }
        EXPECT_EQ(labels,
                  "116 Varnith|167 Version: 1.2.3|194 Build Date: 2008-06-24|226 © The Varnith developers|"
                  "258 varnith.example|");
        for (const int line : {226, 258}) QTest::mouseClick(frame.childAt(150, line + 10), Qt::LeftButton);
        EXPECT_EQ(desktop.urls, (Lines{"http://www.varnith.example", "http://varnith.example"}));
        const QImage seen = frame.grab().toImage();
        for (const QRect& place : {QRect(15, 10, 94, 93), QRect(139, 47, 25, 27), QRect(189, 9, 100, 95)}) {
            QSet<QRgb> colours;
            for (int x = place.left(); x <= place.right(); ++x) colours += seen.pixel(x, place.center().y());
            EXPECT_GT(colours.size(), 3) << "nothing is drawn at " << place.left();
            EXPECT_EQ(seen.pixel(place.topLeft()), seen.pixel(1, 1)) << "no mask at " << place.left();
        }
    });
}

TEST_F(HelpTest, SupportIsLaidOutAndFilledIn) {
    Start([&] {
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
        QElapsedTimer clock;
        clock.start();
        WaitFor([&] { return w.PushButton1.Enabled(); });
        EXPECT_LT(clock.elapsed(), 1'500);
        WaitFor([&] { return details.toPlainText() == "c"; });
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
            QTextCursor cursor = details.textCursor();
            cursor.setPosition(4);
            cursor.setPosition(7, QTextCursor::KeepAnchor);
            details.setTextCursor(cursor);
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
        QGuiApplication::clipboard()->setText(QString(1 << 20, 'a'));
        address.selectAll();
        address.paste();
        clock.start();
        w.PushButton1.Press();
        EXPECT_LT(clock.elapsed(), 5'000);
        w.EditField1.SetText("me@host.example");
        w.PushButton1.Press();
        EXPECT_TRUE(
            desktop.messages ==
            (Lines{std::string(1 << 20, 'a') + " not valid email",
                   "No internet connection. Please establish an internet connection and resubmit the form. "
                   "Thank you."}));
        EXPECT_TRUE(frame.isVisible());
    });
}

TEST_F(HelpTest, SupportKeepsTheMainWindowFromAnsweringAndNoScan) {
    for (int i = 0; i < 20'000; ++i)
        documents.File("d" + std::to_string(i % 20) + "/" + std::to_string(i) + ".tif");
    Start([&] {
        const auto& locate = Find<QPushButton>("Locate");
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        const auto& address = *Opened(Main().HelpSupport()).findChild<QLineEdit*>();
        const int rows = Main().Listbox1.ListCount();
        Click(locate);
        Press("x");
        WaitFor([&] { return address.text() == "x"; });
        EXPECT_EQ(desktop.dialogs, 1);
        WaitFor([&] { return Main().Listbox1.ListCount() > rows + 100; });
        EXPECT_FALSE(Main().Title().ends_with(" - Finished")) << "the scan ended before the window was tried";
        SupportWindow::Instance()->Close();
        Click(locate);
        WaitFor([&] { return desktop.dialogs == 2; });
    });
}

}  // namespace
}  // namespace varnith::test

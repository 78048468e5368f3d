#include <future>

#include "helpers/TestFileSystem.h"
#include "platform/ui/Application.h"
#include "support/SupportWindow.h"
#include "update/AutoUpdateWindow.h"
#include "window/WindowTest.h"

namespace varnith::test {

// The menus, the windows that they open, and the windows that open by themselves.
using OtherWindowsTest = WindowTest;

// What the menus of a menu bar show when opened.
std::string Entries(const QMenuBar& bar) {
    QString entries;
    for (const QAction* menu : bar.actions()) {
        emit menu->menu()->aboutToShow();
        entries += menu->text() + ":";
        for (const QAction* entry : menu->menu()->actions())
            entries +=
                (entry->isEnabled() ? "" : "grey ") + entry->text() + entry->shortcut().toString() + ";";
    }
    return entries.toStdString();
}

// The buttons that a window requests for its frame: 8 to minimise, 16 to maximise, 32 to close it.
int Buttons(const QWidget& window) {
    QProcess xprop;
    xprop.start("xprop", {"-notype", "-id", QString::number(window.winId()), "_MOTIF_WM_HINTS"});
    xprop.waitForFinished();
    const QStringList numbers = QString(xprop.readAll()).section('=', 1).remove(' ').split(',');
    const bool asks = numbers[0].toInt(nullptr, 16) & 1;
    return asks ? numbers.value(1).toInt(nullptr, 16) & 56 : -1;
}

// Each control has room for its text, inside and around it.
void ExpectRoomForTexts(const QMainWindow& window) {
    for (const auto* control : window.centralWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const auto* label = qobject_cast<const QLabel*>(control);
        const auto* button = qobject_cast<const QPushButton*>(control);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (!label && control->focusPolicy() == Qt::NoFocus) continue;
        EXPECT_LE(control->fontMetrics().height(), control->height()) << text.toStdString();
        EXPECT_LE(control->fontMetrics().horizontalAdvance(text), control->width()) << text.toStdString();
    }
}

TEST_F(OtherWindowsTest, OpenOnceFromTheMenusAndCloseByTheirKey) {
    // A desktop with large fonts, the largest in headings.
    QApplication::setFont(QFont("DejaVu Sans", 20));
    QApplication::setFont(QFont("DejaVu Sans", 30), "QHeaderView");
    for (const char* keys : {"ctrl+w", "ctrl+shift+w", "super+w", "super+shift+w", "Escape"}) {
        desktop.quit_status.reset();
        Work([&] {
            EXPECT_EQ(Buttons(*frame), 8 + 16 + 32);
            EXPECT_EQ(Table().horizontalHeader()->fontMetrics().height(), Table().fontMetrics().height());
            EXPECT_LT(Table().rowHeight(0), 24);
            Main().StaticText2.SetText("1234567890 file(s)");
            ServeUntil([&] { return frame->findChildren<QLabel*>()[1]->text() == "1234567890 file(s)"; });
            ExpectRoomForTexts(*frame);
            frame->findChild<QComboBox*>()->setFocus();
            for (const Ref<MenuItem>& entry :
                 {Main().FileExport(), Main().HelpSupport(), Ref<MenuItem>(Main().HelpAbout())}) {
                SCOPED_TRACE(entry->Text);
                EXPECT_EQ(Entries(*frame->menuBar()),
                          "&File:Export;&QuitCtrl+Q;Help:Support;Visit Website;;About;");
                QMainWindow& window = Opened(entry);
                EXPECT_EQ(Entries(*frame->menuBar()),
                          "&File:grey Export;&QuitCtrl+Q;Help:grey Support;grey Visit Website;;grey About;");
                EXPECT_EQ(window.minimumSize(), window.maximumSize());
                EXPECT_EQ(Buttons(window), 32);
                ExpectRoomForTexts(window);
                const QSize around = window.screen()->size() - window.size();
                ServeUntil([&] { return window.pos() == QPoint(around.width() / 2, around.height() / 2); });
                EXPECT_EQ(window.grab().toImage().pixelColor(5, 5) == QColor(Qt::white),
                          entry == Main().FileExport());
                Main().Show();
                EXPECT_EQ(&Opened(entry), &window);
                EXPECT_EQ(qobject_cast<QLineEdit*>(window.focusWidget()), window.findChild<QLineEdit*>());
                // If one of these closed the window, the next would end the program.
                Press("w");
                Press("shift+w");
                Press(keys);
                ServeUntil([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
                EXPECT_EQ(desktop.quit_status, std::nullopt);
                ServeUntil([&] { return QApplication::focusWidget() == frame->findChild<QComboBox*>(); });
            }
            const QWidget* last_focus = frame->focusWidget();
            // The main window stays open at Escape.
            Press(keys);
            if (keys == std::string_view("Escape")) Press("Tab");
            ServeUntil([&] { return desktop.quit_status || frame->focusWidget() != last_focus; });
            EXPECT_EQ(desktop.quit_status.has_value(), keys != std::string_view("Escape"));
        });
    }
}

TEST_F(OtherWindowsTest, AboutTellsTheProgramAndLeadsToItsSite) {
    Work([&] {
        QMainWindow& about = Opened(Main().HelpAbout());
        QString texts = about.windowTitle();
        for (const auto* label : about.findChildren<QLabel*>()) {
            texts += "|" + label->text();
            EXPECT_EQ(label->alignment(), Qt::AlignCenter);
            EXPECT_EQ(label->font().bold(), label->y() == 116);
            EXPECT_EQ(label->font().underline(), label->y() == 258);
            EXPECT_EQ(label->palette().windowText().color().rgb() == qRgb(0, 0, 255), label->y() == 258);
        }
        EXPECT_EQ(texts,
                  "About: Varnith - Testix|Varnith|Version: 1.2.3|Build Date: 2008-06-24|"
                  "© The Varnith developers|varnith.example");
        for (const QRect& place : {QRect(15, 10, 94, 93), QRect(139, 47, 25, 27), QRect(189, 9, 100, 95)})
            EXPECT_GT(about.grab(place).toImage().convertToFormat(QImage::Format_Indexed8).colorCount(), 3)
                << "something is drawn at " << place.left();
        // The keyboard starts at the first of the two links.
        QTest::mouseClick(about.childAt(150, 236), Qt::LeftButton);
        Press("Tab");
        Press("Return");
        ServeUntil([&] { return desktop.urls.size() == 2; });
        EXPECT_EQ(desktop.urls, Lines({"http://www.varnith.example", "http://varnith.example"}));
        Activate(*frame);
        ServeUntil([] { return Application::Current().FrontWindow() == Ref<Window>(&Main()); });
        Application::Current().Choose(Main().HelpVisitWebsite());
        EXPECT_EQ(desktop.urls.size(), 3u);
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
            ServeUntil([&] { return details.toPlainText() == "über\U0001F600 all"; });
            details.setFocus();
            details.moveCursor(QTextCursor::Start);
            ASSERT_TRUE(details.find("\U0001F600 "));
            Press(keys);
            Press("v");
            Press("Return");
            ServeUntil([&] { return w.EditField3.Text() == "über1\r2\r3\r4v\rall"; });
        }
        // Pastes the same text over itself: what is typed next comes after it.
        QGuiApplication::clipboard()->setText(details.toPlainText());
        details.selectAll();
        Press("ctrl+v");
        Press("x");
        ServeUntil([&] { return w.EditField3.Text() == "über1\r2\r3\r4v\rallx"; });
        Press("Tab");
        ServeUntil([] { return qobject_cast<QPushButton*>(QApplication::focusWidget()); });

        // A single-line field also keeps the pasted text as it is when the window is redrawn.
        auto& address = *support.findChild<QLineEdit*>();
        QGuiApplication::clipboard()->setText("a\tb\nc");
        address.setFocus();
        address.paste();
        w.SetTitle("drawn");
        ServeUntil([&] { return support.windowTitle() == "drawn"; });
        Press("x");
        ServeUntil([&] { return w.EditField1.Text() == "a\tb\ncx"; });
    });
}

TEST_F(OtherWindowsTest, AnUpdatesOfferTakesAllButTheMenusAndCannotBeClosed) {
    Work([&] {
        QMainWindow& support = Opened(Main().HelpSupport());
        const auto window = AutoUpdateWindow::Instance();
        // No server can have this port.
        window->Init("http://127.0.0.1:70000/New.tar.gz");
        QMainWindow& offer = Front();
        const auto& details = *offer.findChildren<QLabel*>()[1];
        ServeUntil([&] { return details.text().contains("newer version of available"); });
        EXPECT_TRUE(details.wordWrap() && details.heightForWidth(392) <= 61) << "the text isn't cut off";
        EXPECT_NEAR(offer.geometry().center().x(), offer.screen()->geometry().center().x(), 1);
        EXPECT_EQ(Buttons(offer), 0);

        offer.close();
        for (const char* keys : {"ctrl+w", "Escape", "alt+F4"}) Press(keys);
        // Input to another window points the user to the window that waits for an answer.
        for (QMainWindow* other : {&support, frame}) {
            SCOPED_TRACE(other->windowTitle().toStdString());
            Activate(*other);
            EXPECT_EQ(Entries(*frame->menuBar()),
                      "&File:grey Export;&QuitCtrl+Q;Help:grey Support;grey Visit Website;;grey About;");
            QTest::mouseClick(other->windowHandle(), Qt::LeftButton, {}, {18, other->height() - 15});
            ServeUntil([&] { return offer.isActiveWindow(); });
            for (const char* keys : {"w", "ctrl+w"}) {
                Activate(*other);
                Press(keys);
                ServeUntil([&] { return offer.isActiveWindow(); });
            }
        }
        EXPECT_FALSE(Main().CheckBox4.Value());
        EXPECT_EQ(SupportWindow::Instance()->EditField1.Text(), "");
        EXPECT_EQ(window->Downloader->ErrorCode(), 0);
        Activate(*frame);
        Press("Return");
        ServeUntil([&] { return window->Downloader->ErrorCode() != 0; });
        EXPECT_TRUE(offer.isVisible() && support.isVisible());
        EXPECT_FALSE(desktop.quit_status);
        frame->close();
        EXPECT_EQ(desktop.quit_status, 0);
    });
}

TEST_F(OtherWindowsTest, AMessageShowsAllOfItsTextHoweverLong) {
    Work([&] {
        for (const auto& [size, letter, scrolls] :
             {std::tuple(3, 'x', false), {900, 'x', false}, {1'000'000, 'x', true}, {60, '\n', true}}) {
            const std::string text = std::string(static_cast<std::size_t>(size), letter) + "\n<b> end";
            QTimer::singleShot(0, frame, [&] {
                ServeUntil([] { return QApplication::activeWindow() == QApplication::activeModalWidget(); });
                const QWidget& box = *QApplication::activeModalWidget();
                EXPECT_LE(box.width(), box.screen()->size().width());
                EXPECT_GT(box.width(), 250) << "there is room for the title";
                EXPECT_LT(box.height(), 500);
                const auto* area = box.findChild<QPlainTextEdit*>();
                EXPECT_EQ(area != nullptr, scrolls);
                const auto* label = box.findChild<QLabel*>("qt_msgbox_label");
                EXPECT_EQ(area ? area->toPlainText() : label->text(), QString::fromStdString(text));
                EXPECT_TRUE(area || label->textInteractionFlags() & Qt::TextSelectableByMouse);
                Press("ctrl+q");
                Press("Return");
            });
            screen.QtDesktop::ShowMessage(text);
            EXPECT_EQ(desktop.quit_status, 0);
        }
    });
}

TEST_F(OtherWindowsTest, AFolderDialogOpensAtTheLastFolderUnlessItsShareIsDown) {
    struct Share : FileSystem {
        using FileSystem::Status;
        std::optional<FileStatus> Status(const std::string& path) const override {
            if (path == folder) answer.wait_for(std::chrono::seconds(5));
            return FileSystem::Status(path);
        }
        std::string folder;
        std::shared_future<void> answer;
    } share;
    Work([&] {
        const DiskInForce in_force(share);
        const QString folder = QString::fromStdString(documents.Path());
        std::promise<void> answer;
        share.answer = answer.get_future().share();
        for (const QString& wanted : {QDir::homePath(), folder, QDir::homePath()}) {
            QTimer::singleShot(0, frame, [&] {
                auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                EXPECT_EQ(dialog->directory().path().toStdString(), wanted.toStdString());
                dialog->setDirectory(folder);
                if (wanted == folder) share.folder = documents.Path();
                QTimer::singleShot(0, dialog, &QDialog::accept);
            });
            screen.QtDesktop::ChooseFolder();
        }
        answer.set_value();
    });
}

TEST_F(OtherWindowsTest, ThoseOfAnotherProgramAreBroughtToTheFront) {
    Work([&] {
        QProcess other;
        other.start("xmessage", {"other"});
        ServeUntil([&] { return !frame->isActiveWindow(); });
        // xmessage doesn't set the process id of its window itself.
        QProcess::execute("xprop", {"-name", "xmessage", "-f", "_NET_WM_PID", "32c", "-set", "_NET_WM_PID",
                                    QString::number(other.processId())});
        Activate(*frame);
        Desktop::Current().BringToFront(other.processId());
        ServeUntil([&] { return !frame->isActiveWindow(); });
        other.kill();
        other.waitForFinished();
    });
}

}  // namespace varnith::test

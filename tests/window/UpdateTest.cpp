#include "update/AutoUpdateWindow.h"
#include "window/WindowTest.h"

namespace varnith::test {

TEST_F(WindowTest, MakesAnOfferThatAnswersReturnAndCannotBeClosed) {
    Start([&] {
        Frame();
        const auto window = AutoUpdateWindow::Instance();
        // Nobody can be at this address.
        window->Init("http://127.0.0.1:70000/New.tar.gz");
        QMainWindow& offer = Frame("Software Update");
        const auto labels = offer.findChildren<QLabel*>();
        ASSERT_EQ(labels.size(), 2);
        WaitFor([&] { return labels[1]->text().contains("newer version of available"); });
        EXPECT_EQ(offer.centralWidget()->size(), QSize(408, 172));
        EXPECT_EQ(labels[0]->geometry(), QRect(8, 8, 392, 20));
        EXPECT_EQ(labels[1]->geometry(), QRect(8, 34, 392, 61));
        EXPECT_EQ(offer.findChild<QProgressBar*>()->geometry(), QRect(9, 107, 391, 20));
        EXPECT_EQ(offer.findChild<QPushButton*>()->geometry(), QRect(171, 138, 80, 20));
        EXPECT_TRUE(labels[0]->font().bold() && !labels[1]->font().bold());
        EXPECT_TRUE(labels[1]->wordWrap() && labels[1]->heightForWidth(392) <= 61) << "the text is cut off";
        EXPECT_NEAR(offer.geometry().center().x(), offer.screen()->geometry().center().x(), 1);
        EXPECT_EQ(QApplication::activeModalWidget(), &offer);
        window->ProgressBar1.SetValue(50);
        WaitFor([&] { return offer.findChild<QProgressBar*>()->value() == 50; });

        offer.close();
        for (const char* keys : {"ctrl+w", "Escape", "alt+F4", "Return"}) Press(keys);
        WaitFor([&] { return window->Downloader->ErrorCode() != 0; });
        EXPECT_TRUE(offer.isVisible());
        EXPECT_FALSE(desktop.quit_status);
        Press("ctrl+q");
        WaitFor([&] { return desktop.quit_status == 0; });
    });
}

TEST_F(WindowTest, BringsAnotherProgramsWindowToTheFront) {
    Start([&] {
        QMainWindow& frame = Frame();
        QProcess other;
        other.start("xmessage", {"other"});
        WaitFor([&] { return !frame.isActiveWindow(); });
        // It doesn't say itself whose the window is.
        QProcess::execute("xprop", {"-name", "xmessage", "-f", "_NET_WM_PID", "32c", "-set", "_NET_WM_PID",
                                    QString::number(other.processId())});
        frame.activateWindow();
        WaitFor([&] { return frame.isActiveWindow(); });
        Desktop::Current().BringToFront(other.processId());
        WaitFor([&] { return !frame.isActiveWindow(); });
        other.kill();
        other.waitForFinished();
    });
}

}  // namespace varnith::test

#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTableView>
#include <QTest>
#include <QtWidgets>
#include <functional>
#include <string>

#include "platform/qt/QtDesktop.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// The real desktop, but for the dialogs, which answer as the script says, and for the end of the event loop.
class ScreenDesktop : public QtDesktop {
  public:
    explicit ScreenDesktop(TestDesktop& script) : QtDesktop(ArgumentCount(), Arguments()), script_(script) {}

    int RunEventLoop() override { return script_.RunEventLoop(); }
    void Quit(int status) override { script_.Quit(status); }
    std::optional<std::string> ChooseFolder() override { return script_.ChooseFolder(); }
    std::optional<std::string> ChooseFileToWrite(const std::string& filter,
                                                 const std::string& name) override {
        return script_.ChooseFileToWrite(filter, name);
    }
    void OpenDocument(const std::string& path, bool to_front) override {
        script_.OpenDocument(path, to_front);
    }
    void ShowMessage(const std::string& text) override { script_.ShowMessage(text); }
    void OpenURL(const std::string& url) override { script_.OpenURL(url); }

  private:
    // They outlive every desktop, as Qt wants it.
    static int& ArgumentCount() {
        static int count = 1;
        return count;
    }
    static char** Arguments() {
        static char name[] = "Varnith";
        static char* arguments[] = {name, nullptr};
        return arguments;
    }

    TestDesktop& script_;
};

// The whole program in a real window on the screen that the test was given.
class WindowTest : public ProgramTest {
  protected:
    // Waits for a condition while events are served; fails the test when it takes too long.
    static void WaitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }

    // The window once it is shown and active, and the widgets in it by class.
    static QMainWindow& Frame();
    static QTableView& Table() { return *Frame().findChild<QTableView*>(); }
    template <class Widget>
    static Widget& Find(const QString& text) {
        for (auto* widget : Frame().findChildren<Widget*>())
            if (widget->text() == text) return *widget;
        throw std::runtime_error("no widget " + text.toStdString());
    }

    // What a user reads in a cell, and where it is in the table.
    static std::string Shown(int row, int column);
    static QPoint Centre(int row, int column);

    // What the window system says of a property of the window.
    static std::string Property(const char* name);

    ScreenDesktop screen{desktop};

  private:
    Desktop::InForce screen_in_force_{screen};
};

}  // namespace varnith::test

#pragma once

#include <QTest>
#include <QtWidgets>
#include <functional>
#include <string>

#include "platform/qt/QtDesktop.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// The real desktop, but for what would leave the program, which is the script's to answer, and for the end of
// the event loop.
class ScreenDesktop : public QtDesktop {
  public:
    explicit ScreenDesktop(TestDesktop& script) : QtDesktop(argument_count_, arguments_), script_(script) {}

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
    static inline char name_[] = "Varnith";
    static inline char* arguments_[] = {name_, nullptr};
    static inline int argument_count_ = 1;

    TestDesktop& script_;
};

// The whole program in a real window on the screen that the test was given.
class WindowTest : public ProgramTest {
  protected:
    // Waits for a condition while events are served; fails the test when it takes too long.
    static void WaitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }

    // The window of that title, or else the main window, once it is in front.
    static QMainWindow& Frame(const std::string& title = "");
    // The window that an entry of the menus opens, in the middle of the screen.
    static QMainWindow& Opened(const Ref<MenuItem>& entry);
    // What stands in a window, a line "text left,top width,height" for each control.
    static Lines Layout(const QMainWindow& frame);

    // The main window's table, and where a cell of it is.
    static QTableView& Table() { return *Frame().findChild<QTableView*>(); }
    static QPoint Centre(int row, int column) {
        return Table().visualRect(Table().model()->index(row, column)).center();
    }
    // What a user reads in a row, a "|" behind each cell.
    static std::string Shown(int row);

    // What the user does with the keyboard, as in "ctrl+w", and with the mouse.
    static void Press(const char* keys) { Do({"key", "--clearmodifiers", keys}); }
    static void Click(const QWidget& widget);
    static void Do(const QStringList& actions) { QProcess::execute("xdotool", actions); }

    ScreenDesktop screen{desktop};

  private:
    Desktop::InForce screen_in_force_{screen};
};

}  // namespace varnith::test

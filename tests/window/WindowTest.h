#pragma once

#include <QTest>
#include <QtWidgets>
#include <functional>
#include <string>

#include "helpers/ProgramTest.h"
#include "platform/qt/QtDesktop.h"

namespace varnith::test {

// The real desktop, except that the script answers calls that would leave the program, and that it ends the
// event loop in its own way.
class ScreenDesktop : public QtDesktop {
  public:
    explicit ScreenDesktop(TestDesktop& script) : QtDesktop(argument_count_, arguments_), script_(script) {}

    int RunEventLoop() override { return script_.RunEventLoop(); }
    void Quit(int status) override { script_.Quit(status); }
    std::optional<std::string> ChooseFolder() override { return script_.ChooseFolder(); }
    void OpenDocument(const std::string& path, bool front) override { script_.OpenDocument(path, front); }
    void ShowMessage(const std::string& text) override { script_.ShowMessage(text); }
    void OpenURL(const std::string& url) override { script_.OpenURL(url); }

  private:
    // Qt requires them to outlive every application object.
    static inline char name_[] = "Varnith";
    static inline char* arguments_[] = {name_, nullptr};
    static inline int argument_count_ = 1;

    TestDesktop& script_;
};

// The whole program in real windows on the test's screen.
class WindowTest : public ProgramTest {
  protected:
    // Starts the program and runs `user` once the main window is active.
    void Work(const std::function<void()>& user);

    // The program's front window, once it is active on the screen.
    static QMainWindow& Front();
    static void Activate(const QWidget& window);
    // The window that an entry of the menus opens.
    static QMainWindow& Opened(const Ref<MenuItem>& entry);

    // The main window's table, and the centre of one of its cells.
    QTableView& Table() const { return *frame->findChild<QTableView*>(); }
    QPoint Centre(int row, int column) const {
        return Table().visualRect(Table().model()->index(row, column)).center();
    }

    // Key presses, as in "ctrl+w", and mouse clicks. A window manager still busy with earlier requests may
    // give a key to no window, so each of these waits for it.
    static void Press(const char* keys) { Do({"key", "--clearmodifiers", keys}); }
    static void Click(const QPoint& on_screen, int times = 1) {
        Do({"mousemove", QString::number(on_screen.x()), QString::number(on_screen.y()), "click", "--repeat",
            QString::number(times), "1"});
    }
    static void Do(const QStringList& actions) {
        WaitForWindowManager();
        QProcess::execute("xdotool", actions);
    }
    static void WaitForWindowManager();

    // The main window.
    QMainWindow* frame = nullptr;
    ScreenDesktop screen{desktop};

  private:
    InForce<Desktop> screen_in_force_{screen};
};

}  // namespace varnith::test

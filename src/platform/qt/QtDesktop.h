#pragma once

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/UserTime.h"
#include "platform/qt/View.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// The desktop by means of Qt. Its event loop also gives the program's threads their turns and serves its
// sockets, in the inner loops of dialogs as well.
class QtDesktop : public Desktop {
  public:
    // The arguments are those that Qt reads; they and the references to them have to outlive the desktop.
    QtDesktop(int& argc, char** argv);
    ~QtDesktop() override;

    int RunEventLoop() override;
    void DoEvents(std::int32_t milliseconds) override;
    void Quit(int status) override;
    std::unique_ptr<WindowView> Show(Window& window) override;
    std::unique_ptr<TimerView> StartTimer(std::int32_t period, std::function<void()> fire) override;
    void SetIcon(const Picture& picture) override;
    Size ScreenSize(int screen) const override;
    std::optional<std::string> ChooseFolder() override;
    void ShowMessage(const std::string& text) override;
    std::optional<std::string> ChooseFileToWrite(const std::string& filter, const std::string& name) override;
    std::optional<std::size_t> ChooseFromMenu(const std::vector<std::string>& entries) override;
    bool IsContextualPress() const override;
    void OpenDocument(const std::string& path, bool to_front) override;
    void Beep() override;
    void OpenURL(const std::string& url) override;
    void BringToFront(std::int64_t process) override;
    std::string ClipboardText() const override;
    bool IsCommandKeyDown() const override;
    bool IsControlKeyDown() const override;

    // While it lives, these keys count as down: a key press is being delivered that was made with them.
    class DeliveredModifiers {
      public:
        DeliveredModifiers(QtDesktop& desktop, Qt::KeyboardModifiers modifiers);
        DeliveredModifiers(const DeliveredModifiers&) = delete;
        DeliveredModifiers& operator=(const DeliveredModifiers&) = delete;
        ~DeliveredModifiers();

      private:
        QtDesktop& desktop_;
        Qt::KeyboardModifiers previous_;
    };

  private:
    // While it lives, Qt's warnings are shown but for one that tells of nothing wrong.
    class MessageFilter {
      public:
        MessageFilter();
        MessageFilter(const MessageFilter&) = delete;
        MessageFilter& operator=(const MessageFilter&) = delete;
        ~MessageFilter();
    };

    // What escapes from an event that the toolkit delivers doesn't go through its frames.
    class GuardedApplication : public QApplication {
      public:
        using QApplication::QApplication;
        bool notify(QObject* receiver, QEvent* event) override;
    };

    void ScheduleTurn();
    bool IsDown(Qt::KeyboardModifier modifier) const;

    MessageFilter messages_;  // made first: Qt warns from its application's constructor on
    GuardedApplication application_;
    FrameClock clock_;
    QTimer turn_timer_;
    QSocketNotifier sockets_;
    Qt::KeyboardModifiers delivered_;
    UserTime user_time_;
    QString last_folder_;
    QString last_save_folder_;
};

}  // namespace varnith

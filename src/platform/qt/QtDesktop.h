#pragma once

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QTranslator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/UserTime.h"
#include "platform/qt/View.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// The real desktop, by means of Qt. Its event loop also gives the program's threads their turns and serves
// its sockets, in the nested loops of dialogs too.
class QtDesktop : public Desktop {
  public:
    // QApplication reads these arguments. They and the references must outlive the desktop.
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

    // While it lives, these modifiers count as down, because a key press that was made with them is being
    // delivered.
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
    // While it lives, suppresses one harmless warning of Qt; see ShowUnlessNoise.
    class MessageFilter {
      public:
        MessageFilter();
        MessageFilter(const MessageFilter&) = delete;
        MessageFilter& operator=(const MessageFilter&) = delete;
        ~MessageFilter();
    };

    // Keeps exceptions from unwinding through Qt: hands what escapes from an event to the exception handler.
    class GuardedApplication : public QApplication {
      public:
        using QApplication::QApplication;
        bool notify(QObject* receiver, QEvent* event) override;
    };

    void ScheduleTurn();
    bool IsDown(Qt::KeyboardModifier modifier) const;

    MessageFilter messages_;  // first member: QApplication's constructor already warns
    GuardedApplication application_;
    QTranslator translator_;
    FrameClock clock_;
    QTimer turn_timer_;
    QSocketNotifier sockets_;
    Qt::KeyboardModifiers delivered_;
    UserTime user_time_;
    QString last_folder_;
    QString last_save_folder_;
};

}  // namespace varnith

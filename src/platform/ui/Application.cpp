#include "platform/ui/Application.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <typeinfo>
#include <utility>

#include <signal.h>

#include "platform/base/Guard.h"
#include "platform/base/Trace.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Desktop.h"
#include "platform/ui/Dialogs.h"

namespace varnith {

namespace {
Application* current = nullptr;
}

Application::Application() {
    current = this;
    // A write to a pipe whose reader has gone, or beyond the limit of a file's size (setrlimit(2)), must fail
    // with an error instead of killing the process.
    signal(SIGPIPE, SIG_IGN);
    // The programs that this one starts do not inherit a handler, as they would SIG_IGN.
    signal(SIGXFSZ, [](int) {});
    SetUnhandledExceptionHandler([this](const std::exception& error) { Handle(error); });
}

Application::~Application() {
    End();
    SetUnhandledExceptionHandler(nullptr);
    current = nullptr;
}

Application& Application::Current() {
    return *current;
}

int Application::Run() {
    stage_ = Stage::Running;
    Guarded([this] { Event_Open(); });
    const std::vector<Ref<Window>> waiting = windows_;
    for (const Ref<Window>& window : waiting) window->OpenNow();
    if (!quitting_) Desktop::Current().RunEventLoop();
    End();
    return status_;
}

void Application::End() {
    stage_ = Stage::Over;
    Scheduler::Current().KillAll();
    for (const Ref<Window>& window : std::exchange(windows_, {})) {
        window->view_ = nullptr;
        window->Forget();
    }
}

void Application::Quit(int status) {
    if (quitting_) return;
    quitting_ = true;
    status_ = status;
    Desktop::Current().Quit(status);
}

void Application::DoEvents(std::int32_t milliseconds) {
    Desktop::Current().DoEvents(milliseconds);
}

void Application::Open(const Ref<Window>& window) {
    if (std::find(windows_.begin(), windows_.end(), window) == windows_.end()) windows_.push_back(window);
    if (stage_ != Stage::Running || quitting_) return;
    window->OpenNow();
    BlockOthers();
}

void Application::LetGo(Window& window) {
    const bool was_in_front = FrontWindow() == Ref<Window>(&window);
    std::erase(windows_, Ref<Window>(&window));
    BlockOthers();
    // If a dialog and its window close together, some window managers leave no window with the keyboard
    // focus.
    if (was_in_front && !quitting_) BringToFront();
}

Ref<Window> Application::FrontWindow() const {
    const auto modal = std::find_if(windows_.rbegin(), windows_.rend(),
                                    [](const Ref<Window>& window) { return window->IsModal(); });
    if (modal != windows_.rend()) return *modal;
    return windows_.empty() ? nullptr : windows_.back();
}

bool Application::IsBlocked(const Window& window) const {
    const Ref<Window> front = FrontWindow();
    return front && front->IsModal() && front.Get() != &window;
}

void Application::BlockOthers() {
    for (const Ref<Window>& window : windows_)
        if (window->view_) window->view_->SetBlocked(IsBlocked(*window));
}

void Application::BringToFront() {
    const Ref<Window> front = FrontWindow();
    if (front && front->view_) front->view_->BringToFront();
}

void Application::SetFrontWindow(Window& window) {
    if (IsBlocked(window)) return;
    const auto place = std::find(windows_.begin(), windows_.end(), Ref<Window>(&window));
    if (place != windows_.end()) std::rotate(place, place + 1, windows_.end());
}

bool Application::IsEnabled(const MenuItem& item) const {
    if (!item.Items().empty() || dynamic_cast<const QuitMenuItem*>(&item)) return true;
    const Ref<Window> front = FrontWindow();
    return item.AutoEnable && front && front->HasMenuHandler(item.Name);
}

void Application::Choose(const Ref<MenuItem>& item) {
    if (!IsEnabled(*item)) return;
    if (Ref<QuitMenuItem>::As(item))
        Quit(0);
    else if (const Ref<Window> front = FrontWindow())
        front->RunMenuHandler(item->Name);
}

void Application::Handle(const std::exception& error) {
    if (Event_UnhandledException(error)) return TraceException(error);
    const std::string report = std::string("Unexpected error: ") + error.what();
    std::fprintf(stderr, "%s (%s)\n", report.c_str(), typeid(error).name());
    MsgBox(report);
    Quit(1);
}

void Quit(int status) {
    Application::Current().Quit(status);
}

}  // namespace varnith

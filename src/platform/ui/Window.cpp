#include "platform/ui/Window.h"

#include <algorithm>

#include "platform/base/Event.h"
#include "platform/ui/Application.h"
#include "platform/ui/Screen.h"

namespace varnith {

Window::~Window() = default;

void Window::Open() {
    Application::Current().Open(Ref<Window>(this));
}

void Window::OpenNow() {
    if (open_) return;
    open_ = true;
    Guarded([this] { Event_Open(); });
    if (open_) view_ = Desktop::Current().Show(*this);
}

void Window::Show() {
    Open();
    Application::Current().SetFrontWindow(*this);
    Application::Current().BringToFront();
}

void Window::Close() {
    if (!open_) return;
    const Ref<Window> alive(this);
    open_ = false;
    Guarded([this] { Event_Close(); });
    view_ = nullptr;
    Forget();
    Application::Current().LetGo(*this);
}

void Window::Refresh(bool /*erase_background*/) {
    ++refreshes_;
    MarkChanged();
}

void Window::SetPointer(PointerShape shape) {
    if (view_) view_->SetPointer(shape);
}

void Window::SetLeft(std::int32_t left) {
    Set(left_, left);
}

void Window::SetTop(std::int32_t top) {
    Set(top_, top);
}

void Window::SetSize(std::int32_t width, std::int32_t height) {
    width_ = std::clamp(width, style_.MinWidth, style_.MaxWidth);
    height_ = std::clamp(height, style_.MinHeight, style_.MaxHeight);
    for (Control* control : controls_)
        control->FollowWindow(width_ - design_width_, height_ - design_height_);
    MarkChanged();
}

void Window::SetDesignSize(std::int32_t width, std::int32_t height) {
    width_ = design_width_ = width;
    height_ = design_height_ = height;
}

void Window::AddControl(Control& control, const Bounds& bounds, const Locks& locks, std::int32_t tab_index) {
    control.Place(*this, bounds, locks, tab_index);
    controls_.push_back(&control);
}

void Window::CentreOnScreen() {
    const Screen screen(0);
    SetLeft(static_cast<std::int32_t>(screen.Width() / 2.0 - width_ / 2.0));
    SetTop(static_cast<std::int32_t>(screen.Height() / 2.0 - height_ / 2.0));
}

void Window::AddMenuHandler(const std::string& name, std::function<bool()> handler) {
    menu_handlers_.SetValue(name, std::move(handler));
}

bool Window::RunMenuHandler(const std::string& name) {
    if (!HasMenuHandler(name)) return false;
    return RunSlot(this, menu_handlers_.Value(name));
}

bool Window::PressKey(const std::string& key) {
    const Ref<Window> alive(this);
    bool taken = false;
    Guarded([&] { taken = Event_KeyDown(key); });
    return taken;
}

}  // namespace varnith

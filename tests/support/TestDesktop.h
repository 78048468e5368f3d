#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/Desktop.h"

namespace varnith::test {

// A desktop without a display: it answers as the test says and notes down what the program asked for.
class TestDesktop : public Desktop {
  public:
    // What the user does while the event loop runs; the loop ends with it.
    std::function<void()> user;
    // What the user does in the folder dialog: the path picked, or nothing for a cancel.
    std::function<std::optional<std::string>()> choose;
    bool command_key = false;
    bool control_key = false;
    Size screen{1024, 768};

    int dialogs = 0;
    std::vector<std::string> messages;
    std::vector<std::string> urls;
    std::optional<int> quit_status;

    int RunEventLoop() override {
        user();
        return 0;
    }
    void Quit(int status) override { quit_status = status; }
    Size ScreenSize(int) const override { return screen; }
    std::optional<std::string> ChooseFolder() override {
        ++dialogs;
        return choose ? choose() : std::nullopt;
    }
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void OpenURL(const std::string& url) override { urls.push_back(url); }
    bool IsCommandKeyDown() const override { return command_key; }
    bool IsControlKeyDown() const override { return control_key; }
};

}  // namespace varnith::test

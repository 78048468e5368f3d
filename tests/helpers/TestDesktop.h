#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/Desktop.h"

namespace varnith::test {

// A desktop without a display: it answers as the test says and records what the program asked for.
class TestDesktop : public Desktop {
  public:
    // What the user does while the event loop runs; the loop ends when it returns.
    std::function<void()> user;
    // What the user does in the folder dialog: the path picked, or nothing on cancel.
    std::function<std::optional<std::string>()> choose;
    // What the user does in the save dialog, given its filter and the name that it proposes, and in a menu,
    // given its entries. They return the path or entry picked, or nothing on cancel.
    std::function<std::optional<std::string>(const std::string& filter, const std::string& name)> choose_file;
    std::function<std::optional<std::size_t>(const std::vector<std::string>& entries)> choose_entry;
    std::function<void(const std::string& path)> open;
    bool right_button = false;
    Size screen{1024, 768};

    int dialogs = 0;
    std::vector<std::string> messages;
    int beeps = 0;
    std::vector<std::int64_t> brought_to_front;  // the processes
    std::vector<std::string> urls;
    std::vector<std::string> opened;
    std::optional<int> quit_status;

    int RunEventLoop() override {
        user();
        return 0;
    }
    void Quit(int status) override { quit_status = status; }
    Size ScreenSize(int) const override { return screen; }
    std::optional<std::string> ChooseFolder() override {
        ++dialogs;
        const auto answer = choose;  // a copy, here and below, as it may set another for a nested dialog
        return answer ? answer() : std::nullopt;
    }
    std::optional<std::string> ChooseFileToWrite(const std::string& filter,
                                                 const std::string& name) override {
        ++dialogs;
        const auto answer = choose_file;
        return answer ? answer(filter, name) : std::nullopt;
    }
    std::optional<std::size_t> ChooseFromMenu(const std::vector<std::string>& entries) override {
        const auto answer = choose_entry;
        return answer ? answer(entries) : std::nullopt;
    }
    bool IsContextualPress() const override { return right_button; }
    void OpenDocument(const std::string& path, bool /*to_front*/) override {
        opened.push_back(path);
        if (open) open(path);
    }
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void Beep() override { ++beeps; }
    void BringToFront(std::int64_t process) override { brought_to_front.push_back(process); }
    void OpenURL(const std::string& url) override { urls.push_back(url); }
};

}  // namespace varnith::test

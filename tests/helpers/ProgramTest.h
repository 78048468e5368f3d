#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "app/MainWindow.h"
#include "helpers/TemporaryFolder.h"
#include "helpers/TestDesktop.h"
#include "helpers/TestFileSystem.h"
#include "helpers/WaitUntil.h"
#include "platform/threads/Thread.h"

namespace varnith::test {

using Lines = std::vector<std::string>;

// Runs the program's threads, one yield point at a time, until the condition holds. Without one, until
// all have ended.
void RunThreadsUntil(const std::function<bool()>& condition,
                     std::source_location place = std::source_location::current());
void RunThreads();

// A thread of the program that runs the test's code.
struct Beside : Thread {
    explicit Beside(std::function<void()> work) : body(std::move(work)) { Run(); }
    void Event_Run() override { body(); }
    const std::function<void()> body;
};

// Sets an environment variable for the lifetime of this object.
class Environment {
  public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* previous = getenv(name)) previous_ = previous;
        setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { previous_ ? setenv(name_, previous_->c_str(), 1) : unsetenv(name_); }

  private:
    const char* name_;
    std::optional<std::string> previous_;
};

// Drops all capabilities of this process, so that permissions can deny the program a file or folder even when
// root runs the test.
void GiveUpPrivileges();

// The whole program without a display, on a system named Testix.
class ProgramTest : public testing::Test {
  protected:
    ProgramTest();

    // Starts the program, lets the user work, and ends it. Returns the exit status.
    int Start(const std::function<void()>& user);

    // REQUIRES for all below: called from `user` while the program runs.
    static MainWindow& Main() { return *MainWindow::Instance(); }
    // Presses "Locate" and picks the folder, or cancels.
    void Locate(const std::optional<std::string>& folder);
    void Scan(const std::string& folder, bool subfolders);

    // The rows of the list as "name|count|folder|type", and their tags, with a "*" if the row is ticked.
    // Folders are relative to `documents`.
    Lines Rows() const;
    static Lines Tags();
    // The check boxes alone, one letter a row: "x" if ticked, "-" if not.
    static std::string Ticks();
    // What else the window shows: "title|address|file count|popup,entries".
    std::string Texts() const;
    // The saved rows in the form of Rows, read through a database connection of their own.
    Lines SavedRows() const;

    TemporaryFolder application;
    TemporaryFolder documents;
    TemporaryFolder home;  // for settings and temporary files
    TestDesktop desktop;
    TestFileSystem disk;

  private:
    // The text with its paths made relative to `documents`.
    std::string FromDocuments(std::string text) const;

    Environment settings_folder_{"XDG_CONFIG_HOME", home / "settings"};
    Environment temporary_folder_{"TMPDIR", home.Path()};
    InForce<Desktop> desktop_in_force_{desktop};
    DiskInForce disk_in_force_{disk};
};

}  // namespace varnith::test

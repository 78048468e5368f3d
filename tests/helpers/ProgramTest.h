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

// Gives the program's threads their turns, one yield point at a time, until the condition holds or, without
// one, all have ended.
void RunThreadsUntil(const std::function<bool()>& condition,
                     std::source_location place = std::source_location::current());
void RunThreads();

// A thread of the program whose body is the test's.
struct Beside : Thread {
    explicit Beside(std::function<void()> work) : body(std::move(work)) { Run(); }
    void Event_Run() override { body(); }
    const std::function<void()> body;
};

// A variable of the environment that has a value of the test's own for as long as this lives.
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

// From now on this process may do nothing that an ordinary user may not, root included, so that a file or
// folder can be closed to the program.
void GiveUpPrivileges();

// The whole program without a display, on a system named Testix.
class ProgramTest : public testing::Test {
  protected:
    ProgramTest();

    // Starts the program, lets the user work, and ends it. Returns the exit status.
    int Start(const std::function<void()>& user);

    // REQUIRES for all below: called by the user of a program that runs.
    static MainWindow& Main() { return *MainWindow::Instance(); }
    // Presses "Locate" and picks the folder, or cancels.
    void Locate(const std::optional<std::string>& folder);
    void Scan(const std::string& folder, bool subfolders);

    // The list, a line "name|count|folder|type" a row, and its tags with a "*" behind them where the box is
    // ticked. Folders count from `documents`.
    Lines Rows() const;
    static Lines Tags();
    // The check boxes alone, a letter a row: "x" where ticked, "-" where not.
    static std::string Ticks();
    // What else the window shows: "title|address|file count|popup,entries".
    std::string Texts() const;
    // The saved rows in the form of Rows, as another handle of the file reads them.
    Lines SavedRows() const;

    TemporaryFolder application;
    TemporaryFolder documents;
    TemporaryFolder home;  // where settings and temporary files go
    TestDesktop desktop;
    TestFileSystem disk;

  private:
    // The same, with the documents folder left out of the paths in it.
    std::string FromDocuments(std::string text) const;

    Environment settings_folder_{"XDG_CONFIG_HOME", home / "settings"};
    Environment temporary_folder_{"TMPDIR", home.Path()};
    InForce<Desktop> desktop_in_force_{desktop};
    DiskInForce disk_in_force_{disk};
};

}  // namespace varnith::test

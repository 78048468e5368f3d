#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <string>

#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include "http/support/RawServer.h"
#include "platform/system/Shell.h"
#include "platform/ui/Application.h"
#include "support/ProgramTest.h"
#include "update/AutoUpdateWindow.h"

namespace varnith::test {

namespace fs = std::filesystem;

// The program in version 1.0.0 as a bundle in its application folder, and a new bundle in a release folder.
// Their programs are scripts that note down that they have been started.
class UpdateTest : public ProgramTest {
  public:
    // The update server, which also has the downloads.
    static RawServer& Server() {
        static RawServer server;
        return server;
    }

  protected:
    UpdateTest() {
        for (const auto& [path, word] : {std::pair(bundle, "old"), std::pair(release / "New.app", "new")}) {
            fs::create_directories(path + "/Contents/MacOS");
            std::ofstream(path + "/Contents/MacOS/Varnith") << Program(word);
            fs::permissions(path + "/Contents/MacOS/Varnith", fs::perms(0755));
        }
        disk.executable = bundle + "/Contents/MacOS/Varnith";
        old_ = TreeOf(bundle);
        new_ = TreeOf(release / "New.app");
    }
    ~UpdateTest() override {
        std::ifstream processes(home / "processes");
        for (pid_t process; processes >> process;) kill(process, SIGKILL);
    }

    // Serves the events that come in until the condition holds; fails the test when it takes too long.
    static void PumpUntil(const std::function<bool()>& condition) {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << "what was waited for does not come";
            Desktop::Current().DoEvents(5);
        }
    }

    // Answers so many requests, one after the other, each with a page, head and all.
    void Serve(const Lines& pages) {
        served_ = std::async(std::launch::async, [pages] {
            for (const std::string& page : pages) {
                // A program that has ended before may have asked.
                if (Server().TakeRequest().empty()) Server().TakeRequest();
                Server().Send(page);
                Server().Close();
            }
        });
    }
    bool HasServed() const { return served_.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
    static std::string Page(const std::string& body, const std::string& status = "200 OK") {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
               body;
    }
    // The page of a data file that names version 1.0.1.
    static std::string Newer(const std::string& name = "a.tar.gz") {
        return Page("version=1.0.1\ndownload-mac=http://" + Server().At("/new/" + name));
    }

    // The window of the offer; nil while there is none in front.
    static Ref<AutoUpdateWindow> Offer() {
        return Ref<AutoUpdateWindow>::As(Application::Current().FrontWindow());
    }
    static void AwaitOfferAndPress() {
        PumpUntil([] { return static_cast<bool>(Offer()); });
        Offer()->ActionBtn.Press();
    }

    // The script that notes down a word when it is started, and waits to be ended.
    std::string Program(const std::string& word) const {
        return "#!/bin/sh\necho $$ >>'" + home.Path() + "/processes'\necho \"" + word + " ${0#" +
               application.Path() + "/}\" >>'" + home.Path() + "/launched'\nexec tail -f /dev/null\n";
    }
    // What was noted down, "word path" below the application folder, once there is something if there has to
    // be.
    std::string Launched(bool something) const {
        std::string noted;
        PumpUntil([&] {
            std::getline(std::ifstream(home / "launched"), noted);
            return !something || !noted.empty();
        });
        return noted;
    }

    // Runs a command line in the release's folder, $A and $T being the application's and the temporary one.
    // Returns what it writes.
    std::string Run(const std::string& command_line) const {
        Shell shell;
        shell.Execute("A=" + application.Path() + "; T=" + temporary + "; cd " + release.Path() + " && " +
                      command_line);
        return shell.Result();
    }

    // The names in a folder. Behind that of a folder stands "=old" or "=new" if it is the bundle, byte for
    // byte and with its permissions, else "=other".
    std::string Holds(const std::string& path) const {
        std::string names;
        for (const auto& [name, what] : TreeOf(path)) {
            if (name.find('/') != name.npos || name == "os-release") continue;
            names += (names.empty() ? "" : " ") + name;
            if (!what.ends_with('/')) continue;
            const Tree tree = TreeOf(path + "/" + name);
            names += tree == old_ ? "=old" : tree == new_ ? "=new" : "=other";
        }
        return names;
    }

    const std::string bundle = application / "Varnith.app";
    // The program's temporary folder.
    const std::string temporary = home / ("varnith-" + EnterNamespace());
    TemporaryFolder release;

  private:
    // Gives the process mounts of its own and, for that, a user who may mount, as far as the system lets it.
    // Returns the user.
    static std::string EnterNamespace() {
        const std::string user = std::to_string(geteuid());
        if (user != "0" && unshare(CLONE_NEWUSER) == 0)
            std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";
        unshare(CLONE_NEWNS);
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        return std::to_string(geteuid());
    }

    std::future<void> served_;
    Tree old_;
    Tree new_;
};

}  // namespace varnith::test

#include <atomic>
#include <chrono>
#include <thread>

#include "BuildSettings.h"
#include "app/App.h"
#include "http/support/RawServer.h"
#include "support/ProgramTest.h"
#include "support/SupportWindow.h"

namespace varnith {

namespace test {
// The server that the program under test takes for the maker's.
static RawServer& WebServer() {
    static RawServer server;
    return server;
}
}  // namespace test

// These take the place of the settings of the build: the program asks this machine only.
const int BuildSettings::MajorVersion = 3;
const int BuildSettings::MinorVersion = 14;
const int BuildSettings::BugVersion = 1;
const std::string BuildSettings::UpdateServer = "127.0.0.1:1";  // where nobody listens
const std::string BuildSettings::WebServer = test::WebServer().At("");
const std::string BuildSettings::ReachabilityHost = "localhost";

namespace test {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The user writes a ticket; the maker's server does as the test says, beside the program.
class SubmissionTest : public ProgramTest {
  protected:
    static SupportWindow& Fill(const std::string& address) {
        App::Instance().Choose(MainWindow::Instance()->HelpSupport());
        SupportWindow& w = *SupportWindow::Instance();
        w.EditField1.SetText(address);
        w.EditField2.SetText("n");
        w.EditField3.SetText("t");
        w.Timer1_Action();
        return w;
    }

    // Presses "Send" and sees that the window goes with its message. Returns how many seconds that took.
    double Send(SupportWindow& w, const std::function<void()>& server) {
        const auto start = Clock::now();
        std::thread beside(server);
        w.PushButton1.Press();
        beside.join();
        EXPECT_EQ(desktop.messages, Lines{"Support Ticket Sent!"});
        EXPECT_TRUE(App::Instance().FrontWindow() == Ref<Window>(&Main()));
        desktop.messages.clear();
        return SecondsSince(start);
    }
};

TEST_F(SubmissionTest, AScanGoesOnWhileTheServerIsWaitedFor) {
    for (int i = 0; i < 5'000; ++i) documents.File(std::to_string(i) + ".tif");
    std::atomic<int> counted = 0;
    disk.fails = [&](const std::string& path) {
        counted += path.ends_with(".tif");
        return false;
    };
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        Send(Fill("a@b.c"), [&] {
            WebServer().TakeRequest();
            const int before = counted;
            const auto start = Clock::now();
            while (counted < before + 100 && SecondsSince(start) < 20) std::this_thread::yield();
            EXPECT_GE(counted, before + 100);
            WebServer().Close();
        });
        RunThreads();
        EXPECT_EQ(Main().StaticText2.Text(), "5000 file(s)");
    });
}

TEST_F(SubmissionTest, RefusesATextWithoutAnAddress) {
    const auto many = [](const std::string& text) {
        std::string all;
        while (all.size() < 1'000'000) all += text;
        return all;
    };
    Start([&] {
        for (const std::string& text :
             {std::string("me"), std::string("Me@host"), std::string("@host.org"),
              std::string(" me@.host.org "), std::string("me@-host.org"), many("a") + "@.", many("a.") + "@.",
              many("a@"), many("a@a-"), "a@" + many("a-") + "."}) {
            SupportWindow& w = Fill(text);
            const auto start = Clock::now();
            w.PushButton1.Press();
            EXPECT_LT(SecondsSince(start), 10) << text.substr(0, 20);
            EXPECT_TRUE(desktop.messages == Lines{text + " not valid email"}) << text.substr(0, 20);
            EXPECT_EQ(SupportWindow::Instance()->EditField3.Text(), "t");
            desktop.messages.clear();
        }
        EXPECT_FALSE(WebServer().HasVisitor());

        for (const char* text :
             {"me@host.org", "ME@HOST.ORG", "<a.b+c@d-e.f.gh>", "write to me@x.org, please"})
            Send(Fill(text), [] {
                WebServer().TakeRequest();
                WebServer().Close();
            });
    });
}

// The last one, as the server is gone at its end.
TEST_F(SubmissionTest, EndsWellWithAnyServer) {
    struct Case {
        const char* description;
        std::function<void()> server;
        std::int32_t patience;
        double least, most;  // seconds
    };
    const auto takes = [](const std::function<void()>& then) {
        return [=] {
            WebServer().TakeRequest();
            then();
            WebServer().Close();
        };
    };
    const auto drips = [](const std::string& drops) {
        for (const char drop : drops)
            if (WebServer().ClientGoesWithin(500) || !WebServer().Send(std::string(1, drop))) break;
    };
    const auto waits = [] { EXPECT_TRUE(WebServer().ClientHasGone()); };
    const std::string head = "HTTP/1.0 200 OK\r\n\r\n";
    const Case cases[] = {
        {"breaks off", takes([] { WebServer().Reset(); }), 30, 0, 10},
        {"has an error", takes([] { WebServer().Send("HTTP/1.0 500 No\r\n\r\nno"); }), 30, 0, 10},
        {"never answers", takes(waits), 1, 1, 10},
        {"never goes on", takes([&] { WebServer().Send(head + "x"), waits(); }), 1, 1, 10},
        {"drips the page", takes([&] { WebServer().Send(head), drips("12345"); }), 2, 2.5, 10},
        {"drips the head, which is no progress", takes([&] { drips(head); }), 2, 2, 8},
        {"is not there", [] {}, 30, 0, 10},
    };
    Start([&] {
        for (const Case& one : cases) {
            SCOPED_TRACE(one.description);
            SupportWindow& w = Fill("a@b.c");
            EXPECT_EQ(w.Patience, 30);
            w.Patience = one.patience;
            if (&one == std::end(cases) - 1) WebServer().StopListening();
            const double seconds = Send(w, one.server);
            EXPECT_TRUE(one.least <= seconds && seconds <= one.most) << seconds;
        }
    });
}

}  // namespace
}  // namespace test
}  // namespace varnith

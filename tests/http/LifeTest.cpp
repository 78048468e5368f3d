#include <algorithm>
#include <ctime>

#include "http/support/HTTPTest.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Application.h"

namespace varnith::test {

TEST_F(HTTPTest, IsLetGoOfByAnyOfItsEvents) {
    const auto let_go = [&](const auto&...) {
        events.emplace_back("let go");
        client = nullptr;
        return true;
    };
    const std::function<void()> cases[] = {
        [&] { client->Connected = let_go; },       [&] { client->AuthenticationRequired = let_go; },
        [&] { client->HeadersReceived = let_go; }, [&] { client->ReceiveProgress = let_go; },
        [&] { client->PageReceived = let_go; },
    };
    for (const auto& set_handler : cases) {
        client = MakeRef<RecordingSocket>(events);
        set_handler();
        client->Get(server.At("/"));
        ServeBeside("", "HTTP/1.0 401 No\n\nno");
        PumpUntil([&] { return !client; });
        EXPECT_EQ(events[events.size() - 2] + ", " + events.back(), "let go, gone");
    }
    client = MakeRef<RecordingSocket>(events);
    client->Get(server.At("/"));
    client = nullptr;
    EXPECT_EQ(events.back(), "gone") << "while it connects";
    client = MakeRef<RecordingSocket>(events);
    client->AuthenticationRequired = [&](const auto&...) { return !let_go(); };
    ServeBeside("", "HTTP/1.0 401 No\n\nno");
    EXPECT_EQ(client->Get(server.At("/"), 20), "no") << "while it is waited for";
}

TEST_F(HTTPTest, IsLetGoOfByTheEventOfAnother) {
    RawServer other_server;
    auto other = MakeRef<RecordingSocket>(events);
    other->HeadersReceived = [&](const auto&, auto) { client = nullptr; };
    client->HeadersReceived = [&](const auto&, auto) { other = nullptr; };
    client->Get(server.At("/"));
    TakeRequest();
    other->Get(other_server.At("/"));
    TakeRequest(other_server);
    for (RawServer* each : {&server, &other_server}) each->Send("HTTP/1.0 200 OK\n\n");
    events.clear();
    PumpUntil([&] { return !events.empty(); });
    EXPECT_EQ(events, (Lines{"gone", "ReceiveProgress 0 0 "}));
}

// Only a refusal ends with the last of its bytes; another page stays unfinished.
TEST_F(HTTPTest, ReadsOnceWhatComesWhileAHandlerRunsTheEventLoopAndFails) {
    Application application;
    int failures = 0;
    SetUnhandledExceptionHandler([&](const std::exception&) { ++failures; });
    client->HeadersReceived = [&](const auto&, auto) {
        for (const std::string piece : {"-one", "-two"}) {
            const std::size_t before = client->Lookahead().size();
            server.Send(piece);
            while (client->Lookahead().size() == before) application.DoEvents(1000);
        }
        server.Close();
        while (client->IsConnected()) application.DoEvents(1000);
        throw NilObjectException();
    };
    for (const std::string status : {"200", "401"}) {
        client->Get(server.At("/"));
        TakeRequest();
        Answer("HTTP/1.0 " + status + " X\n\nbody");
    }
    const std::string progress = "ReceiveProgress 12 0 body-one-two";
    EXPECT_EQ(events, (Lines{"Connected", progress, "Connected", progress,
                             "PageReceived " + server.At("/") + " 401 [] body-one-two"}));
    EXPECT_EQ(failures, 2);
}

TEST_F(HTTPTest, WaitsForTheResultAndWithholdsTheEvents) {
    const std::string url = server.At("/");
    ServeBeside("HEAD", "HTTP/1.0 200 OK\nb: 2\n\n");
    EXPECT_EQ(client->GetHeaders(url, 20)->Value("b"), "2");
    ServeBeside("POST", "HTTP/1.0 200 OK\n\n");
    EXPECT_EQ(client->Post(url, 20), "");
    EXPECT_FALSE(client->PageHeaders()) << "a block without a header is none";
    ServeBeside("GET", "HTTP/1.0 404 No\na: 1\n\nof the page before");
    EXPECT_EQ(client->Get(url, 20), "of the page before");
    EXPECT_EQ(client->HTTPStatusCode(), 404);
    EXPECT_EQ(client->PageHeaders()->Value("a"), "1");
    EXPECT_EQ(client->Get("127.0.0.1:65536", 20), "of the page before") << "a failed call doesn't reset it";
    EXPECT_EQ(client->ErrorCode(), SocketCore::ConnectionNotMade);
    EXPECT_EQ(events, Lines());
}

TEST_F(HTTPTest, LimitsTheTimeInWhichNothingMoves) {
    const std::string head = "HTTP/1.0 200 OK\n\n";
    for (const std::int32_t seconds : {0, 1}) {  // 0 is no limit
        Beside([&] {
            server.TakeRequest();
            for (const std::string& piece : {head + "it ", std::string("drips "), std::string("on")}) {
                EXPECT_FALSE(server.ClientGoesWithin(500));
                server.Send(piece);
            }
            server.Close();
        });
        EXPECT_EQ(client->Get(server.At("/"), seconds), "it drips on");
    }

    // Only the page in memory counts as movement: a download has to be through in time.
    Beside([&] {
        server.TakeRequest();
        server.Send(head);
        while (!server.ClientGoesWithin(50)) server.Send(".");
    });
    // That a file can't be written is forgotten by the wait.
    for (const std::string& file : {folder / "file", folder.Path()}) {
        EXPECT_FALSE(client->Get(server.At("/"), FolderItem::FromPath(file), 1));
        EXPECT_EQ(client->ErrorCode(), HTTPSocket::TimedOut);
        EXPECT_FALSE(client->IsConnected());
    }
}

TEST_F(HTTPTest, CostsNextToNothingWhileItWaitsAndLetsOthersGoOn) {
    // A piece of work that needs many turns, like a scan.
    struct LongWork : Thread {
        int turns = 0;
        void Event_Run() override {
            for (; turns < 20; ++turns) Sleep(1);
        }
    };
    Application application;
    // A slice that only ends by being given up.
    Scheduler::Current().SetSlice(std::chrono::minutes(1));
    const auto work = MakeRef<LongWork>();
    work->Run();
    RawServer other_server;
    const auto other = MakeRef<RecordingSocket>(events);
    other->Get(other_server.At("/"));
    const std::clock_t before = std::clock();
    EXPECT_EQ(client->Get(server.At("/"), 5), "");
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 10);
    EXPECT_EQ(work->turns, 20);
    EXPECT_EQ(events, Lines()) << "only with Yield come the events of others";
    client->Yield = true;
    client->Get(server.At("/"), 1);
    EXPECT_EQ(events, Lines{"Connected"});
}

}  // namespace varnith::test

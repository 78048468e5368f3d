#include "http/support/HTTPTest.h"
#include "platform/net/Network.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Application.h"

namespace varnith::test {

// The socket is let go of by the handler of each event in turn, or behind it: that event is its last.
TEST_F(HTTPTest, IsLetGoOfAtAnyTime) {
    bool within = true;
    bool due = false;
    const auto let_go = [&](const auto&...) {
        events.emplace_back("let go");
        due = true;
        if (within) client = nullptr;
        return true;
    };
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { client->Connected = let_go; }, ""},
        {[&] { client->HeadersReceived = let_go; }, "HTTP/1.0 200 OK\n\n"},
        {[&] { client->ReceiveProgress = let_go; }, "HTTP/1.0 200 OK\n\n"},
        {[&] { client->PageReceived = let_go; }, "HTTP/1.0 200 OK\n\n"},
        {[&] { client->AuthenticationRequired = let_go; }, "HTTP/1.0 401 No\n\n"},
    };
    for (std::size_t i = 0; i < 2 * std::size(cases); ++i) {
        const auto& [set_handler, answer] = cases[i / 2];
        const bool ends = i / 2 == 3;  // the page does with the connection
        within = i % 2 == 0;
        due = false;
        client = MakeRef<RecordingSocket>(events);
        set_handler();
        client->Get(server.At("/"));
        PumpUntil([&] { return due || client->sendings > 0; });
        if (due) client = nullptr;
        server.TakeRequest();
        server.Send(answer);
        if (ends) server.Close();
        PumpUntil([&] { return due; });
        client = nullptr;
        EXPECT_EQ(events.back(), "gone") << i;
        EXPECT_TRUE(!within || events[events.size() - 2] == "let go") << i;
        EXPECT_TRUE(ends || server.ClientHasGone());
    }
    client = MakeRef<RecordingSocket>(events);
    client->Get(server.At("/"));
    client = nullptr;
    EXPECT_EQ(events.back(), "gone") << "while it connects";
    client = MakeRef<RecordingSocket>(events);
    client->Error = let_go;
    within = true;
    client->Get(server.At("/"), FolderItem::FromPath(folder.Path()));
    EXPECT_EQ(events.back(), "gone") << "within the call itself";
}

TEST_F(HTTPTest, IsLetGoOfByTheEventOfAnother) {
    RawServer other_server;
    auto other = MakeRef<RecordingSocket>(events);
    other->HeadersReceived = [&](const auto&, auto) { client = nullptr; };
    client->HeadersReceived = [&](const auto&, auto) { other = nullptr; };
    client->Get(server.At("/"));
    TakeRequest();
    other->Get(other_server.At("/"));
    PumpUntil([&] { return other->sendings > 0; });
    other_server.TakeRequest();
    for (RawServer* each : {&server, &other_server}) each->Send("HTTP/1.0 200 OK\n\n");
    events.clear();
    PumpUntil([&] { return !events.empty(); });
    EXPECT_EQ(events, (Lines{"gone", "ReceiveProgress 0/0 "}));
}

TEST_F(HTTPTest, HearsWhatAServerSaysThatTakesNoMore) {
    client->SetPostContent(std::string(16 << 20, 'x'), "text/plain");
    client->Post(server.At("/"));
    for (int turn = 0; turn < 10; ++turn) client->Poll();
    server.TakeRequest(RawServer::Part::Head);
    server.Send("HTTP/1.0 413 Too Large\n\ntoo large");
    server.Close();
    PumpUntilEnd();
    EXPECT_EQ(events.back(), "PageReceived " + server.At("/") + " 413 [] too large");
}

TEST_F(HTTPTest, DropsTheRequestThatANewOneOvertakes) {
    client->Get(server.At("/never sent"));
    client->Get(server.At("/dropped"));
    TakeRequest();
    Answer({"HTTP/1.0 200 OK\n\ndropped"});
    events.clear();
    client->Get(server.At("/counts"));
    EXPECT_TRUE(server.ClientHasGone());
    EXPECT_EQ(TakeRequest(), PlainRequest("GET", "/counts", server.At("")));
    AnswerAndClose({"HTTP/1.0 200 OK\n\nnew"});
    EXPECT_EQ(events, (Lines{"Connected", "HeadersReceived 200 []", "ReceiveProgress 3/0 new",
                             "PageReceived " + server.At("/counts") + " 200 [] new"}));
}

TEST_F(HTTPTest, ReadsOnceWhatComesWhileAHandlerRunsTheEventLoopAndFails) {
    Application application;
    int failures = 0;
    SetUnhandledExceptionHandler([&](const std::exception&) { ++failures; });
    client->HeadersReceived = [&](const auto&, auto) {
        for (const std::string piece : {"-one", "-two"}) {
            const int before = client->arrivals;
            server.Send(piece);
            while (client->arrivals == before) application.DoEvents(1000);
        }
        throw NilObjectException();
    };
    client->Get(server.At("/"));
    TakeRequest();
    server.Send("HTTP/1.0 200 OK\n\nbody");
    PumpUntil([&] { return client->arrivals == 3; });
    AnswerAndClose({"-end"});
    EXPECT_EQ(events, (Lines{"Connected", "ReceiveProgress 12/0 body-one-two", "ReceiveProgress 16/0 -end",
                             "PageReceived " + server.At("/") + " 200 [] body-one-two-end"}));
    EXPECT_EQ(failures, 1);
}

TEST_F(HTTPTest, WaitsForTheResultAndWithholdsTheEvents) {
    ServeOnce("HTTP/1.0 200 OK\n\nfile", "POST");
    EXPECT_TRUE(client->Post(server.At("/"), FolderItem::FromPath(folder / "file"), 20));
    EXPECT_EQ(BytesOf(folder / "file"), "file");
    ServeOnce("HTTP/1.0 200 OK\nb: 2\n\n", "HEAD");
    EXPECT_EQ(client->GetHeaders(server.At("/"), 0)->Value("b"), "2");
    ServeOnce("HTTP/1.0 200 OK\n\n", "POST");
    EXPECT_EQ(client->Post(server.At("/"), 20), "");
    EXPECT_FALSE(client->PageHeaders()) << "a block without a header is none";
    ServeOnce("", "HEAD");
    EXPECT_FALSE(client->GetHeaders(server.At("/"), 20));
    ServeOnce("HTTP/1.0 404 No\na: 1\n\nof the page before");
    EXPECT_EQ(client->Get(server.At("/"), 20), "of the page before");
    EXPECT_EQ(client->HTTPStatusCode(), 404);
    EXPECT_EQ(client->PageHeaders()->Value("a"), "1");
    EXPECT_EQ(client->ErrorCode(), 0);
    RawServer refusing;
    refusing.StopListening();
    EXPECT_EQ(client->Get(refusing.At("/"), 20), "of the page before") << "a failed call doesn't reset it";
    EXPECT_EQ(client->ErrorCode(), SocketCore::ConnectionNotMade);
    EXPECT_EQ(events, Lines());

    // The one event that comes lets go of the socket that is waited for.
    client->AuthenticationRequired = [&](const auto&, auto&, auto&) {
        client = nullptr;
        return false;
    };
    ServeOnce("HTTP/1.0 401 No\n\nbody");
    EXPECT_EQ(client->Get(server.At("/"), 20), "body");
    EXPECT_EQ(events, Lines{"gone"});
}

TEST_F(HTTPTest, LimitsTheTimeInWhichNothingMoves) {
    Beside([this] {
        server.TakeRequest();
        server.Send("HTTP/1.0 200 OK\n\n");
        for (const char* piece : {"it ", "drips ", "on"}) {
            EXPECT_FALSE(server.ClientGoesWithin(500));
            server.Send(piece);
        }
        server.Close();
    });
    EXPECT_EQ(client->Get(server.At("/"), 1), "it drips on");

    // Only the page in memory counts as movement: a download has to be through in time.
    Beside([this] {
        server.TakeRequest();
        server.Send("HTTP/1.0 200 OK\n\n");
        while (!server.ClientGoesWithin(50)) server.Send(".");
    });
    const auto expect_time_out = [&](const std::string& file) {
        EXPECT_FALSE(client->Get(server.At("/"), FolderItem::FromPath(file), 1));
        EXPECT_EQ(client->ErrorCode(), HTTPSocket::TimedOut);
        EXPECT_FALSE(client->IsConnected());
    };
    expect_time_out(folder / "file");
    // A head that never ends leaves the page unfinished.
    ServeOnce("HTTP/1.0 200 OK\na: 1");
    expect_time_out(folder / "file");
    // That the file can't be written is forgotten by the wait.
    expect_time_out(folder.Path());
}

// A piece of work that needs many turns, like a scan.
struct LongWork : Thread {
    bool done = false;
    void Event_Run() override {
        for (int turn = 0; turn < 20; ++turn) Sleep(1);
        done = true;
    }
};

TEST_F(HTTPTest, CostsNextToNothingAndLetsTheThreadsOfTheProgramRunOn) {
    // A slice that only ends by being given up.
    Scheduler::Current().SetSlice(std::chrono::minutes(1));
    const auto work = MakeRef<LongWork>();
    work->Run();
    const double before = ProcessorSeconds();
    EXPECT_EQ(client->Get(server.At("/"), 5), "");
    EXPECT_LT(ProcessorSeconds() - before, 0.1);
    EXPECT_EQ(client->ErrorCode(), HTTPSocket::TimedOut);
    EXPECT_TRUE(work->done);
}

TEST_F(HTTPTest, RunsTheEventLoopIfToldTo) {
    Application application;
    const auto other = MakeRef<RecordingSocket>(events);
    RawServer other_server;
    for (const bool yield : {true, false}) {
        other->Get(other_server.At("/"));
        client->Yield = yield;
        client->Get(server.At("/"), 1);
        EXPECT_EQ(events, Lines{"Connected"}) << "another socket's events come in the meantime, or don't";
    }
}

TEST(Network, LooksUpAddresses) {
    const std::string local = Network::LookupIPAddress("localhost");
    EXPECT_TRUE(local == "127.0.0.1" || local == "::1") << local;
    for (const std::string& none : {std::string(), std::string(300, 'x')})
        EXPECT_EQ(Network::LookupIPAddress(none), "");
}

}  // namespace varnith::test

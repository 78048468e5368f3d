#include <ctime>

#include <sys/resource.h>

#include "helpers/ProgramTest.h"
#include "http/HTTPTest.h"
#include "platform/base/InForce.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

namespace varnith::test {

TEST_F(HTTPTest, HearsNothingMoreOnceItIsLetGoOf) {
    for (std::size_t last = 1; last <= 4; ++last) {
        client = MakeRef<RecordingSocket>(events);
        events.clear();
        client->Noted = [&] {
            if (events.size() == last) client = nullptr;
        };
        client->Get(server.At("/"));
        ServeBeside("", "HTTP/1.0 200 OK\n\nbody");
        ServeUntil([&] { return !client; });
        EXPECT_EQ(events.size(), last + 1) << "the client's end follows at once";
    }
    client = MakeRef<RecordingSocket>(events);
    client->AuthenticationRequired = [&](const auto&...) {
        client = nullptr;
        return false;
    };
    ServeBeside("", "HTTP/1.0 401 No\n\nwhat outlives the client");
    EXPECT_EQ(client->Get(server.At("/"), 20), "what outlives the client") << "released in a blocking call";

    client = MakeRef<RecordingSocket>(events);
    auto other = MakeRef<RecordingSocket>(events);
    events.clear();
    client->Noted = [&] { other = nullptr; };
    other->Noted = [&] { client = nullptr; };
    for (const auto& each : {client, other}) each->Get(server.At("/"));
    ServeUntil([&] { return !events.empty(); });
    EXPECT_EQ(events, (Lines{"Connected", "gone"})) << "released by another client's event in the same turn";
}

// Only a 401 page is complete once its last byte has come; any other stays unfinished.
TEST_F(HTTPTest, ReadsOnceWhatComesWhileAHandlerRunsTheEventLoop) {
    client->HeadersReceived = [&](const auto&, auto) {
        for (const std::string piece : {"-one", "-two"}) {
            const std::size_t before = client->Lookahead().size();
            server.Send(piece);
            ServeUntil([&] { return client->Lookahead().size() != before; });
        }
        server.Close();
        ServeUntil([&] { return !client->IsConnected(); });
    };
    for (const std::string status : {"200", "401"}) {
        client->Get(server.At("/"));
        TakeRequest();
        Answer("HTTP/1.0 " + status + " X\n\nbody");
    }
    const std::string progress = "ReceiveProgress 12 0 body-one-two";
    EXPECT_EQ(events, (Lines{"Connected", progress, "Connected", progress,
                             "PageReceived " + server.At("/") + " 401 [] body-one-two"}));
}

TEST_F(HTTPTest, WaitsForTheResultAndWithholdsTheEvents) {
    const std::string url = server.At("/");
    ServeBeside("HEAD", "HTTP/1.0 200 OK\nb: 2\n\n");
    EXPECT_EQ(client->GetHeaders(url, 20)->Value("b"), "2");
    ServeBeside("POST", "HTTP/1.0 200 OK\n\n");
    EXPECT_EQ(client->Post(url, 20), "");
    EXPECT_FALSE(client->PageHeaders()) << "an empty header block gives nil";
    std::string page;
    for (const std::int32_t seconds : {0, 1}) {  // without data; 0 means no limit
        Beside([&] {
            server.TakeRequest();
            server.Send("HTTP/1.0 404 No\na: 1\n\n");
            EXPECT_TRUE(server.DripFor(std::chrono::milliseconds(1200)));
            server.Send("the end");
            server.Close();
        });
        page = client->Get(url, seconds);
        EXPECT_TRUE(page.ends_with(".the end")) << page;
        EXPECT_EQ(client->HTTPStatusCode(), 404);
        EXPECT_EQ(client->PageHeaders()->Value("a"), "1");
    }
    EXPECT_EQ(client->Get("127.0.0.1:65536", 20), page) << "a failed call returns the previous page";
    EXPECT_EQ(client->ErrorCode(), SocketCore::ConnectionNotMade);

    // Data restarts the timeout only for a page read into memory; a download to a file must finish in time.
    Beside([&] {
        server.TakeRequest();
        server.Send("HTTP/1.0 200 OK\n\n");
        EXPECT_FALSE(server.DripFor(std::chrono::seconds(20)));
    });
    // The wait runs into its timeout even if the file can't be written.
    for (const std::string& file : {folder / "file", folder.Path()}) {
        EXPECT_FALSE(client->Get(url, FolderItem::FromPath(file), 1));
        EXPECT_EQ(client->ErrorCode(), HTTPSocket::TimedOut);
        EXPECT_FALSE(client->IsConnected());
    }
    EXPECT_EQ(events, Lines());
    client->Get(url, FolderItem::FromPath(folder.Path()));
    EXPECT_EQ(events, Lines{"Error 1"}) << "an asynchronous request raises its events again";
}

TEST_F(HTTPTest, WaitsWithoutHasteAndLetsAScanGoOn) {
    struct CountingDesktop : Desktop {
        void DoEvents(std::int32_t milliseconds) override { ++turns, Desktop::DoEvents(milliseconds); }
        int turns = 0;
    } desktop;
    const InForce<Desktop> in_force(desktop);
    Application application;
    Scheduler::Current().SetSlice(std::chrono::minutes(1));  // ends only when the thread gives it up
    const auto other = MakeRef<RecordingSocket>(events);
    other->Get(server.At("/"));
    RawServer silent;
    std::promise<void> scanned;
    Ref<test::Beside> scan;
    scan = MakeRef<test::Beside>([&] {
        for (int turn = 0; turn < 20; ++turn) scan->Sleep(1);
        scanned.set_value();
    });
    Beside([&] {
        silent.TakeRequest();
        scanned.get_future().wait();
        silent.Send("HTTP/1.0 200 OK\n\nthe page");
        silent.Close();
    });
    EXPECT_EQ(client->Get(silent.At("/"), 20), "the page");
    EXPECT_EQ(events, Lines()) << "other sockets' events come only with Yield";
    client->Yield = true;
    client->Get(silent.At("/"), 1);
    EXPECT_EQ(events, Lines{"Connected"});
    EXPECT_LT(desktop.turns, 2'000) << "the wait doesn't spin";
    EndBeside();
}

TEST_F(HTTPTest, TakesALargePageIntoAFileAndIntoAString) {
    // 100 MiB, each MiB with a byte value of its own.
    std::string page;
    page.reserve(100 << 20);
    for (int i = 0; i < 100; ++i) page.append(1 << 20, static_cast<char>('!' + i));
    const auto serve = [&] {
        server.TakeRequest();
        server.Send("HTTP/1.0 200 OK\r\n\r\n");
        server.Send(page);
        server.Close();
    };
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    [[maybe_unused]] const auto peak = usage.ru_maxrss;  // in KiB
    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), FolderItem::FromPath(folder / "file"), 60));
#if !defined(__SANITIZE_ADDRESS__)  // ASan keeps freed memory
    getrusage(RUSAGE_SELF, &usage);
    EXPECT_LT(usage.ru_maxrss - peak, 10 << 10);
#endif
    EXPECT_TRUE(BytesOf(folder / "file") == page);

    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), 60) == page);
    EndBeside();
}

TEST_F(HTTPTest, FindsTheEndOfALongHeadThatComesByteByByte) {
    // The processor time for the bytes that follow the first `length` bytes of a head.
    const auto cost_behind = [&](std::size_t length, const std::string& ending) {
        std::string head = "HTTP/1.0 200 OK" + ending;
        while (head.size() < length) head += "Name: value" + ending;
        client->Get(server.At("/"));
        TakeRequest();
        Beside([&] { server.Send(head); });
        ServeUntil([&] { return client->Lookahead().size() == head.size(); });
        EndBeside();
        const std::clock_t before = std::clock();
        for (int i = 0; i < 1'000; ++i) Answer("x");
        const std::clock_t cost = std::clock() - before;
        for (const char byte : ending + ending + "b") Answer(std::string(1, byte));
        EXPECT_EQ(events, (Lines{"Connected", "ReceiveProgress 0 0 ", "ReceiveProgress 1 0 b"}));
        events.clear();
        return static_cast<double>(cost);
    };
    client->HeadersReceived = nullptr;
    for (const std::string ending : {"\r\n", "\n", "\r"}) {
        const double of_short = cost_behind(1 << 10, ending);
        const double of_long = cost_behind(1 << 20, ending);

        EXPECT_LT(of_long, 4 * of_short) << "the cost of a byte doesn't grow with the head";
    }
}

}  // namespace varnith::test

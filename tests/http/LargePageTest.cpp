#include <ctime>

#include <sys/resource.h>

#include "http/support/HTTPTest.h"

namespace varnith::test {

TEST_F(HTTPTest, TakesALargePageIntoAFileAndIntoAString) {
    // 100 MiB, whose pieces tell where they belong.
    std::string page;
    page.reserve(100 << 20);
    for (int i = 0; i < 100; ++i) page.append(1 << 20, static_cast<char>('!' + i));
    const auto serve = [&] {
        server.TakeRequest();
        server.Send("HTTP/1.0 200 OK\r\n\r\n");
        server.Send(page);
        server.Close();
    };
    const auto peak_memory = [] {
        rusage usage;
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;  // in KiB
    };
    [[maybe_unused]] const auto memory = peak_memory();
    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), FolderItem::FromPath(folder / "file"), 60));
#if !defined(__SANITIZE_ADDRESS__)  // which holds back what is freed
    EXPECT_LT(peak_memory() - memory, 10 << 10);
#endif
    EXPECT_TRUE(BytesOf(folder / "file") == page);

    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), 60) == page);
}

TEST_F(HTTPTest, FindsTheEndOfALongHeadThatComesByteByByte) {
    client->HeadersReceived = nullptr;
    client->PageReceived = nullptr;
    for (const std::string ending : {"\r\n", "\n", "\r"}) {
        std::string head = "HTTP/1.0 200 OK" + ending;
        while (head.size() < 1 << 20) head += "Name: value" + ending;
        client->Get(server.At("/"));
        TakeRequest();
        Beside([&] { server.Send(head); });
        PumpUntil([&] { return client->Lookahead().size() == head.size(); });
        const std::clock_t before = std::clock();
        for (const char byte : std::string(1 << 11, 'x') + ending + ending + "body")
            Answer(std::string(1, byte));
        EXPECT_LT(std::clock() - before, 3 * CLOCKS_PER_SEC)
            << "a byte costs as much as the head is long, or a header as there are of its name";
        EXPECT_EQ(events, (Lines{"Connected", "ReceiveProgress 0 0 ", "ReceiveProgress 1 0 b",
                                 "ReceiveProgress 2 0 o", "ReceiveProgress 3 0 d", "ReceiveProgress 4 0 y"}));
        events.clear();
    }
}

}  // namespace varnith::test

#include <algorithm>

#include <sys/resource.h>

#include "http/support/HTTPTest.h"

namespace varnith::test {

using SizeTest = HTTPTest;

std::int64_t PeakMemory() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} << 10;
}

TEST_F(SizeTest, TakesALargePageIntoAFileAndIntoAString) {
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
    [[maybe_unused]] const std::int64_t memory = PeakMemory();
    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), FolderItem::FromPath(folder / "file"), 60));
#if !defined(__SANITIZE_ADDRESS__)  // which holds back what is freed
    EXPECT_LT(PeakMemory() - memory, 10 << 20);
#endif
    EXPECT_TRUE(BytesOf(folder / "file") == page);

    const double time = ProcessorSeconds();
    Beside(serve);
    EXPECT_TRUE(client->Get(server.At("/"), 60) == page);
    EXPECT_LT(ProcessorSeconds() - time, 10) << "each pass costs as much as the page is long";
}

TEST_F(SizeTest, TakesALongHeadByteByByte) {
    constexpr std::size_t Part = 1 << 15;
    client->Get(server.At("/"));
    TakeRequest();
    std::string head = "HTTP/1.0 200 OK\r\n";
    while (head.size() < 1 << 20) head += "Name: value\r\n";
    const auto send_byte_by_byte = [&](std::size_t from) {
        const double before = ProcessorSeconds();
        for (std::size_t end = from + Part; from < end; ++from) Answer({head.substr(from, 1)});
        return ProcessorSeconds() - before;
    };
    const double first = send_byte_by_byte(0);
    for (std::size_t from = Part; from < head.size() - Part; from += Part)
        Answer({head.substr(from, std::min(Part, head.size() - Part - from))});
    EXPECT_LT(send_byte_by_byte(head.size() - Part), 4 * first) << "a byte costs as much as the head is long";
    EXPECT_EQ(events, Lines{"Connected"});
    const double before = ProcessorSeconds();
    server.Send("\r\n");
    PumpUntil([&] { return client->HTTPStatusCode() == 200; });
    EXPECT_LT(ProcessorSeconds() - before, 5) << "a header costs as much as there are of its name";
    EXPECT_GT(client->PageHeaders()->NameCount("name"), 80'000);
}

}  // namespace varnith::test

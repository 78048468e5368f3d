#include <fstream>
#include <sstream>
#include <thread>

#include <sys/resource.h>

#include "http/support/HTTPTest.h"

namespace varnith::test {

namespace {

// A page of 100 MiB, sent by a server once. Each piece of it is of another letter than the one before.
struct LargePage : std::jthread {
    explicit LargePage(RawServer& server)
        : jthread([&server] {
              server.TakeRequest();
              server.Send("HTTP/1.0 200 OK\r\n\r\n");
              for (int i = 0; i < Pieces; ++i) server.Send(Piece(i));
              server.Close();
          }) {}

    // Whether a page that is read to its end is this one.
    static bool IsIn(std::istream&& page) {
        std::string piece = Piece(0);
        for (int i = 0; i < Pieces; ++i)
            if (!page.read(piece.data(), std::ssize(piece)) || piece != Piece(i)) return false;
        return page.get() == std::char_traits<char>::eof();
    }

    static constexpr int Pieces = 100;
    static std::string Piece(int number) {
        return std::string(1 << 20, static_cast<char>('a' + number % 26));
    }
};

std::int64_t PeakMemory() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} << 10;
}

using SizeTest = HTTPTest;

TEST_F(SizeTest, StreamsALargePageIntoAFile) {
    [[maybe_unused]] const std::int64_t before = PeakMemory();
    const LargePage page(server);
    EXPECT_TRUE(client->Get(server.At("/"), FolderItem::FromPath(folder / "file"), 60));
#if !defined(__SANITIZE_ADDRESS__)  // which holds back what is freed
    EXPECT_LT(PeakMemory() - before, 10 << 20);
#endif
    EXPECT_TRUE(LargePage::IsIn(std::ifstream(folder / "file", std::ios::binary)));
}

TEST_F(SizeTest, KeepsALargePageInMemory) {
    const double before = ProcessorSeconds();
    const LargePage page(server);
    EXPECT_TRUE(LargePage::IsIn(std::istringstream(client->Get(server.At("/"), 60))));
    EXPECT_LT(ProcessorSeconds() - before, 10) << "each pass costs as much as the page is long";
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
    EXPECT_LT(ProcessorSeconds() - before, 10) << "a header costs as much as there are of its name";
    EXPECT_GT(client->PageHeaders()->NameCount("name"), 80'000);
}

}  // namespace

}  // namespace varnith::test

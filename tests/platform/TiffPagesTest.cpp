#include <algorithm>
#include <cstring>
#include <optional>
#include <random>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "helpers/CountByLibtiff.h"
#include "helpers/TemporaryFolder.h"
#include "platform/files/FileSystem.h"
#include "platform/files/TiffPages.h"

namespace varnith::test {

namespace {

// A file in memory with replaceable content.
struct TiffPages : testing::Test {
    // Counts the pages of the bytes last given to CountOf.
    std::optional<std::int32_t> CountByLibtiff() const { return test::CountByLibtiff(file); }
    std::optional<std::int32_t> CountOf(const std::string& bytes) const {
        EXPECT_EQ(ftruncate(file.Descriptor(), 0), 0);
        EXPECT_EQ(pwrite(file.Descriptor(), bytes.data(), bytes.size(), 0), std::ssize(bytes));
        return CountPages(file);
    }

    const FileDescriptor file{memfd_create("pages", MFD_CLOEXEC)};
};

// A classic TIFF file with a chain of empty directories at these offsets, each leading to the next. A
// repeated offset closes a loop.
std::string ChainThrough(const std::vector<std::uint32_t>& places) {
    std::string bytes("II*\0", 4);
    const auto put = [&](std::size_t at, std::uint32_t place) {
        if (bytes.size() < at + sizeof place) bytes.resize(at + sizeof place, '\0');
        std::memcpy(&bytes[at], &place, sizeof place);
    };
    put(4, places.front());
    for (std::size_t i = 0; i + 1 < places.size(); ++i) put(places[i] + 2, places[i + 1]);
    return bytes;
}

// Changes a random place: it gets another byte, a small number or an offset, or the file ends there.
void Mutate(std::string& bytes, std::mt19937& random) {
    const std::size_t place = random() % bytes.size();
    const auto other = static_cast<std::uint32_t>(random() % (bytes.size() + 8));
    const auto kind = random() % 5;
    if (kind == 0)
        bytes[place] = static_cast<char>(random());
    else if (kind == 1)
        bytes[place] = static_cast<char>(random() % 4);
    else if (kind == 2)
        bytes.replace(place, sizeof other, reinterpret_cast<const char*>(&other), sizeof other);
    else if (kind == 3)
        bytes.resize(place + 1);
    else
        bytes.replace(place % 16, 1, 1, static_cast<char>(random() % 64));
}

}  // namespace

TEST_F(TiffPages, AreAsManyAsLibtiffCountsWhateverTheDamage) {
    std::vector<std::string> whole;
    for (const char* mode : {"wl", "wb", "wl8", "wb8"})
        for (const int pages : {1, 2, 7}) whole.push_back(TiffBytes(pages, mode));
    whole.push_back("EP" + whole.front().substr(2));
    for (const std::vector<std::uint32_t>& places : {std::vector<std::uint32_t>{8, 8},
                                                     {20, 8, 14, 0},
                                                     {50, 40, 30, 20, 30},
                                                     {8, 30, 20, 14, 40, 8},
                                                     {14, 8, 20, 30, 36, 26, 42, 26}})
        whole.push_back(ChainThrough(places));
    for (const std::string& bytes : whole) {
        const auto pages = CountOf(bytes);
        EXPECT_EQ(pages, CountByLibtiff());
    }
    for (const char* none : {"", "II", "II*\0\x8\0\0", "MM\0+\0\x8\0\0\0\0\0\0\0\0\0", "PK\3\4"})
        EXPECT_EQ(CountOf(none), std::nullopt);

    std::mt19937 random(20);
    for (int i = 0; i < 100'000; ++i) {
        std::string bytes = whole[random() % whole.size()];
        for (unsigned times = random() % 4 + 1; times > 0; --times) Mutate(bytes, random);
        const auto pages = CountOf(bytes);
        ASSERT_EQ(pages, CountByLibtiff()) << "mutation " << i;
    }
}

TEST_F(TiffPages, EndAtTheLimitAndWhereALongChainGoesRound) {
    std::vector<std::uint32_t> places;
    for (std::uint32_t place = 8; places.size() < (1 << 20) + 5; place += 6) places.push_back(place);
    EXPECT_EQ(CountOf(ChainThrough(places)), 1 << 20);
    places.resize(200'000);
    std::reverse(places.begin(), places.end());
    EXPECT_EQ(CountOf(ChainThrough(places)), 200'000);
    places.push_back(places[150'000]);
    EXPECT_EQ(CountOf(ChainThrough(places)), 200'000);
}

}  // namespace varnith::test

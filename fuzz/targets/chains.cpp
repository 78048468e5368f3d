#include <cassert>
#include <cstring>
#include <ctime>

#include <fuzzer/FuzzedDataProvider.h>

#include "MemoryFile.h"
#include "platform/files/TiffPages.h"

// The directories of a file of 1 MB are counted in a second of processor time, in whatever order they follow
// each other and wherever the last one leads back to. Each has the least size, six bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint32_t Most = 174'763;  // a prime, so that each stride passes all places
    FuzzedDataProvider input(data, size);
    const auto count = input.ConsumeIntegralInRange<std::uint32_t>(1, Most);
    const auto back = input.ConsumeIntegralInRange<std::uint32_t>(0, count);  // `count` makes it the end
    const auto stride = input.ConsumeIntegralInRange<std::uint64_t>(1, Most - 1);
    std::vector<std::uint32_t> places(count + 1, 0);
    for (std::uint64_t i = 0; i < count; ++i)
        places[i] = static_cast<std::uint32_t>(8 + i * stride % Most * 6);
    std::string bytes = std::string("II*\0\x08", 5) + std::string(3 + Most * 6, 0);
    for (std::uint32_t i = 0; i < count; ++i)
        std::memcpy(&bytes[places[i] + 2], &places[i + 1 < count ? i + 1 : back], sizeof places[i]);
    const varnith::FileDescriptor& file = varnith::MemoryFile(bytes);
    const std::clock_t before = std::clock();
    assert(varnith::CountPages(file) == static_cast<std::int32_t>(count));
    assert(std::clock() - before < CLOCKS_PER_SEC);
    return 0;
}

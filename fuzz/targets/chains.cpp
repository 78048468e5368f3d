#include <cassert>
#include <cstring>
#include <ctime>

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include "platform/base/FileDescriptor.h"
#include "platform/files/TiffPages.h"

// The directories of a file of 1 MB are counted in a second of processor time, in whatever order they follow
// each other and wherever the last one leads back to. Each has the least size, six bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint32_t Most = 174'763;  // a prime, so that each stride passes all places
    FuzzedDataProvider input(data, size);
    const auto count = input.ConsumeIntegralInRange<std::uint32_t>(1, Most);
    const auto back = input.ConsumeIntegralInRange<std::uint32_t>(0, count);  // `count` makes it the end
    const auto stride = input.ConsumeIntegralInRange<std::uint64_t>(1, Most - 1);
    const auto place = [&](std::uint64_t i) { return static_cast<std::uint32_t>(8 + i * stride % Most * 6); };
    std::string bytes(8 + Most * 6, 0);
    bytes.replace(0, 5, "II*\0\x08", 5);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t next = i + 1 < count ? place(i + 1) : back < count ? place(back) : 0;
        std::memcpy(&bytes[place(i) + 2], &next, sizeof next);
    }
    static const varnith::FileDescriptor file(memfd_create("chains", MFD_CLOEXEC));
    if (pwrite(file.Descriptor(), bytes.data(), bytes.size(), 0) != std::ssize(bytes)) return -1;
    const std::clock_t before = std::clock();
    assert(varnith::CountPages(file) == static_cast<std::int32_t>(count));
    assert(std::clock() - before < CLOCKS_PER_SEC);
    return 0;
}

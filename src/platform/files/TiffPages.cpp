#include "platform/files/TiffPages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace varnith {

namespace {

// As many as libtiff, by which most other programs count, follows.
constexpr std::int32_t MostPages = 1 << 20;

// The bytes of a file through a small window, which one read fills. The directories of a small file all lie
// in one window. Of a large file only what lies around its directories is read.
class Window {
  public:
    explicit Window(const FileDescriptor& file) : file_(file) {}

    // The number at an offset, in the byte order that was set; nothing where the file has no such bytes.
    template <class Number>
    std::optional<Number> At(std::uint64_t offset) {
        std::array<unsigned char, sizeof(Number)> bytes;
        if (!Holds(offset, bytes.size())) Fill(offset);
        if (!Holds(offset, bytes.size())) return std::nullopt;
        std::memcpy(bytes.data(), &window_[static_cast<std::size_t>(offset - start_)], bytes.size());
        if (swapped_) std::reverse(bytes.begin(), bytes.end());
        return std::bit_cast<Number>(bytes);
    }

    void SetOrder(std::endian order) { swapped_ = order != std::endian::native; }

  private:
    bool Holds(std::uint64_t offset, std::size_t size) const {
        return offset >= start_ && offset - start_ <= filled_ && filled_ - (offset - start_) >= size;
    }

    // One read brings as much as there is, but for a disk that gives less than a number at a time.
    void Fill(std::uint64_t offset) {
        start_ = offset;
        filled_ = 0;
        std::size_t count = 1;
        while (count > 0 && filled_ < LargestNumber) {
            count = FileSystem::Current().ReadAt(file_, window_.data() + filled_, window_.size() - filled_,
                                                 start_ + filled_);
            filled_ += count;
        }
    }

    static constexpr std::size_t LargestNumber = sizeof(std::uint64_t);

    const FileDescriptor& file_;
    bool swapped_ = false;
    std::uint64_t start_ = 0;
    std::size_t filled_ = 0;
    std::array<unsigned char, 1024> window_;
};

// The chain of a file's directories. A directory is a count of entries, the entries, and the offset of the
// next directory, 0 in the last. BigTIFF has wider counts, entries and offsets.
class Chain {
  public:
    explicit Chain(const FileDescriptor& file) : window_(file) {}

    // Reads the header. False if it is none of a TIFF file.
    bool Begin() {
        const auto order = window_.At<std::uint16_t>(0);
        if (!order || !SetOrder(*order)) return false;
        const auto version = window_.At<std::uint16_t>(2);
        is_big_ = version == BigVersion;
        const auto first = is_big_                     ? BigStart()
                           : version == ClassicVersion ? Widened(window_.At<std::uint32_t>(4))
                                                       : std::nullopt;
        if (first) first_ = *first;
        return first.has_value();
    }

    std::uint64_t First() const { return first_; }

    // The offset of the directory after one, 0 after the last; nothing for a directory that can't be read.
    std::optional<std::uint64_t> After(std::uint64_t directory) {
        if (directory > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
        if (!is_big_) {
            const auto entries = window_.At<std::uint16_t>(directory);
            if (!entries) return std::nullopt;
            return Widened(window_.At<std::uint32_t>(directory + 2 + std::uint64_t{*entries} * 12));
        }
        const auto entries = window_.At<std::uint64_t>(directory);
        if (!entries || *entries > UINT16_MAX) return std::nullopt;
        return window_.At<std::uint64_t>(directory + 8 + *entries * 20);
    }

  private:
    static constexpr std::uint16_t ClassicVersion = 42;
    static constexpr std::uint16_t BigVersion = 43;

    // "EP" marks a kind of scanner's files that are little-endian TIFF but for this mark.
    bool SetOrder(std::uint16_t mark) {
        std::array<char, 2> letters;
        std::memcpy(letters.data(), &mark, letters.size());
        const std::string_view text(letters.data(), letters.size());
        window_.SetOrder(text == "MM" ? std::endian::big : std::endian::little);
        return text == "II" || text == "MM" || text == "EP";
    }

    // The header tells the size of an offset, which is always 8, and then holds two bytes of 0.
    std::optional<std::uint64_t> BigStart() {
        if (window_.At<std::uint16_t>(4) != 8 || window_.At<std::uint16_t>(6) != 0) return std::nullopt;
        return window_.At<std::uint64_t>(8);
    }

    static std::optional<std::uint64_t> Widened(std::optional<std::uint32_t> number) {
        return number ? std::optional<std::uint64_t>(*number) : std::nullopt;
    }

    Window window_;
    bool is_big_ = false;
    std::uint64_t first_ = 0;
};

// The number of directories of a chain that is known to lead back to one of its own, given the number of
// those that the round has. One place that is a round ahead of another meets it where the round begins.
std::int32_t CountWithRound(Chain& chain, std::int32_t round) {
    std::uint64_t ahead = chain.First();
    for (std::int32_t step = 0; step < round; ++step) ahead = chain.After(ahead).value_or(0);
    std::int32_t before_round = 0;
    for (std::uint64_t place = chain.First(); place != ahead; ++before_round) {
        place = chain.After(place).value_or(0);
        ahead = chain.After(ahead).value_or(0);
    }
    return std::min(before_round + round, MostPages);
}

// Walks the chain to its end. A chain that never steps back can't lead back to itself. In one that does, a
// marker waits at the places 1, 2, 4, 8 and so on, and the walk meets it if it goes round (R. P. Brent, "An
// improved Monte Carlo factorization algorithm", 1980, section 2). A walk that has not met it after four
// times the limit has more directories than the limit.
std::int32_t Count(Chain& chain) {
    std::uint64_t place = chain.First();
    std::uint64_t marker = place;
    std::int32_t marked_at = 1;
    bool only_forward = true;
    for (std::int32_t pages = 0; place != 0; ++pages) {
        if (pages >= (only_forward ? MostPages : 4 * MostPages)) return MostPages;
        const auto next = chain.After(place);
        if (!next) return std::min(pages, MostPages);
        only_forward = only_forward && (*next > place || *next == 0);
        place = *next;
        if (place == 0) return std::min(pages + 1, MostPages);
        if (place == marker) return CountWithRound(chain, pages + 2 - marked_at);
        if (pages + 2 == 2 * marked_at) {
            marker = place;
            marked_at = pages + 2;
        }
    }
    return 0;
}

}  // namespace

std::optional<std::int32_t> CountPages(const FileDescriptor& file) {
    Chain chain(file);
    if (!chain.Begin()) return std::nullopt;
    return Count(chain);
}

}  // namespace varnith

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace varnith {

// A text in eight bytes, for what is held a million times. Up to seven bytes of text lie in the object
// itself. A longer text lies in a block of its own, which copies of the object share. "bench/run million"
// measures what it saves. The program runs on one thread, so a block counts its users by a plain number.
class PackedText {
  public:
    PackedText() = default;
    explicit PackedText(std::string_view text);
    PackedText(const PackedText& other);
    PackedText(PackedText&& other) noexcept : word_(std::exchange(other.word_, Empty)) {}
    PackedText& operator=(PackedText other) noexcept {
        std::swap(word_, other.word_);
        return *this;
    }
    ~PackedText();

    // The text itself. A short one is written into the buffer first, so the view is valid as long as both.
    using Buffer = std::array<char, 8>;
    std::string_view View(Buffer& buffer) const;

    std::string Text() const {
        Buffer buffer;
        return std::string(View(buffer));
    }

  private:
    struct Block;

    // An odd word holds its text: the lowest byte is twice the length and one, the other bytes are the text
    // from the lower to the higher. An even word is the address of a block.
    static constexpr std::uint64_t Empty = 1;

    Block* Shared() const;

    std::uint64_t word_ = Empty;
};

}  // namespace varnith

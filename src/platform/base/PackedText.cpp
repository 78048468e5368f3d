#include "platform/base/PackedText.h"

#include <cstring>
#include <new>

namespace varnith {

// The bytes of the text follow it.
struct PackedText::Block {
    std::uint32_t users;
    std::uint32_t length;

    char* Bytes() { return reinterpret_cast<char*>(this + 1); }
};

PackedText::PackedText(std::string_view text) {
    constexpr std::size_t MostInPlace = 7;
    if (text.size() <= MostInPlace) {
        word_ = text.size() * 2 + 1;
        for (std::size_t i = 0; i < text.size(); ++i)
            word_ |= std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * (i + 1));
        return;
    }
    auto* block =
        new (::operator new(sizeof(Block) + text.size())) Block{1, static_cast<std::uint32_t>(text.size())};
    std::memcpy(block->Bytes(), text.data(), text.size());
    word_ = reinterpret_cast<std::uintptr_t>(block);
}

PackedText::PackedText(const PackedText& other) : word_(other.word_) {
    if (Block* block = Shared()) ++block->users;
}

PackedText::~PackedText() {
    Block* block = Shared();
    if (block && --block->users == 0) ::operator delete(block);
}

PackedText::Block* PackedText::Shared() const {
    return word_ % 2 == 0 ? reinterpret_cast<Block*>(static_cast<std::uintptr_t>(word_)) : nullptr;
}

std::string_view PackedText::View(Buffer& buffer) const {
    if (Block* block = Shared()) return {block->Bytes(), block->length};
    const std::size_t length = (word_ & 0xFF) / 2;
    for (std::size_t i = 0; i < length; ++i) buffer[i] = static_cast<char>(word_ >> (8 * (i + 1)));
    return {buffer.data(), length};
}

}  // namespace varnith

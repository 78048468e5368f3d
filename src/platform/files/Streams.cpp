#include "platform/files/Streams.h"

namespace varnith {

namespace {
constexpr std::size_t PieceSize = 64 << 10;
}

void OutputFile::Write(std::string_view bytes) {
    waiting_ += bytes;
    if (waiting_.size() >= PieceSize) Flush();
}

void OutputFile::Flush() {
    if (file_) FileSystem::Current().Write(file_, waiting_);
    waiting_.clear();
}

void OutputFile::Close() {
    Flush();
    file_ = {};
}

void TextOutputStream::WriteLine(std::string_view text) {
    file_.Write(text);
    file_.Write("\n");
}

}  // namespace varnith

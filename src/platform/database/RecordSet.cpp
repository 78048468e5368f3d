#include "platform/database/RecordSet.h"

#include <algorithm>
#include <cstring>

#include "platform/base/Text.h"

namespace varnith {

namespace {
using Length = std::uint32_t;
constexpr std::size_t PieceSize = 1 << 20;
}  // namespace

void RecordSet::MoveNext() {
    if (Eof()) return;
    ++row_;
    if (Eof())
        Close();
    else
        ReadRow();
}

std::string RecordSet::IdxField(std::int32_t position) const {
    if (position < 1 || static_cast<std::size_t>(position) > columns_.size()) throw NilObjectException();
    return Eof() ? "" : std::string(fields_[static_cast<std::size_t>(position) - 1]);
}

std::string RecordSet::Field(const std::string& name) const {
    const auto column = std::find_if(columns_.begin(), columns_.end(),
                                     [&](const std::string& candidate) { return SameText(candidate, name); });
    return IdxField(static_cast<std::int32_t>(column - columns_.begin()) + 1);
}

void RecordSet::Close() {
    pieces_.clear();
    fields_.clear();
    row_ = record_count_;
}

// A row never spans two pieces, so that ReadRow can return views of its fields.
void RecordSet::AddRow() {
    if (pieces_.empty() || pieces_.back().size() >= PieceSize) {
        pieces_.emplace_back();
        pieces_.back().reserve(PieceSize + PieceSize / 16);
    }
    ++record_count_;
}

void RecordSet::AddField(std::string_view text) {
    const auto length = static_cast<Length>(text.size());
    pieces_.back().append(reinterpret_cast<const char*>(&length), sizeof length).append(text);
}

void RecordSet::ReadRow() {
    fields_.clear();
    if (Eof()) return;
    if (next_ == pieces_.front().size()) {
        pieces_.pop_front();
        next_ = 0;
    }
    const std::string_view piece = pieces_.front();
    while (fields_.size() < columns_.size()) {
        Length length;
        std::memcpy(&length, piece.data() + next_, sizeof length);
        fields_.push_back(piece.substr(next_ + sizeof length, length));
        next_ += sizeof length + length;
    }
}

}  // namespace varnith

#include "platform/ui/EditField.h"

#include "platform/base/Text.h"

namespace varnith {

void EditField::Select(std::int32_t start, std::int32_t length) {
    sel_start_ = start;
    sel_length_ = length;
}

void EditField::SetSelText(const std::string& text) {
    const std::string inserted = WithLines(text);
    SetText(Mid(text_, 1, sel_start_) + inserted + Mid(text_, sel_start_ + sel_length_ + 1));
    Select(sel_start_ + Len(inserted), 0);
    // SetText marks nothing if the text is the same, but the selection may have changed.
    MarkChanged();
}

// A field of one line keeps the text as it is: a path may contain line breaks.
std::string EditField::WithLines(const std::string& text) const {
    return multi_line_ ? ReplaceAll(ReplaceAll(text, "\r\n", "\r"), "\n", "\r") : text;
}

}  // namespace varnith

#pragma once

#include <string>
#include <utility>

#include "platform/base/Ref.h"

namespace varnith {

// The result of a search.
class RegExMatch : public RefCounted {
  public:
    explicit RegExMatch(std::string text) : text_(std::move(text)) {}

    // The part of the text that matches the pattern.
    const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

// A regular expression in Perl's syntax (https://www.pcre.org/current/doc/html/pcre2pattern.html). It ignores
// case and is not anchored. Bytes of the text that are no valid UTF-8 match nothing.
class RegEx : public RefCounted {
  public:
    std::string SearchPattern;

    // The first match in a text, nil if there is none. Also nil if the search is given up: when it exceeds a
    // limit of steps at one position or of memory, since a text can be made to keep the program busy without
    // end; and for a long text if PCRE2's just-in-time compiler is not available. Raises
    // RegExSearchPatternException if the pattern is invalid, OutOfMemoryException if memory runs out.
    Ref<RegExMatch> Search(const std::string& text) const;
};

}  // namespace varnith

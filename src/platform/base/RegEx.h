#pragma once

#include <string>
#include <utility>

#include "platform/base/Ref.h"

namespace varnith {

// What a search has found.
class RegExMatch : public RefCounted {
  public:
    explicit RegExMatch(std::string text) : text_(std::move(text)) {}

    // The part of the searched text that the pattern matches.
    const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

// A search by a regular expression in Perl's syntax
// (https://www.pcre.org/current/doc/html/pcre2pattern.html). Case is ignored and the pattern isn't anchored.
// Bytes of the text that are no UTF-8 match nothing.
class RegEx : public RefCounted {
  public:
    std::string SearchPattern;

    // The first match, nil if there is none. A search that takes too many steps from one place is given up
    // and finds nothing: a text made for that would keep the program busy for hours. A long run of letters
    // and the like is no such text. Where the system lets no program make code to run, a long text is not
    // searched. Raises RegExSearchPatternException if the pattern is none.
    Ref<RegExMatch> Search(const std::string& text) const;
};

}  // namespace varnith

#pragma once

#include <cstdint>
#include <string>

#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"

namespace varnith {

// The headers of a message (RFC 1945, section 4.2). A name keeps its spelling and is compared without regard
// to case. A name may occur more than once; its occurrences are numbered from 0. Indices run over all
// headers, from 0, in the order in which the headers were added. A header that Delete renumbers moves to the
// end.
//
// The dictionary holds the first header of a name under the name, and each further one under the name, ":"
// and its number. AppendHeader and Delete leave no gap in the numbers of a name. NameCount stops at a gap.
class InternetHeaders : public RefCounted {
  public:
    InternetHeaders();

    // The number of headers. Each occurrence of a name counts.
    virtual std::int32_t Count() const;

    // The name of the header at an index. Raises OutOfBoundsException if there is none; Value returns an
    // empty text for an index that is too great.
    virtual std::string Name(std::int32_t index) const;

    // The number of headers of that name.
    virtual std::int32_t NameCount(const std::string& name) const;

    // The text that was parsed last, even if the headers have changed since. If none was, the result of
    // _FormatHTTPHeaders.
    virtual std::string Source() const;

    // The value of the first header of a name, or of the occurrence with a number. A number below 0 counts
    // as 0. Empty if there is no such header.
    virtual std::string Value(const std::string& name) const;
    virtual std::string Value(const std::string& name, std::int32_t number) const;

    // Replaces all headers with those of a text, whose lines end as _DetermineEOLCharacter says. A line that
    // begins with a blank or a tab continues the line before it. A line without ":" is skipped.
    virtual void _ParseHeaders(const std::string& text);

    // Adds a header as the last occurrence of its name.
    virtual void AppendHeader(const std::string& name, const std::string& value);

    // Makes this the only header of its name.
    virtual void SetHeader(const std::string& name, const std::string& value);

    // Removes all headers of a name, or the occurrence with a number; the later ones are renumbered. Nothing
    // happens if there is no such header.
    virtual void Delete(const std::string& name);
    virtual void Delete(const std::string& name, std::int32_t number);

    // All values of a name, joined by ", ".
    virtual std::string CommaSeparatedValues(const std::string& name) const;

    // The value of the header at an index. Empty from Count() on; raises OutOfBoundsException below 0.
    virtual std::string Value(std::int32_t index) const;

    // The line ending of a text: the first of CRLF, LF and CR that occurs anywhere in it, CRLF if none does.
    virtual std::string _DetermineEOLCharacter(const std::string& text) const;

    // Sets the value of the occurrence with a number. If there is none, adds it under that number.
    // REQUIRES: number is at most NameCount(name), so that no gap arises.
    virtual void SetHeader(const std::string& name, const std::string& value, std::int32_t number);

    virtual void DeleteAllHeaders();

    // The headers for HTTP: lines "Name: value", separated by CRLF, without one at the end.
    virtual std::string _FormatHTTPHeaders() const;

    // The headers for mail (RFC 5322, sections 2.1.1 and 2.2.3): the same lines, but one of more than 78
    // bytes is folded before a blank, if there is one in its value. Nothing is encoded.
    virtual std::string _FormatEmailHeaders() const;

  private:
    static std::string Key(const std::string& name, std::int32_t number);
    static std::string NameOf(const std::string& key);
    std::string Formatted(std::string (*line_form)(std::string)) const;
    void Remove(const std::string& key);

    Ref<Dictionary<std::string>> _Headers;
    std::string _rawHeaders;
    // For each name, the greatest number that is known to be taken. From there AppendHeader looks for a free
    // one. A search from 1 would take quadratic time for a head that repeats one name.
    Dictionary<std::int32_t> taken_;
};

}  // namespace varnith

#pragma once

#include <cstdint>
#include <string>

#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"

namespace varnith {

// The headers of a message (RFC 1945, section 4.2), each with its name as it was spelled; names compare
// without case. A name may occur more than once: its occurrences count from 0. Indices count from 0 as well,
// in the order of the map: as the headers came, but those renumbered by a change stand last.
//
// The map holds the first header of a name under the name itself, and each further one under the name, ":"
// and its number. As long as headers come from AppendHeader the numbers run without a gap; Delete closes the
// gap that it makes. NameCount ends at a gap.
class InternetHeaders : public RefCounted {
  public:
    InternetHeaders();

    // The number of headers, each occurrence counted.
    virtual std::int32_t Count() const;

    // The name at an index. Raises OutOfBoundsException where there is none, unlike Value.
    virtual std::string Name(std::int32_t index) const;

    // The number of headers of that name.
    virtual std::int32_t NameCount(const std::string& name) const;

    // The text that was parsed last, whatever has changed since; without one, the block as on the wire.
    virtual std::string Source() const;

    // The value of the first header of a name, or of an occurrence of it, the first for a number below 1.
    // Empty if there is none.
    virtual std::string Value(const std::string& name) const;
    virtual std::string Value(const std::string& name, std::int32_t number) const;

    // Replaces the block by the headers of a text. Lines end in one way, that of _DetermineEOLCharacter. A
    // line without ":" is skipped, and one that begins with a blank or a tab continues the line before it.
    virtual void _ParseHeaders(const std::string& text);

    // Adds a header, behind those of its name.
    virtual void AppendHeader(const std::string& name, const std::string& value);

    // Makes this the only header of its name.
    virtual void SetHeader(const std::string& name, const std::string& value);

    // Removes the headers of a name, or one occurrence: those behind it move up.
    virtual void Delete(const std::string& name);
    virtual void Delete(const std::string& name, std::int32_t number);

    // The values of a name, joined by ", ".
    virtual std::string CommaSeparatedValues(const std::string& name) const;

    // The value at an index; empty past the last one.
    virtual std::string Value(std::int32_t index) const;

    // The line ending of a text: carriage return and line feed if they occur together anywhere, else line
    // feed or carriage return, whichever occurs, in this order. Without any it is the pair.
    virtual std::string _DetermineEOLCharacter(const std::string& text) const;

    // Sets the value of an occurrence of a name, and adds it under that number if there is none. The caller
    // sees to it that this leaves no gap.
    virtual void SetHeader(const std::string& name, const std::string& value, std::int32_t number);

    virtual void DeleteAllHeaders();

    // The block for the wire: lines "Name: value" with carriage return and line feed between them, none at
    // the end.
    virtual std::string _FormatHTTPHeaders() const;

    // The block in the form of mail headers (RFC 5322, sections 2.1.1 and 2.2.3): the same lines, but one
    // with over 78 characters is folded in front of a blank where it has one. Bytes stay as they are.
    virtual std::string _FormatEmailHeaders() const;

  private:
    static std::string Key(const std::string& name, std::int32_t number);
    static std::string NameOf(const std::string& key);
    std::string Formatted(std::string (*line_form)(std::string)) const;
    void Remove(const std::string& key);

    Ref<Dictionary<std::string>> _Headers;
    std::string _rawHeaders;
    // By name: numbers up to this one are known to be taken. It spares AppendHeader the search from 1, which
    // a head with a great many headers of one name would make long.
    Dictionary<std::int32_t> taken_;
};

}  // namespace varnith

#include "http/InternetHeaders.h"

#include <algorithm>

#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {

constexpr auto LineEnd = "\r\n";

std::string Folded(std::string line) {
    constexpr std::size_t MostCharacters = 78;
    std::size_t start = 0;
    // The search for a fold starts after the blank that follows the name. A fold at that blank would leave a
    // line with nothing but the name.
    std::size_t first_place = line.find(": ") + 2;
    while (line.size() - start > MostCharacters) {
        std::size_t place = line.rfind(' ', start + MostCharacters);
        if (place == line.npos || place < first_place) place = line.find(' ', first_place);
        if (place == line.npos) break;
        line.insert(place, LineEnd);
        start = place + 2;
        first_place = start + 1;
    }
    return line;
}

}  // namespace

InternetHeaders::InternetHeaders() : _Headers(MakeRef<Dictionary<std::string>>()) {}

std::string InternetHeaders::Key(const std::string& name, std::int32_t number) {
    return number == 0 ? name : name + ":" + Str(number);
}

std::string InternetHeaders::NameOf(const std::string& key) {
    return NthField(key, ":", 1);
}

std::int32_t InternetHeaders::Count() const {
    return _Headers->Count();
}

std::string InternetHeaders::Name(std::int32_t index) const {
    return NameOf(_Headers->Key(index));
}

std::int32_t InternetHeaders::NameCount(const std::string& name) const {
    std::int32_t count = 0;
    while (_Headers->HasKey(Key(name, count))) ++count;
    return count;
}

std::string InternetHeaders::Source() const {
    return _rawHeaders.empty() ? _FormatHTTPHeaders() : _rawHeaders;
}

std::string InternetHeaders::Value(const std::string& name) const {
    return Value(name, 0);
}

std::string InternetHeaders::Value(const std::string& name, std::int32_t number) const {
    return _Headers->Lookup(Key(name, std::max(number, 0)), "");
}

std::string InternetHeaders::Value(std::int32_t index) const {
    return index >= Count() ? "" : _Headers->Value(_Headers->Key(index));
}

std::string InternetHeaders::_DetermineEOLCharacter(const std::string& text) const {
    for (const char* ending : {"\r\n", "\n", "\r"})
        if (text.find(ending) != text.npos) return ending;
    return LineEnd;
}

void InternetHeaders::_ParseHeaders(const std::string& text) {
    _rawHeaders = text;
    const std::string ending = _DetermineEOLCharacter(text);
    _Headers = MakeRef<Dictionary<std::string>>();
    taken_.Clear();
    const std::string lines = ReplaceAll(ReplaceAll(text, ending + " ", " "), ending + "\t", " ");
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = std::min(lines.find(ending, start), lines.size());
        const std::string line = lines.substr(start, end - start);
        const std::size_t colon = line.find(':');
        if (colon != line.npos) AppendHeader(line.substr(0, colon), LTrim(line.substr(colon + 1)));
        start = end + ending.size();
        Yield();
    }
}

void InternetHeaders::AppendHeader(const std::string& name, const std::string& value) {
    std::string key = name;
    while (_Headers->HasKey(key)) {
        const std::int32_t number = taken_.Lookup(NameOf(key), 0) + 1;
        taken_.SetValue(NameOf(key), number);
        key = Key(NameOf(key), number);
        Yield();
    }
    _Headers->SetValue(key, value);
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value) {
    if (NameCount(name) > 1) Delete(name);
    _Headers->SetValue(name, value);
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value, std::int32_t number) {
    const std::string key = Key(name, number);
    if (_Headers->HasKey(key))
        _Headers->SetValue(key, value);
    else
        AppendHeader(key, value);
}

void InternetHeaders::Remove(const std::string& key) {
    _Headers->Remove(key);
    taken_.Clear();
}

void InternetHeaders::Delete(const std::string& name) {
    for (std::int32_t number = NameCount(name) - 1; number >= 0; --number) Remove(Key(name, number));
}

void InternetHeaders::Delete(const std::string& name, std::int32_t number) {
    if (!_Headers->HasKey(Key(name, number))) return;
    Remove(Key(name, number));
    for (std::string next; _Headers->HasKey(next = Key(name, number + 1)); ++number) {
        _Headers->SetValue(Key(name, number), _Headers->Value(next));
        Remove(next);
    }
}

void InternetHeaders::DeleteAllHeaders() {
    _Headers->Clear();
    taken_.Clear();
}

std::string InternetHeaders::CommaSeparatedValues(const std::string& name) const {
    std::string values;
    const std::int32_t count = NameCount(name);
    for (std::int32_t number = 0; number < count; ++number) {
        if (number > 0) values += ", ";
        values += Value(name, number);
        Yield();
    }
    return values;
}

std::string InternetHeaders::Formatted(std::string (*line_form)(std::string)) const {
    std::string block;
    for (std::int32_t i = 0; i < Count(); ++i) {
        if (i > 0) block += LineEnd;
        block += line_form(Name(i) + ": " + Value(i));
        Yield();
    }
    return block;
}

std::string InternetHeaders::_FormatHTTPHeaders() const {
    return Formatted([](std::string line) { return line; });
}

std::string InternetHeaders::_FormatEmailHeaders() const {
    return Formatted(Folded);
}

}  // namespace varnith

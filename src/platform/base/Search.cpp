#include <algorithm>
#include <optional>

#include "platform/base/Characters.h"
#include "platform/base/Text.h"

namespace varnith {

namespace {

struct Match {
    std::size_t start;
    std::size_t bytes;  // may differ from the length of the wanted text, as the cases of some letters do
};

// If the text begins with `what`, case ignored: the length in bytes of that beginning.
std::optional<std::size_t> MatchAtStart(std::string_view text, std::string_view what) {
    std::size_t bytes = 0;
    while (!what.empty()) {
        if (bytes == text.size()) return std::nullopt;
        const Character here = FirstCharacter(text.substr(bytes));
        const Character wanted = FirstCharacter(what);
        if (here.valid != wanted.valid || FoldedCode(here) != FoldedCode(wanted)) return std::nullopt;
        bytes += here.bytes;
        what.remove_prefix(wanted.bytes);
    }
    return bytes;
}

bool HasNoCase(std::string_view text) {
    return IsAscii(text) && std::none_of(text.begin(), text.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
           });
}

// The first occurrence at or after a byte, case ignored. An empty text occurs nowhere.
std::optional<Match> Find(std::string_view text, std::string_view what, std::size_t from) {
    if (what.empty()) return std::nullopt;
    if (HasNoCase(what)) {
        const std::size_t at = text.find(what, from);
        return at == text.npos ? std::nullopt : std::optional(Match{at, what.size()});
    }
    while (from < text.size()) {
        if (const auto bytes = MatchAtStart(text.substr(from), what)) return Match{from, *bytes};
        from += FirstCharacter(text.substr(from)).bytes;
    }
    return std::nullopt;
}

}  // namespace

std::int32_t CountFields(std::string_view text, std::string_view separator) {
    if (text.empty()) return 0;
    std::int32_t fields = 1;
    for (auto match = Find(text, separator, 0); match;
         match = Find(text, separator, match->start + match->bytes))
        ++fields;
    return fields;
}

std::string NthField(std::string_view text, std::string_view separator, std::int32_t n) {
    if (n < 1) return {};
    std::size_t start = 0;
    for (; n > 1; --n) {
        const auto match = Find(text, separator, start);
        if (!match) return {};
        start = match->start + match->bytes;
    }
    const auto end = Find(text, separator, start);
    return std::string(end ? text.substr(start, end->start - start) : text.substr(start));
}

std::int32_t InStr(std::string_view text, std::string_view what) {
    const auto match = Find(text, what, 0);
    return match ? Len(text.substr(0, match->start)) + 1 : 0;
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement) {
    std::string result;
    std::size_t done = 0;
    for (auto match = Find(text, what, 0); match; match = Find(text, what, done)) {
        result.append(text, done, match->start - done).append(replacement);
        done = match->start + match->bytes;
    }
    return result.append(text, done);
}

}  // namespace varnith

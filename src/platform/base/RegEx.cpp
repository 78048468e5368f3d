#include "platform/base/RegEx.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <array>
#include <cstdint>
#include <memory>

#include <pcre2.h>

#include "platform/base/Trace.h"

namespace varnith {

namespace {

// PCRE2 counts steps anew at each starting position, so this bounds the work for one character of the text.
constexpr std::uint32_t MostSteps = 2'000;
// The longest text in bytes for PCRE2's interpreter. Its work can grow with the square of the text's length,
// where code from the just-in-time compiler skips a run of characters at once. That compiler needs executable
// memory, which some systems refuse.
constexpr std::size_t MostInterpreted = 20'000;
constexpr std::uint32_t MostMemory = 64 << 10;  // KiB, for backtracking

template <class T>
using Owned = std::unique_ptr<T, void (*)(T*)>;

Owned<pcre2_code> Compiled(const std::string& pattern) {
    constexpr std::uint32_t Options = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_CASELESS;
    int error = 0;
    PCRE2_SIZE place = 0;
    Owned<pcre2_code> code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                         Options, &error, &place, nullptr),
                           pcre2_code_free);
    if (!code) throw RegExSearchPatternException();
    return code;
}

void TraceGivenUp(const std::string& pattern, int error) {
    if (!IsTracing()) return;
    std::array<PCRE2_UCHAR, 256> why{};
    pcre2_get_error_message(error, why.data(), why.size());
    TraceFailure("search for", pattern, reinterpret_cast<const char*>(why.data()));
}

}  // namespace

Ref<RegExMatch> RegEx::Search(const std::string& text) const {
    const auto code = Compiled(SearchPattern);
    const bool is_fast = pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE) == 0;
    if (!is_fast && text.size() > MostInterpreted) {
        TraceFailure("search for", SearchPattern, "the text is too long without the just-in-time compiler");
        return nullptr;
    }
    const Owned<pcre2_match_data> found(pcre2_match_data_create_from_pattern(code.get(), nullptr),
                                        pcre2_match_data_free);
    const Owned<pcre2_match_context> limits(pcre2_match_context_create(nullptr), pcre2_match_context_free);
    if (!found || !limits) throw OutOfMemoryException();
    pcre2_set_heap_limit(limits.get(), MostMemory);
    pcre2_set_match_limit(limits.get(), MostSteps);
    const int result = pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                                   found.get(), limits.get());
    if (result < 0) {
        if (result != PCRE2_ERROR_NOMATCH) TraceGivenUp(SearchPattern, result);
        return nullptr;
    }
    const PCRE2_SIZE* place = pcre2_get_ovector_pointer(found.get());
    return MakeRef<RegExMatch>(text.substr(place[0], place[1] - place[0]));
}

}  // namespace varnith

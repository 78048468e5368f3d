#include "platform/base/RegEx.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <cstdint>
#include <memory>

#include <pcre2.h>

namespace varnith {

namespace {

// PCRE2's own match limit counts the steps from one starting place only, and a run of characters as one step,
// so that a long text could cost its square. This one is told of each item of the pattern that is tried, and
// counts the whole search: a character passed over as 1, a trial by the time that it takes beside that.
class Effort {
  public:
    static int Count(pcre2_callout_block* tried, void* effort) {
        return static_cast<Effort*>(effort)->Add(tried->current_position);
    }

  private:
    static constexpr std::size_t Trial = 20;
    static constexpr std::size_t Most = 50'000'000;

    int Add(PCRE2_SIZE position) {
        sum_ += Trial + (position > position_ ? position - position_ : 0);
        position_ = position;
        return sum_ > Most ? PCRE2_ERROR_MATCHLIMIT : 0;
    }

    std::size_t sum_ = 0;
    PCRE2_SIZE position_ = 0;
};

constexpr std::uint32_t MostMemory = 64 << 10;  // KiB, for the places to which a search may have to go back

template <class T>
using Owned = std::unique_ptr<T, void (*)(T*)>;

Owned<pcre2_code> Compiled(const std::string& pattern) {
    constexpr std::uint32_t Options =
        PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_CASELESS | PCRE2_AUTO_CALLOUT;
    int error = 0;
    PCRE2_SIZE place = 0;
    Owned<pcre2_code> code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                         Options, &error, &place, nullptr),
                           pcre2_code_free);
    if (!code) throw RegExSearchPatternException();
    return code;
}

}  // namespace

Ref<RegExMatch> RegEx::Search(const std::string& text) const {
    const auto code = Compiled(SearchPattern);
    const Owned<pcre2_match_data> found(pcre2_match_data_create_from_pattern(code.get(), nullptr),
                                        pcre2_match_data_free);
    const Owned<pcre2_match_context> limits(pcre2_match_context_create(nullptr), pcre2_match_context_free);
    if (!found || !limits) throw OutOfMemoryException();
    Effort effort;
    pcre2_set_callout(limits.get(), Effort::Count, &effort);
    pcre2_set_heap_limit(limits.get(), MostMemory);
    pcre2_set_match_limit(limits.get(), UINT32_MAX);
    pcre2_set_depth_limit(limits.get(), UINT32_MAX);
    const int result = pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                                   found.get(), limits.get());
    if (result < 0) return nullptr;
    const PCRE2_SIZE* place = pcre2_get_ovector_pointer(found.get());
    return MakeRef<RegExMatch>(text.substr(place[0], place[1] - place[0]));
}

}  // namespace varnith

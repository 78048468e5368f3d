#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace varnith::test {

// Random numbers from a seed, the same with each library.
class Random {
  public:
    explicit Random(std::uint32_t seed) : numbers_(seed) {}

    int Below(int limit) { return static_cast<int>(numbers_() % static_cast<std::uint32_t>(limit)); }
    int Between(int first, int last) { return first + Below(last - first + 1); }
    bool OneIn(int many) { return Below(many) == 0; }
    template <class Range>
    const auto& Of(const Range& range) {
        return std::begin(range)[Below(static_cast<int>(std::size(range)))];
    }
    template <class Value>
    Value Of(std::initializer_list<Value> values) {
        return std::begin(values)[Below(static_cast<int>(values.size()))];
    }

  private:
    std::mt19937 numbers_;
};

}  // namespace varnith::test

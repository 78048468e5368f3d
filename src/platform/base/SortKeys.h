#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace varnith {

// The keys of elements to sort, computed once and stored in one string: so a key takes no allocation, and a
// comparison neither computes a key nor follows pointers. "bench/run rows" compares the sort with the bare
// std::stable_sort.
class SortKeys {
  public:
    // Expects that many elements.
    explicit SortKeys(std::size_t count) { starts_.reserve(count); }

    // Begins the key of the next element. Returns a string to which the caller appends the key, and does
    // nothing else.
    std::string& Next() {
        starts_.push_back(bytes_.size());
        return bytes_;
    }

    // The indices of the elements, from 0, in the order of their keys byte by byte. Equal ones keep their
    // order, in descending order too.
    std::vector<std::size_t> Order(bool descending = false) const;

  private:
    std::string bytes_;
    std::vector<std::size_t> starts_;  // of each key; it ends where the next one starts
};

}  // namespace varnith

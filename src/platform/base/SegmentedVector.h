#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace varnith {

// A growing array whose elements never move. It grows by segments of a fixed size, so an append never copies
// the elements. Against std::deque an append takes no longer and an access by index three quarters of the
// time ("bench/run rows").
// Indices are not checked: those from Size() on are undefined behaviour.
template <class T, std::size_t SegmentSize = 4096>
class SegmentedVector {
  public:
    std::size_t Size() const { return size_; }

    T& operator[](std::size_t index) { return segments_[index / SegmentSize][index % SegmentSize]; }
    const T& operator[](std::size_t index) const {
        return segments_[index / SegmentSize][index % SegmentSize];
    }

    // Appends a value-initialized element and returns it. The reference is valid until Clear.
    T& Append() {
        if (size_ == segments_.size() * SegmentSize) segments_.push_back(std::make_unique<T[]>(SegmentSize));
        return (*this)[size_++];
    }

    void Clear() {
        segments_.clear();
        size_ = 0;
    }

  private:
    std::vector<std::unique_ptr<T[]>> segments_;
    std::size_t size_ = 0;
};

}  // namespace varnith

#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/base/Exceptions.h"
#include "platform/base/Ref.h"
#include "platform/base/Text.h"

namespace varnith {

// A map with text keys that compare without regard to case. It keeps the spelling with which a key was first
// added, and the order in which the keys were added.
template <class T>
class Dictionary : public RefCounted {
  public:
    std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }

    bool HasKey(const std::string& key) const { return places_.contains(FoldCase(key)); }

    // The key at an index, from 0. Raises OutOfBoundsException if there is none.
    const std::string& Key(std::int32_t index) const {
        if (index < 0 || index >= Count()) throw OutOfBoundsException();
        return entries_[static_cast<std::size_t>(index)].first;
    }

    // The value of a key. Raises KeyNotFoundException if the key is missing.
    const T& Value(const std::string& key) const {
        const auto place = places_.find(FoldCase(key));
        if (place == places_.end()) throw KeyNotFoundException();
        return entries_[place->second].second;
    }

    // The value of a key, or `missing` if the key is missing.
    T Lookup(const std::string& key, T missing) const { return HasKey(key) ? Value(key) : missing; }

    // Adds a key with a value, or replaces the value of the key that exists.
    void SetValue(const std::string& key, T value) {
        const auto [place, added] = places_.try_emplace(FoldCase(key), entries_.size());
        if (added)
            entries_.emplace_back(key, std::move(value));
        else
            entries_[place->second].second = std::move(value);
    }

    // Removes a key and its value. Takes time in proportion to the number of keys. Raises
    // KeyNotFoundException if the key is missing.
    void Remove(const std::string& key) {
        const auto place = places_.find(FoldCase(key));
        if (place == places_.end()) throw KeyNotFoundException();
        const std::size_t gone = place->second;
        places_.erase(place);
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(gone));
        for (auto& [folded, later] : places_)
            if (later > gone) --later;
    }

    void Clear() {
        entries_.clear();
        places_.clear();
    }

  private:
    std::vector<std::pair<std::string, T>> entries_;
    std::unordered_map<std::string, std::size_t> places_;
};

}  // namespace varnith

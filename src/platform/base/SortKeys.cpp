#include "platform/base/SortKeys.h"

#include <algorithm>
#include <string_view>

namespace varnith {

std::vector<std::size_t> SortKeys::Order(bool descending) const {
    struct Key {
        std::string_view bytes;
        std::size_t place;
    };
    const std::string_view all = bytes_;
    std::vector<Key> keys;
    keys.reserve(starts_.size());
    for (std::size_t place = 0; place < starts_.size(); ++place) {
        const std::size_t end = place + 1 < starts_.size() ? starts_[place + 1] : all.size();
        keys.push_back({all.substr(starts_[place], end - starts_[place]), place});
    }
    std::stable_sort(keys.begin(), keys.end(), [descending](const Key& a, const Key& b) {
        return descending ? b.bytes < a.bytes : a.bytes < b.bytes;
    });
    std::vector<std::size_t> order;
    order.reserve(keys.size());
    for (const Key& key : keys) order.push_back(key.place);
    return order;
}

}  // namespace varnith

#include "platform/ui/Control.h"

namespace varnith {

void Control::Place(RefCounted& owner, const Bounds& bounds, const Locks& locks, std::int32_t tab_index) {
    owner_ = &owner;
    design_ = bounds;
    bounds_ = bounds;
    locks_ = locks;
    tab_index_ = tab_index;
}

void Control::FollowWindow(std::int32_t more_width, std::int32_t more_height) {
    Bounds bounds = design_;
    if (locks_.Right) (locks_.Left ? bounds.Width : bounds.Left) += more_width;
    if (locks_.Bottom) (locks_.Top ? bounds.Height : bounds.Top) += more_height;
    Set(bounds_, bounds);
}

}  // namespace varnith

#include "platform/qt/View.h"

#include <algorithm>

namespace varnith {

namespace {
// Thirty frames a second look smooth. More would only cost a scan time: each frame repaints the table.
constexpr qint64 FrameMilliseconds = 33;
}  // namespace

FrameClock::FrameClock() {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Flush(); });
    since_last_frame_.start();
}

void FrameClock::Add(View& view) {
    stale_.push_back(&view);
    if (timer_.isActive()) return;
    timer_.start(static_cast<int>(std::max<qint64>(0, FrameMilliseconds - since_last_frame_.elapsed())));
}

void FrameClock::Remove(View& view) {
    std::erase(stale_, &view);
}

void FrameClock::Flush() {
    timer_.stop();
    since_last_frame_.start();
    // An update may destroy other views. It may also make views stale again; those wait for the next frame.
    for (std::size_t count = stale_.size(); count > 0 && !stale_.empty(); --count) {
        View& view = *stale_.front();
        stale_.erase(stale_.begin());
        view.stale_ = false;
        view.Update();
    }
}

View::View(Observed& observed, FrameClock& clock) : observed_(observed), clock_(clock) {
    observed_.SetObserver(this);
}

View::~View() {
    observed_.SetObserver(nullptr);
    if (stale_) clock_.Remove(*this);
}

void View::Changed() {
    if (stale_) return;
    stale_ = true;
    clock_.Add(*this);
}

}  // namespace varnith

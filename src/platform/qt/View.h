#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <vector>

#include "platform/ui/Observed.h"

namespace varnith {

class View;

// Brings the stale views up to date, all together and at most once a frame. A scan changes the list and
// the title a hundred thousand times a second; the window system hears of it thirty times.
class FrameClock {
  public:
    FrameClock();

    void Add(View& view);
    void Remove(View& view);

    // Brings the stale views up to date at once.
    void Flush();

  private:
    std::vector<View*> stale_;
    QTimer timer_;
    QElapsedTimer since_last_frame_;
};

// The view of an Observed: reads its state anew in Update when it has changed. Watches it as long as it
// lives.
class View : public Observed::Observer {
  public:
    // REQUIRES: the clock and what is observed outlive the view.
    View(Observed& observed, FrameClock& clock);
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() override;

    void Changed() final;

    // Shows the state as it is now.
    virtual void Update() = 0;

  private:
    friend class FrameClock;
    Observed& observed_;
    FrameClock& clock_;
    bool stale_ = false;
};

}  // namespace varnith

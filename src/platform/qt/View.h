#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <vector>

#include "platform/ui/Observed.h"

namespace varnith {

class View;

// Updates the stale views together, at most once a frame. A scan changes the list and the title with every
// file, but the window system gets only one change a frame.
class FrameClock {
  public:
    FrameClock();

    // Registers a stale view for the next frame. The view isn't owned.
    void Add(View& view);
    void Remove(View& view);

    // Updates the stale views now.
    void Flush();

  private:
    std::vector<View*> stale_;
    QTimer timer_;
    QElapsedTimer since_last_frame_;
};

// Base class of the views. Observes an Observed for as long as it lives, and reads its state in Update after
// a change.
class View : public Observed::Observer {
  public:
    // REQUIRES: the clock and what is observed outlive the view.
    View(Observed& observed, FrameClock& clock);
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() override;

    // Marks the view as stale.
    void Changed() final;

    // Shows the current state.
    virtual void Update() = 0;

  private:
    friend class FrameClock;
    Observed& observed_;
    FrameClock& clock_;
    bool stale_ = false;
};

}  // namespace varnith

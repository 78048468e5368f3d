#pragma once

#include <utility>

namespace varnith {

// What has a view: a change of its state marks the view stale, and the view reads the state anew when the
// next frame is due. A change is cheap, however often it happens and whether anybody watches or not.
class Observed {
  public:
    class Observer {
      public:
        virtual ~Observer() = default;
        // The state has changed; comes at every change and must return at once, without asking for it.
        virtual void Changed() = 0;
    };

    Observed() = default;
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    // Sets who watches; null for nobody. The observer is not owned and has to take itself off in time.
    void SetObserver(Observer* observer) { observer_ = observer; }

  protected:
    ~Observed() = default;

    void MarkChanged() {
        if (observer_) observer_->Changed();
    }

    // Sets a property, and marks the view stale if its value is another one now.
    template <class T, class U>
    void Set(T& property, U&& value) {
        if (property == value) return;
        property = std::forward<U>(value);
        MarkChanged();
    }

  private:
    Observer* observer_ = nullptr;
};

}  // namespace varnith

#pragma once

#include <functional>
#include <limits>

namespace larkspan {

// Turns scroll events into single steps of the carousel. A swipe drifts a little and then makes one step at most,
// however far the fingers go; events after they have lifted are swallowed. A wheel makes at most one step in notchGap.
// Vertical scrolling is passed on. No clock and no toolkit: each event has its time.
class CarouselScroll
{
public:
    static constexpr double axisLock = 8.0;        // points to the side before a gesture is taken as horizontal
    static constexpr double commitDistance = 60.0; // points at which one step is committed
    static constexpr double driftLimit = 84.0;     // greatest drift that is reported, in points
    static constexpr double notchGap = 0.32;       // least seconds between two steps of a wheel
    static constexpr double leastNotch = 0.5;      // share of a notch that a wheel must turn at once

    enum class Phase { None, Began, Changed, Ended, Cancelled, Momentum };

    struct Event
    {
        Phase phase = Phase::None;
        // Positive when content is to move right and down. Points within a gesture; notches for a wheel (None).
        double deltaX = 0.0;
        double deltaY = 0.0;
        double seconds = 0.0;
    };

    // An event whose callback is missing is passed on.
    struct Callbacks
    {
        std::function<void(double offset)> onDrift;
        std::function<void(int direction)> onCommit; // +1 for the next card, -1 for the one before
        std::function<void()> onCancel;
    };

    explicit CarouselScroll(Callbacks callbacks) : m_callbacks(std::move(callbacks)) {}

    // Returns true for an event that is swallowed. The others are for other scrolling items.
    [[nodiscard]] bool handle(const Event &event);

private:
    void begin();
    [[nodiscard]] bool track(const Event &event);
    [[nodiscard]] bool end();
    [[nodiscard]] bool turnWheel(const Event &event);
    [[nodiscard]] bool hasDrifted() const { return m_engaged && !m_committed; }

    Callbacks m_callbacks;
    double m_travelX = 0.0;
    double m_travelY = 0.0;
    bool m_tracking = false;
    bool m_engaged = false;   // taken as horizontal
    bool m_committed = false; // the gesture's one step is spent
    double m_lastNotch = -std::numeric_limits<double>::infinity();
};

} // namespace larkspan

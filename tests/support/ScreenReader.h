#pragma once

namespace larkspan::test {

// Assistive technology that comes with this and goes with it. QAccessible::setActive alone only announces one: controls
// still hold it for absent then, and don't write their state.
class ScreenReader
{
public:
    ScreenReader();
    ~ScreenReader();
    ScreenReader(const ScreenReader &) = delete;
    ScreenReader &operator=(const ScreenReader &) = delete;
};

} // namespace larkspan::test

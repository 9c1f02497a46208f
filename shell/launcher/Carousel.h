#pragma once

#include <QtQml/qqmlregistration.h>

#include "shell/window/AppState.h"

namespace larkspan {

// Places and moves the launcher's carousel; the position itself is AppState's. Main thread.
class Carousel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::AppState *app MEMBER m_app REQUIRED)
    // True if the present move is to be animated. A drag isn't.
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY isAnimatedChanged)
    Q_PROPERTY(double cardStep READ cardStepOf CONSTANT)

public:
    static constexpr double cardStep = 656.0;      // points between the centres of neighbouring cards
    static constexpr double dragThreshold = 110.0; // points that a drag must exceed to move on
    static constexpr double beyondEnd = 0.3;       // share of a drift that is followed where there is no card

    using QObject::QObject;

    [[nodiscard]] bool isAnimated() const { return m_isAnimated; }
    [[nodiscard]] static double cardStepOf() { return cardStep; }

    // Moves by so many cards. Does nothing past either end.
    Q_INVOKABLE void step(int delta);
    Q_INVOKABLE void show(int index);
    // Follow a drag. translation: points from its start.
    Q_INVOKABLE void drag(double translation);
    Q_INVOKABLE void endDrag(double translation);
    Q_INVOKABLE void cancel();
    // Ends a swipe with a step. direction: +1 for the next card, -1 for the one before.
    Q_INVOKABLE void commit(int direction);

Q_SIGNALS:
    void isAnimatedChanged();

private:
    void setAnimated(bool animated);

    AppState *m_app = nullptr;
    bool m_isAnimated = true;
};

} // namespace larkspan

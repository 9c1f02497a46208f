#pragma once

#include <array>
#include <cstddef>

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The overlays above the screens: how far up they cover the window, and which of them Escape closes. Main thread.
class OverlayStack : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // The place of the topmost overlay that is shown; 0 without one. What is below is covered.
    Q_PROPERTY(int coveredUpTo READ coveredUpTo NOTIFY changed)
    // True while no other overlay is visible, not even one that fades. Only then does a card's offer, which appears by
    // itself, take keyboard focus.
    Q_PROPERTY(bool isCardOfferTopmost READ isCardOfferTopmost NOTIFY changed)
    // True while the editor writes in a text field, which then keeps keyboard focus.
    Q_PROPERTY(bool isWriting MEMBER m_isWriting NOTIFY changed)
    // True while the card's offer may take keyboard focus.
    Q_PROPERTY(bool cardOfferTakesFocus READ cardOfferTakesFocus NOTIFY changed)
    // Counts how often an overlay was opened or closed. A different count means that something else is on screen.
    Q_PROPERTY(int turns READ turns NOTIFY changed)

public:
    enum class Overlay {
        CardOffer,
        Preview,
        Coverage,
        Handoff,
        Preferences,
        FilePanel,
        ReplaceQuestion,
        CloseQuestion,
        WriteAlert,
    };
    Q_ENUM(Overlay)

    struct Look
    {
        bool isWanted = false;  // asked for; during the intro it may not be shown yet
        bool isShown = false;   // shown, and not on its way out
        bool isInSight = false; // shown, or fading

        friend bool operator==(const Look &, const Look &) = default;
    };

    using QObject::QObject;

    // Returns an overlay's place, which is its z. Those with one place are never open together.
    [[nodiscard]] Q_INVOKABLE static int placeOf(larkspan::OverlayStack::Overlay overlay);
    Q_INVOKABLE void put(larkspan::OverlayStack::Overlay overlay, bool isWanted, bool isShown, bool isInSight);
    // Has one wanted overlay dismissed: the preview before Preferences, and both before the overlays below them.
    Q_INVOKABLE void closeTopmost();

    [[nodiscard]] int coveredUpTo() const;
    [[nodiscard]] bool isCardOfferTopmost() const;
    [[nodiscard]] bool cardOfferTakesFocus() const { return isCardOfferTopmost() && !m_isWriting; }
    [[nodiscard]] int turns() const { return m_turns; }

Q_SIGNALS:
    void changed();
    // The overlay's owner is to close it.
    void dismissed(larkspan::OverlayStack::Overlay overlay);

private:
    static constexpr std::size_t count = static_cast<std::size_t>(Overlay::WriteAlert) + 1;

    std::array<Look, count> m_looks{};
    bool m_isWriting = false;
    int m_turns = 0;
};

} // namespace larkspan

#include "shell/window/OverlayStack.h"

#include <algorithm>
#include <utility>

namespace larkspan {

namespace {

using Overlay = OverlayStack::Overlay;

// In the order in which Escape closes them.
constexpr std::array closingOrder{
    Overlay::WriteAlert,  Overlay::CloseQuestion, Overlay::ReplaceQuestion, Overlay::FilePanel, Overlay::Preview,
    Overlay::Preferences, Overlay::Coverage,      Overlay::Handoff,         Overlay::CardOffer,
};

constexpr std::size_t indexOf(Overlay overlay)
{
    return static_cast<std::size_t>(overlay);
}

} // namespace

int OverlayStack::placeOf(Overlay overlay)
{
    switch (overlay) {
    case Overlay::CardOffer:
        return 1;
    case Overlay::Preview:
    case Overlay::Coverage:
    case Overlay::Handoff:
        return 2;
    case Overlay::Preferences:
        return 3;
    case Overlay::FilePanel:
        return 4;
    case Overlay::ReplaceQuestion:
        return 5;
    case Overlay::CloseQuestion:
        return 6;
    case Overlay::WriteAlert:
        return 7;
    }
    return 0;
}

void OverlayStack::put(Overlay overlay, bool isWanted, bool isShown, bool isInSight)
{
    const Look look{.isWanted = isWanted, .isShown = isShown, .isInSight = isInSight};
    const Look before = std::exchange(m_looks.at(indexOf(overlay)), look);
    if (before == look) {
        return;
    }
    if (before.isWanted != isWanted) {
        ++m_turns;
    }
    Q_EMIT changed();
}

void OverlayStack::closeTopmost()
{
    const auto topmost =
        std::ranges::find_if(closingOrder, [this](Overlay overlay) { return m_looks.at(indexOf(overlay)).isWanted; });
    if (topmost != closingOrder.end()) {
        Q_EMIT dismissed(*topmost);
    }
}

int OverlayStack::coveredUpTo() const
{
    int place = 0;
    for (const Overlay overlay : closingOrder) {
        if (m_looks.at(indexOf(overlay)).isShown) {
            place = std::max(place, placeOf(overlay));
        }
    }
    return place;
}

bool OverlayStack::isCardOfferTopmost() const
{
    return std::ranges::none_of(closingOrder, [this](Overlay overlay) {
        return overlay != Overlay::CardOffer && m_looks.at(indexOf(overlay)).isInSight;
    });
}

} // namespace larkspan

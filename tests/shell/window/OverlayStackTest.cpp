#include "shell/window/OverlayStack.h"

#include <gmock/gmock.h>
#include <QtCore/QVariant>

using namespace larkspan;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Overlay = OverlayStack::Overlay;

class OverlayStackTest : public testing::Test
{
protected:
    OverlayStackTest()
    {
        QObject::connect(&stack, &OverlayStack::dismissed, [this](Overlay overlay) {
            dismissed.push_back(overlay);
            stack.put(overlay, false, false, true); // as its owner does
        });
        QObject::connect(&stack, &OverlayStack::changed, [this] { ++changes; });
    }

    void show(Overlay overlay) { stack.put(overlay, true, true, true); }

    OverlayStack stack;
    std::vector<Overlay> dismissed;
    int changes = 0;
};

} // namespace

TEST_F(OverlayStackTest, CoversUpToTheTopmostThatIsShown)
{
    EXPECT_EQ(stack.coveredUpTo(), 0);
    show(Overlay::Preferences);
    show(Overlay::CardOffer);
    EXPECT_EQ(stack.coveredUpTo(), OverlayStack::placeOf(Overlay::Preferences));
    stack.put(Overlay::Preferences, false, false, true); // it fades
    EXPECT_EQ(stack.coveredUpTo(), OverlayStack::placeOf(Overlay::CardOffer));
    stack.put(Overlay::CardOffer, true, false, false); // during the intro
    EXPECT_EQ(stack.coveredUpTo(), 0);
}

TEST_F(OverlayStackTest, PlacesRiseFromTheCardsOfferToTheAlert)
{
    const std::vector order{Overlay::CardOffer,       Overlay::Preview,       Overlay::Preferences, Overlay::FilePanel,
                            Overlay::ReplaceQuestion, Overlay::CloseQuestion, Overlay::WriteAlert};
    int below = 0;
    for (const Overlay overlay : order) {
        EXPECT_GT(OverlayStack::placeOf(overlay), below);
        below = OverlayStack::placeOf(overlay);
    }
    EXPECT_EQ(OverlayStack::placeOf(Overlay::Coverage), OverlayStack::placeOf(Overlay::Preview));
    EXPECT_EQ(OverlayStack::placeOf(Overlay::Handoff), OverlayStack::placeOf(Overlay::Preview));
}

TEST_F(OverlayStackTest, EscapeClosesOneAtATimeThePreviewBeforePreferencesAndTheCardsOfferLast)
{
    const std::vector order{Overlay::WriteAlert, Overlay::CloseQuestion, Overlay::ReplaceQuestion,
                            Overlay::FilePanel,  Overlay::Preview,       Overlay::Preferences,
                            Overlay::Coverage,   Overlay::Handoff,       Overlay::CardOffer};
    for (const Overlay overlay : order) {
        show(overlay);
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        stack.closeTopmost();
        ASSERT_EQ(dismissed.size(), i + 1);
        EXPECT_EQ(dismissed.back(), order[i]);
    }
    stack.closeTopmost();
    EXPECT_EQ(dismissed.size(), order.size()) << "nothing is left";
}

TEST_F(OverlayStackTest, EscapeWithdrawsWhatIsWantedAndNotShownYet)
{
    stack.put(Overlay::CardOffer, true, false, false); // during the intro
    stack.closeTopmost();
    EXPECT_THAT(dismissed, ElementsAre(Overlay::CardOffer));
}

TEST_F(OverlayStackTest, TheCardsOfferIsTopmostWhenNothingElseIsInSight)
{
    show(Overlay::CardOffer);
    EXPECT_TRUE(stack.isCardOfferTopmost());
    for (const Overlay other : {Overlay::Preview, Overlay::Preferences, Overlay::WriteAlert}) {
        show(other);
        EXPECT_FALSE(stack.isCardOfferTopmost());
        stack.put(other, false, false, true);
        EXPECT_FALSE(stack.isCardOfferTopmost()) << "it still fades";
        stack.put(other, false, false, false);
        EXPECT_TRUE(stack.isCardOfferTopmost());
    }
}

TEST_F(OverlayStackTest, TheCardsOfferLeavesFocusToAFieldThatTheEditorWritesIn)
{
    show(Overlay::CardOffer);
    EXPECT_TRUE(stack.cardOfferTakesFocus());
    changes = 0;
    stack.setProperty("isWriting", true);
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(stack.cardOfferTakesFocus());
    EXPECT_TRUE(stack.isCardOfferTopmost());
    stack.setProperty("isWriting", false);
    EXPECT_TRUE(stack.cardOfferTakesFocus());
    show(Overlay::Preview);
    EXPECT_FALSE(stack.cardOfferTakesFocus());
}

TEST_F(OverlayStackTest, EachOverlayThatComesOrGoesIsATurn)
{
    const int before = stack.turns();
    show(Overlay::Preview);
    EXPECT_EQ(stack.turns(), before + 1);
    stack.put(Overlay::Preview, false, false, true); // it fades
    EXPECT_EQ(stack.turns(), before + 2);
    stack.put(Overlay::Preview, false, false, false);
    EXPECT_EQ(stack.turns(), before + 2) << "its fading is no turn";
    stack.put(Overlay::CardOffer, true, false, false); // during the intro
    EXPECT_EQ(stack.turns(), before + 3);
    show(Overlay::CardOffer);
    show(Overlay::CloseQuestion);
    EXPECT_EQ(stack.turns(), before + 4);
}

TEST_F(OverlayStackTest, AChangeIsToldOnce)
{
    show(Overlay::Preview);
    show(Overlay::Preview);
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(dismissed, IsEmpty());
}

// Keys on a clip, without a window.
#include "screens/clips/ClipKeys.h"

#include <gmock/gmock.h>
#include <QtCore/QVariant>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Collects what a key leads to, as text: "open", "move", "confirm", "menu".
class ClipKeysTest : public testing::Test
{
protected:
    ClipKeysTest()
    {
        QObject::connect(&keys, &ClipKeys::openDue, [this] { done.push_back(u"open"_s); });
        QObject::connect(&keys, &ClipKeys::moveDue, [this] { done.push_back(u"move"_s); });
        QObject::connect(&keys, &ClipKeys::confirmDue, [this] { done.push_back(u"confirm"_s); });
        QObject::connect(&keys, &ClipKeys::menuDue, [this] { done.push_back(u"menu"_s); });
    }

    QStringList press(int key, int modifiers = 0, int row = 0)
    {
        done.clear();
        isUsed = keys.take(key, modifiers, row);
        return done;
    }

    void showReview() { keys.setProperty("isReview", true); }

    ClipKeys keys;
    QStringList done;
    bool isUsed = false;
};

} // namespace

TEST_F(ClipKeysTest, ReturnEnterAndSpaceOpenThePreview)
{
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        EXPECT_THAT(press(key), ElementsAre(u"open"_s));
        EXPECT_TRUE(isUsed);
    }
    EXPECT_THAT(press(Qt::Key_Enter, Qt::KeypadModifier), ElementsAre(u"open"_s));
}

TEST_F(ClipKeysTest, MAsksForAnotherBinInTheGridAndInTheReviewList)
{
    EXPECT_THAT(press(Qt::Key_M), ElementsAre(u"move"_s));
    EXPECT_THAT(press(Qt::Key_M, Qt::ShiftModifier), ElementsAre(u"move"_s));
    EXPECT_TRUE(isUsed);
    showReview();
    EXPECT_THAT(press(Qt::Key_M), ElementsAre(u"move"_s));
}

TEST_F(ClipKeysTest, CConfirmsOnlyUnderReview)
{
    EXPECT_THAT(press(Qt::Key_C), IsEmpty());
    EXPECT_FALSE(isUsed);
    showReview();
    EXPECT_THAT(press(Qt::Key_C), ElementsAre(u"confirm"_s));
    EXPECT_TRUE(isUsed);
}

TEST_F(ClipKeysTest, TheMenuKeyAndShiftF10OpenTheMenuOfAClipInTheGrid)
{
    EXPECT_THAT(press(Qt::Key_Menu), ElementsAre(u"menu"_s));
    EXPECT_THAT(press(Qt::Key_F10, Qt::ShiftModifier), ElementsAre(u"menu"_s));
    EXPECT_TRUE(isUsed);
    EXPECT_THAT(press(Qt::Key_F10), IsEmpty()) << "which opens the menu of the window";
    EXPECT_FALSE(isUsed);
    showReview();
    EXPECT_THAT(press(Qt::Key_Menu), IsEmpty());
    EXPECT_FALSE(isUsed);
}

TEST_F(ClipKeysTest, WithControlOrAltAKeyIsLeftToOthers)
{
    showReview();
    for (const int modifier : {Qt::ControlModifier, Qt::AltModifier}) {
        for (const int key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_M, Qt::Key_C}) {
            EXPECT_THAT(press(key, modifier), IsEmpty()) << key;
            EXPECT_FALSE(isUsed) << key;
        }
    }
}

TEST_F(ClipKeysTest, WithoutAClipAndForOtherKeysNothingIsDone)
{
    EXPECT_THAT(press(Qt::Key_Return, 0, -1), IsEmpty());
    EXPECT_FALSE(isUsed);
    for (const int key : {Qt::Key_Home, Qt::Key_Down, Qt::Key_Tab, Qt::Key_Escape}) {
        EXPECT_THAT(press(key), IsEmpty()) << key;
        EXPECT_FALSE(isUsed) << key;
    }
}

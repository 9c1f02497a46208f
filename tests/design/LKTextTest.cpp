#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// One text in a document.
class ShownText
{
public:
    explicit ShownText(const std::string &properties)
        : scene(document("LKText { objectName: 'text'; font: LK.font(12); " + properties + " }"))
    {}

    bool isCut() const { return item.property("truncated").toBool(); }
    int lines() const { return item.property("lineCount").toInt(); }
    // Null unless the text is cut.
    const QQuickItem *toolTip() const { return item.property("toolTip").value<QQuickItem *>(); }
    bool isTold() const { return toolTip() != nullptr && toolTip()->property("told").toBool(); }
    // Returns the number of items that assistive technology finds in the window.
    int readItems() const { return QAccessible::queryAccessibleInterface(&scene.window())->childCount(); }

    Scene scene;
    QQuickItem &item = *findNamed(scene.root(), u"text"_s);
};

const std::string longOne = "x: 50; y: 50; text: 'Exterior Front with the drive'; ";

} // namespace

TEST(LKText, WithRoomItHasNothingOfAToolTip)
{
    const ShownText text(longOne);
    EXPECT_FALSE(text.isCut());
    EXPECT_EQ(text.toolTip(), nullptr);
    EXPECT_TRUE(text.item.childItems().isEmpty());
}

TEST(LKText, OneThatIsCutIsToldWholeUnderThePointer)
{
    const ShownText text(longOne + "width: 60");
    EXPECT_TRUE(text.isCut());
    EXPECT_FALSE(text.isTold());
    QTest::mouseMove(&text.scene.window(), middleOf(&text.item));
    ASSERT_TRUE(waitUntil([&] { return text.isTold(); }));
    EXPECT_EQ(text.toolTip()->property("text").toString(), u"Exterior Front with the drive"_s);
    QTest::mouseMove(&text.scene.window(), {500, 300});
    EXPECT_TRUE(waitUntil([&] { return !text.isTold(); }));
}

TEST(LKText, OneThatIsCutIsToldWholeWhileItsControlHasFocus)
{
    const ShownText text(longOne + "width: 60");
    text.item.setProperty("isReached", true);
    EXPECT_TRUE(waitUntil([&] { return text.isTold(); }));
    text.item.setProperty("isReached", false);
    EXPECT_TRUE(waitUntil([&] { return !text.isTold(); }));
}

TEST(LKText, OneThatGetsRoomAgainLosesItsToolTip)
{
    const ShownText text(longOne + "width: 60; isReached: true");
    ASSERT_TRUE(waitUntil([&] { return text.isTold(); }));
    text.item.setWidth(400);
    EXPECT_FALSE(text.isCut());
    EXPECT_EQ(text.toolTip(), nullptr);
}

TEST(LKText, LeavesTheToolTipToAControlThatHasOne)
{
    const ShownText text(longOne + "width: 60; isReached: true; hasHelp: false");
    EXPECT_TRUE(text.isCut());
    EXPECT_EQ(text.toolTip(), nullptr);
}

TEST(LKText, HasOneLineOrAsManyAsItTakesIfItWraps)
{
    EXPECT_EQ(ShownText("width: 60; text: 'one two three four five six seven eight'").lines(), 1);
    const ShownText wrapped("width: 60; wrapMode: Text.Wrap; text: 'one two three four five six seven eight'");
    EXPECT_GT(wrapped.lines(), 3);
    EXPECT_FALSE(wrapped.isCut());
}

TEST(LKText, ShowsMarkupAsItIsWritten)
{
    EXPECT_GT(ShownText("text: '<b></b>'").item.implicitWidth(), 0);
}

TEST(LKText, IsReadByItselfOnlyIfItIsToBe)
{
    const ShownText label(longOne);
    EXPECT_EQ(label.readItems(), 0);
    const ShownText sentence(longOne + "isRead: true");
    EXPECT_EQ(sentence.readItems(), 1);
    EXPECT_EQ(accessible(&sentence.item)->role(), QAccessible::StaticText);
    EXPECT_EQ(accessibleName(&sentence.item), u"Exterior Front with the drive"_s);
    sentence.item.setProperty("text", u"Pool"_s);
    EXPECT_EQ(accessibleName(&sentence.item), u"Pool"_s);
}

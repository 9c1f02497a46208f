// Texts that no one meant for a label. A warning of QML fails every one of these.
#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Every control with a text, the text being the page's.
const std::string everyControl = R"(
    property string text
    property var options: [{value: 0, label: page.text}, {value: 1, label: page.text}]
    Column {
        objectName: 'column'
        width: 300
        LKButton { objectName: 'button'; title: page.text; width: 120 }
        IconButton { name: 'plus'; help: page.text }
        LKBadge { text: page.text; width: 120 }
        LKDropdown { options: page.options; selection: 1; width: 120; label: page.text }
        LKSegmented { options: page.options; selection: 1; width: 300; clip: true; label: page.text }
        LKToggle { label: page.text }
        LKSidebarRow { label: page.text; count: 3; width: 220 }
        LKProgressBar { label: page.text; done: 1; total: 2; width: 220 }
        LKSettingsRow { label: page.text; sublabel: page.text; width: 300; LKToggle { } }
        LKTextField { text: page.text; placeholderText: page.text; width: 120 }
    }
    LKEmptyState { x: 300; width: 300; title: page.text; description: page.text; actionTitle: page.text
                   footnote: page.text }
)";

} // namespace

TEST(EveryControl, StandsEmptyTexts)
{
    Scene scene(document(everyControl));
    EXPECT_EQ(findNamed(scene.root(), u"button"_s)->height(), 26);
    EXPECT_FALSE(scene.window().grabWindow().isNull());
}

TEST(EveryControl, StandsTextsOfTenThousandCharactersAndElidesThem)
{
    Scene scene(document(everyControl), {{u"text"_s, u"long words "_s.repeated(910)}});
    const QQuickItem *label = partOf(findNamed(scene.root(), u"button"_s), "contentItem");
    EXPECT_TRUE(label->property("truncated").toBool());
    EXPECT_EQ(label->property("lineCount").toInt(), 1);
    EXPECT_LT(findNamed(scene.root(), u"column"_s)->height(), 500);
    EXPECT_FALSE(scene.window().grabWindow().isNull());
}

TEST(EveryControl, StandsOneWordOfTenThousandCharacters)
{
    Scene scene(document(everyControl), {{u"text"_s, QString(10'000, u'x')}});
    EXPECT_LT(findNamed(scene.root(), u"column"_s)->height(), 500);
    EXPECT_FALSE(scene.window().grabWindow().isNull());
}

TEST(EveryControl, StandsEmojiCombiningCharactersAndRightToLeftText)
{
    for (const QString &text : {u"👩‍👩‍👧‍👦 house 🏠"_s, u"e\u0301\u0302\u0303\u0304 z\u0351\u0352"_s,
                                u"חדר שינה"_s, u"مطبخ 12"_s, u"\u202Eabc"_s, u"a\nb\tc"_s, u"<b>bold</b> & more"_s}) {
        Scene scene(document(everyControl), {{u"text"_s, text}});
        EXPECT_EQ(partOf(findNamed(scene.root(), u"button"_s), "contentItem")->property("text").toString(), text);
        EXPECT_EQ(accessibleName(findNamed(scene.root(), u"button"_s)), text);
        EXPECT_FALSE(scene.window().grabWindow().isNull());
    }
}

TEST(EveryControl, TellsAnElidedLabelInAToolTip)
{
    const QString text = u"a label that has no room at all in so little space"_s;
    for (const std::string control : {"LKButton { objectName: 'control'; width: 60; title: page.text }",
                                      "LKSidebarRow { objectName: 'control'; width: 60; label: page.text }",
                                      "LKDropdown { objectName: 'control'; width: 60; selection: 0; "
                                      "options: [{value: 0, label: page.text}] }"}) {
        Scene scene(document("property string text\n" + control), {{u"text"_s, text}});
        const QQuickItem *item = findNamed(scene.root(), u"control"_s);
        QTest::mouseMove(&scene.window(), middleOf(item) + QPoint(-10, 0));
        EXPECT_TRUE(waitUntil([&] {
            QQuickItem *overlay = scene.window().contentItem()->childItems().last();
            return overlay != scene.root() && findShown(overlay, text) != nullptr;
        })) << control;
    }
}

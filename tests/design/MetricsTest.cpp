// The measures and colours of the buttons, rows and states, in both themes.
#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr LK::Theme bothThemes[]{LK::Theme::Light, LK::Theme::Dark};

QColor faded(QColor color, double share)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * share));
    return color;
}

bool isAt(const QQuickItem *item, double y)
{
    return std::abs(item->mapToScene(QPointF()).y() - y) < 0.01;
}

} // namespace

TEST(LKButton, HasTheHeightPaddingAndFontOfItsSize)
{
    const double points[]{11.5, 12.5, 13};
    for (int size = 0; size < 3; ++size) {
        for (const int kind : {0, 1}) {
            Scene scene(document("LKButton { title: 'Go'; size: " + std::to_string(size) +
                                 "; kind: " + std::to_string(kind) + " }"));
            const QQuickItem *button = findShown(scene.root(), u"Go"_s);
            const QQuickItem *label = partOf(button, "contentItem");
            EXPECT_EQ(button->height(), 22 + 4 * size);
            EXPECT_EQ(label->x(), 10 + 3 * size);
            EXPECT_NEAR(button->width(), label->implicitWidth() + 2 * (10 + 3 * size), 0.01);
            EXPECT_TRUE(hasFont(label, points[size], kind == 0 ? QFont::DemiBold : QFont::Medium));
            EXPECT_EQ(partOf(button, "background")->property("radius").toDouble(), 5);
        }
    }
}

TEST(LKButton, HasTheColoursOfItsKindAtRestUnderThePointerAndPressed)
{
    for (const LK::Theme theme : bothThemes) {
        const Themed themed(theme);
        const LKPalette &p = LK::instance().palette();
        struct Expected
        {
            QColor text;
            QColor border;
            QColor rest;
            QColor hover;
            QColor pressed;
        };
        const QColor none(Qt::transparent);
        const Expected expected[]{
            {p.textOnAccent, none, p.accentSolid, p.accentSolidHover, p.accentSolidPressed},
            {p.textPrimary, p.borderStrong, faded(p.surfaceCard, 0.001), p.surfaceHover, p.surfacePressed},
            {p.textSecondary, none, none, p.surfaceHover, p.surfacePressed},
            {p.danger, p.borderSubtle, none, faded(p.dangerSubtle, 0.7), p.dangerSubtle},
        };
        for (int kind = 0; kind < 4; ++kind) {
            Scene scene(document("LKButton { x: 20; y: 20; title: 'Go'; kind: " + std::to_string(kind) + " }"));
            const QQuickItem *button = findShown(scene.root(), u"Go"_s);
            const QQuickItem *fill = partOf(button, "background");
            const auto *border = fill->property("border").value<QObject *>();
            const auto fillIs = [&](const QColor &color) {
                return waitUntil([&] { return colorOf(fill).rgba() == color.rgba(); });
            };
            EXPECT_EQ(colorOf(partOf(button, "contentItem")), expected[kind].text) << kind;
            EXPECT_EQ(fill->property("stroke").value<QColor>(), expected[kind].border) << kind;
            EXPECT_EQ(border->property("width").toDouble(), expected[kind].border.alpha() > 0 ? 1 : 0) << kind;
            EXPECT_EQ(colorOf(fill).rgba(), expected[kind].rest.rgba()) << kind;
            QTest::mouseMove(&scene.window(), middleOf(button));
            EXPECT_TRUE(fillIs(expected[kind].hover)) << kind;
            EXPECT_EQ(button->property("fillMotion").toInt(), LK::instance().motion().hover);
            QTest::mousePress(&scene.window(), Qt::LeftButton, {}, middleOf(button));
            EXPECT_EQ(button->property("fillMotion").toInt(), LK::instance().motion().press);
            EXPECT_TRUE(fillIs(expected[kind].pressed)) << kind;
            QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, middleOf(button));
            EXPECT_TRUE(fillIs(expected[kind].hover)) << kind;
            QTest::mouseMove(&scene.window(), QPoint(400, 300));
            EXPECT_TRUE(fillIs(expected[kind].rest)) << kind;
        }
    }
}

TEST(LKButton, ADisabledOneKeepsItsColoursUnderThePointer)
{
    Scene scene(document("LKButton { title: 'Go'; kind: LKButton.Accent; enabled: false }"));
    QQuickItem *button = findShown(scene.root(), u"Go"_s);
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_EQ(fillOf(button), LK::instance().palette().accentSolid);
    EXPECT_EQ(colorOf(partOf(button, "contentItem")), LK::instance().palette().textOnAccent);
    EXPECT_EQ(button->opacity(), 0.45);
    QSignalSpy activated(button, SIGNAL(activated()));
    accessible(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(activated.count(), 0);
}

TEST(LKButton, StretchesToTheFullWidthOffered)
{
    Scene scene(document("Item { width: 321; LKButton { title: 'Go'; fullWidth: true } }"));
    EXPECT_EQ(findShown(scene.root(), u"Go"_s)->width(), 321);
}

TEST(LKButton, IsAButtonThatAssistiveTechnologyCanPress)
{
    Scene scene(document("LKButton { title: 'Go' }"));
    QQuickItem *button = findShown(scene.root(), u"Go"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    EXPECT_EQ(accessible(button)->role(), QAccessible::Button);
    EXPECT_EQ(accessibleName(button), u"Go"_s);
    accessible(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(activated.count(), 1);
}

TEST(LKSidebarRow, HasTheMeasuresAndColoursOfItsState)
{
    for (const LK::Theme theme : bothThemes) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(document("Column { y: 10; LKSidebarRow { objectName: 'plain'; label: 'Pool'; count: 3 }"
                             "LKSidebarRow { objectName: 'chosen'; label: 'Attic'; selected: true }"
                             "LKSidebarRow { objectName: 'warning'; label: 'Review'; count: 7; "
                             "tone: LKSidebarRow.Warning } }"));
        const QQuickItem *plain = findNamed(scene.root(), u"plain"_s);
        const QQuickItem *chosen = findNamed(scene.root(), u"chosen"_s);
        const auto labelOf = [](const QQuickItem *row) { return partOf(row, "contentItem")->childItems().at(0); };
        const auto countOf = [](const QQuickItem *row) { return partOf(row, "contentItem")->childItems().at(1); };
        EXPECT_EQ(plain->height(), 26);
        EXPECT_EQ(partOf(plain, "contentItem")->x(), 8);
        EXPECT_EQ(partOf(plain, "contentItem")->width(), plain->width() - 16);
        EXPECT_EQ(partOf(plain, "background")->property("radius").toDouble(), 6);
        EXPECT_TRUE(hasFont(labelOf(plain), 11.5, QFont::Normal));
        EXPECT_EQ(colorOf(labelOf(plain)), palette.textSecondary);
        EXPECT_EQ(fillOf(plain), QColor(Qt::transparent));
        EXPECT_TRUE(hasFont(labelOf(chosen), 11.5, QFont::Medium));
        EXPECT_EQ(colorOf(labelOf(chosen)), palette.textPrimary);
        EXPECT_EQ(fillOf(chosen), palette.surfaceSelected);

        const QQuickItem *count = countOf(plain);
        EXPECT_TRUE(hasFont(count, 11, QFont::Normal));
        EXPECT_EQ(colorOf(count), palette.textTertiary);
        EXPECT_NEAR(count->x() + count->width(), plain->width() - 16, 0.01);
        EXPECT_NEAR(labelOf(plain)->x() + labelOf(plain)->width() + 6, count->x(), 0.51);
        const QQuickItem *tag = countOf(findNamed(scene.root(), u"warning"_s));
        EXPECT_TRUE(hasFont(tag, 10, QFont::DemiBold));
        EXPECT_EQ(colorOf(tag), palette.warning);
        EXPECT_EQ(fillOf(tag), palette.warningSubtle);
        EXPECT_EQ(partOf(tag, "contentItem")->position(), QPointF(6, 2));
        EXPECT_EQ(tag->size(), partOf(tag, "contentItem")->size() + QSizeF(12, 4));

        QTest::mouseMove(&scene.window(), middleOf(plain));
        EXPECT_TRUE(fillBecomes(plain, palette.surfaceHover));
        QTest::mouseMove(&scene.window(), middleOf(chosen));
        EXPECT_EQ(fillOf(chosen), palette.surfaceSelected);
        EXPECT_TRUE(fillBecomes(plain, QColor(Qt::transparent)));
    }
}

TEST(LKSidebarRow, IsActivatedByMouseSpaceReturnAndAssistiveTechnology)
{
    Scene scene(document("LKSidebarRow { objectName: 'row'; label: 'Bed & Bath'; count: 12; selected: true }"));
    QQuickItem *row = findNamed(scene.root(), u"row"_s);
    QSignalSpy activated(row, SIGNAL(activated()));
    scene.click(u"Bed & Bath"_s);
    row->forceActiveFocus();
    scene.key(Qt::Key_Space);
    scene.key(Qt::Key_Return);
    accessible(row)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(activated.count(), 4);
    EXPECT_EQ(accessible(row)->role(), QAccessible::ListItem);
    EXPECT_EQ(accessibleName(row), u"Bed & Bath, 12"_s);
    EXPECT_TRUE(accessible(row)->state().selected);
}

TEST(LKDigits, KeepItsDigitsAsWideAsEachOther)
{
    Scene scene(document("Row { LKDigits { text: '1111' } LKDigits { text: '8888' } LKDigits { text: '1 of 12' } }"));
    EXPECT_EQ(findShown(scene.root(), u"1111"_s)->width(), findShown(scene.root(), u"8888"_s)->width());
    EXPECT_NE(findShown(scene.root(), u" of "_s), nullptr);
    EXPECT_EQ(accessibleName(findShown(scene.root(), u"1 of 12"_s)), u"1 of 12"_s);
}

TEST(LKDigits, AreAsWideAfterAFigureWasAddedAsFromTheStart)
{
    Scene scene(document("LKDigits { objectName: 'clock' }"));
    QQuickItem *clock = findNamed(scene.root(), u"clock"_s);
    for (const QString &text :
         {u"9.9s"_s, u"10.0s"_s, u"59.9s"_s, u"1m 0.0s"_s, u"9m 59.9s"_s, u"10m 0.0s"_s, u"9.9s"_s}) {
        clock->setProperty("text", text);
        Scene fresh(document("LKDigits { objectName: 'clock'; text: '" + text.toStdString() + "' }"));
        const QQuickItem *same = findNamed(fresh.root(), u"clock"_s);
        EXPECT_TRUE(waitUntil([&] { return clock->implicitWidth() == same->implicitWidth(); })) << text.toStdString();
    }
}

TEST(LKDigits, RunFromLeftToRightInEveryLayout)
{
    Scene scene(document("Item { width: 200; LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true\n"
                         "LKDigits { text: '12' } }"));
    EXPECT_LT(findShown(scene.root(), u"1"_s)->x(), findShown(scene.root(), u"2"_s)->x());
}

TEST(LKProgressBar, HasItsTextsAboveAndItsBarBelow)
{
    for (const LK::Theme theme : bothThemes) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(document("LKProgressBar { objectName: 'bar'; width: 340; label: 'Sorting'; done: 3; total: 12 }"));
        const QQuickItem *bar = findNamed(scene.root(), u"bar"_s);
        const QQuickItem *fill = findNamed(scene.root(), u"fill"_s);
        const QQuickItem *track = fill->parentItem();
        const QQuickItem *counter = findShown(scene.root(), u"3 of 12"_s);
        EXPECT_EQ(bar->size(), QSizeF(340, 30));
        EXPECT_EQ(QRectF(track->position(), track->size()), QRectF(0, 26, 340, 4));
        EXPECT_TRUE(waitUntil([&] { return fill->width() == 85; }));
        EXPECT_EQ(fill->height(), 4);
        EXPECT_EQ(colorOf(track), palette.surfacePressed);
        EXPECT_EQ(colorOf(fill), palette.accent);
        EXPECT_TRUE(hasFont(findShown(scene.root(), u"Sorting"_s), 12.5, QFont::Medium));
        EXPECT_EQ(colorOf(findShown(scene.root(), u"Sorting"_s)), palette.textPrimary);
        EXPECT_TRUE(hasFont(counter, 11, QFont::Normal));
        EXPECT_EQ(colorOf(counter), palette.textTertiary);
        EXPECT_NEAR(counter->mapToScene(QPointF(counter->width(), 0)).x(), 340, 0.01);
    }
}

TEST(LKProgressBar, WithMoreDoneThanThereIsFillsTheBarExactly)
{
    Scene scene(document("LKProgressBar { width: 340; done: 20; total: 12 }"));
    const QQuickItem *fill = findNamed(scene.root(), u"fill"_s);
    EXPECT_TRUE(waitUntil([&] { return fill->width() == 340; }));
}

TEST(LKProgressBar, IsEmptyWithNothingOrLessToDo)
{
    for (const std::string counts :
         {"done: 5; total: 0", "done: 5; total: -3", "done: -5; total: 10", "done: 0; total: 0"}) {
        Scene scene(document("LKProgressBar { width: 340; " + counts + " }"));
        EXPECT_EQ(findNamed(scene.root(), u"fill"_s)->width(), 0) << counts;
    }
}

TEST(LKProgressBar, FillsFromTheRightInARightToLeftLayout)
{
    Scene scene(document("LKProgressBar { width: 340; done: 1; total: 4; LayoutMirroring.enabled: true }"));
    const QQuickItem *fill = findNamed(scene.root(), u"fill"_s);
    EXPECT_TRUE(waitUntil([&] { return fill->x() == 255; }));
}

TEST(LKProgressBar, TellsHowFarItIsToAssistiveTechnology)
{
    Scene scene(document("LKProgressBar { objectName: 'bar'; label: 'Sorting'; done: 3; total: 12 }"));
    QAccessibleInterface *told = accessible(findNamed(scene.root(), u"bar"_s));
    EXPECT_EQ(told->role(), QAccessible::ProgressBar);
    EXPECT_EQ(told->text(QAccessible::Name), u"Sorting"_s);
    EXPECT_EQ(told->text(QAccessible::Description), u"3 of 12"_s);
}

TEST(LKEmptyState, StacksItsPartsAtTheirDistances)
{
    for (const LK::Theme theme : bothThemes) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(document("LKEmptyState { width: 600; title: 'Nothing here'; description: 'one\\ntwo'; "
                             "actionTitle: 'Choose'; footnote: 'Or drop one' }"));
        const QQuickItem *mark = findNamed(scene.root(), u"mark"_s);
        const QQuickItem *title = findShown(scene.root(), u"Nothing here"_s);
        const QQuickItem *description = findShown(scene.root(), u"one\ntwo"_s);
        const QQuickItem *action = findShown(scene.root(), u"Choose"_s);
        const QQuickItem *footnote = findShown(scene.root(), u"Or drop one"_s);
        const auto textHeight = [](const QQuickItem *text) {
            return text->implicitHeight() - text->property("topPadding").toDouble();
        };
        EXPECT_EQ(mark->size(), QSizeF(44, 28));
        EXPECT_EQ(mark->mapToScene(QPointF()), QPointF(278, 0));
        EXPECT_EQ(mark->property("radius").toDouble(), 3);
        EXPECT_EQ(mark->property("border").value<QObject *>()->property("width").toDouble(), 2.4);
        EXPECT_EQ(mark->property("border").value<QObject *>()->property("color").value<QColor>(), palette.textTertiary);
        EXPECT_TRUE(isAt(title, 28));
        EXPECT_EQ(title->property("topPadding").toDouble(), 18);
        EXPECT_TRUE(hasFont(title, 15, QFont::DemiBold));
        EXPECT_EQ(colorOf(title), palette.textPrimary);
        double y = 28 + 18 + textHeight(title);
        EXPECT_TRUE(isAt(description, y));
        EXPECT_EQ(description->property("topPadding").toDouble(), 8);
        EXPECT_TRUE(hasFont(description, 12.5, QFont::Normal));
        EXPECT_EQ(colorOf(description), palette.textSecondary);
        EXPECT_EQ(description->width(), 420);
        EXPECT_EQ(description->mapToScene(QPointF()).x(), 90);
        y += 8 + textHeight(description) - 3; // no spacing below the last line
        EXPECT_TRUE(isAt(action, y + 20)) << action->mapToScene(QPointF()).y() << ' ' << y;
        EXPECT_EQ(action->height(), 30);
        EXPECT_EQ(fillOf(action), palette.accentSolid);
        EXPECT_TRUE(isAt(footnote, y + 20 + 30));
        EXPECT_EQ(footnote->property("topPadding").toDouble(), 14);
        EXPECT_TRUE(hasFont(footnote, 11, QFont::Normal));
        EXPECT_EQ(colorOf(footnote), palette.textTertiary);
    }
}

TEST(LKEmptyState, SpacesTheLinesOfItsDescriptionByThreePoints)
{
    Scene scene(document("Column { Text { objectName: 'plain'; text: 'one'; font: LK.font(12.5) }"
                         "LKEmptyState { width: 420; title: 'a'; description: 'one\\ntwo' } }"));
    const double line = findNamed(scene.root(), u"plain"_s)->height();
    const QQuickItem *description = findShown(scene.root(), u"one\ntwo"_s);
    EXPECT_EQ(description->property("lineHeight").toDouble(), line + 3);
    EXPECT_EQ(description->height(), 8 + 2 * (line + 3));
    EXPECT_EQ(description->parentItem()->height(), 8 + 2 * line + 3);
    EXPECT_EQ(description->property("lineCount").toInt(), 2);
    EXPECT_FALSE(description->property("truncated").toBool());
}

TEST(LKEmptyState, HasAMarkInTheColourOfDangerForAnError)
{
    Scene scene(document("LKEmptyState { title: 'Failed'; tone: LKEmptyState.Error }"));
    const auto *border = findNamed(scene.root(), u"mark"_s)->property("border").value<QObject *>();
    EXPECT_EQ(border->property("color").value<QColor>(), LK::instance().palette().danger);
}

TEST(LKEmptyState, WithoutTheRestIsAMarkAndATitle)
{
    Scene scene(document("LKEmptyState { objectName: 'state'; title: 'Nothing' }"));
    const QQuickItem *title = findShown(scene.root(), u"Nothing"_s);
    EXPECT_EQ(findNamed(scene.root(), u"state"_s)->height(), 28 + title->height());
}

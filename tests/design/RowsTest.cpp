#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

QColor fillOfBadge(const QQuickItem *badge)
{
    return colorOf(findNamed(const_cast<QQuickItem *>(badge), u"fill"_s));
}

} // namespace

TEST(LKSettingsRow, HasItsTextsLeadingAndItsControlTrailing)
{
    Scene scene(document("LKSettingsRow { objectName: 'row'; width: 400; label: 'Sounds'; "
                         "sublabel: 'Cues while it works'; LKToggle { objectName: 'toggle' } }"));
    const QQuickItem *row = findNamed(scene.root(), u"row"_s);
    const QQuickItem *label = findShown(scene.root(), u"Sounds"_s);
    const QQuickItem *sublabel = findShown(scene.root(), u"Cues while it works"_s);
    const QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    EXPECT_TRUE(hasFont(label, 13, QFont::Normal));
    EXPECT_EQ(colorOf(label), LK::instance().palette().textPrimary);
    EXPECT_TRUE(hasFont(sublabel, 11, QFont::Normal));
    EXPECT_EQ(colorOf(sublabel), LK::instance().palette().textTertiary);
    EXPECT_EQ(label->mapToScene(QPointF()), QPointF(0, 12));
    EXPECT_EQ(sublabel->mapToScene(QPointF()).y(), 12 + label->height() + 3);
    EXPECT_EQ(row->height(), 12 + label->height() + 3 + sublabel->height() + 12);
    EXPECT_EQ(toggle->mapToScene(QPointF()).x(), 400 - 34);
    EXPECT_EQ(label->width(), 400 - 34 - 16);
}

TEST(LKSettingsRow, HasALineBelowUnlessItIsTheLast)
{
    for (const LK::Theme theme : {LK::Theme::Light, LK::Theme::Dark}) {
        const Themed themed(theme);
        Scene scene(document("Column { width: 300; LKSettingsRow { width: 300; objectName: 'first'; label: 'a' } "
                             "LKSettingsRow { width: 300; objectName: 'last'; label: 'b'; isLast: true } }"));
        const auto lineOf = [&](const QString &name) { return findNamed(scene.root(), name)->childItems().last(); };
        const QQuickItem *line = lineOf(u"first"_s);
        EXPECT_TRUE(line->isVisible());
        EXPECT_EQ(colorOf(line), LK::instance().palette().borderSubtle);
        EXPECT_EQ(QRectF(line->position(), line->size()), QRectF(0, line->parentItem()->height() - 1, 300, 1));
        EXPECT_FALSE(lineOf(u"last"_s)->isVisible());
    }
}

TEST(LKSettingsRow, WithoutASublabelHasTheLabelAlone)
{
    Scene scene(document("LKSettingsRow { objectName: 'row'; label: 'Sounds' }"));
    const QQuickItem *label = findShown(scene.root(), u"Sounds"_s);
    EXPECT_EQ(findNamed(scene.root(), u"row"_s)->height(), label->height() + 24);
}

TEST(LKSettingsRow, IsMirroredInARightToLeftLayout)
{
    Scene scene(document("LKSettingsRow { LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true; "
                         "width: 400; label: 'Sounds'; LKToggle { objectName: 'toggle' } }"));
    EXPECT_EQ(findNamed(scene.root(), u"toggle"_s)->mapToScene(QPointF()).x(), 0);
    EXPECT_EQ(findShown(scene.root(), u"Sounds"_s)->property("effectiveHorizontalAlignment").toInt(), Qt::AlignRight);
}

TEST(LKBadge, HasThePaddingFontAndColoursOfItsTone)
{
    for (const LK::Theme theme : {LK::Theme::Light, LK::Theme::Dark}) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(document("Column { LKBadge { text: 'new'; tone: LKBadge.Accent }"
                             "LKBadge { text: 'check'; tone: LKBadge.Warning } LKBadge { text: 'plain' } }"));
        const QQuickItem *accent = findShown(scene.root(), u"new"_s);
        const QQuickItem *warning = findShown(scene.root(), u"check"_s);
        const QQuickItem *neutral = findShown(scene.root(), u"plain"_s);
        EXPECT_EQ(colorOf(accent), palette.accent);
        EXPECT_EQ(fillOfBadge(accent), palette.accentSubtle);
        EXPECT_EQ(colorOf(warning), palette.warning);
        EXPECT_EQ(fillOfBadge(warning), palette.warningSubtle);
        EXPECT_EQ(colorOf(neutral), palette.textSecondary);
        EXPECT_EQ(fillOfBadge(neutral), palette.surfaceHover);
        for (const QQuickItem *badge : {accent, warning, neutral}) {
            EXPECT_TRUE(hasFont(badge, 10, QFont::DemiBold));
            EXPECT_NEAR(badge->width(), badge->property("contentWidth").toDouble() + 14, 1);
            EXPECT_NEAR(badge->height(), badge->property("contentHeight").toDouble() + 6, 1);
        }
    }
}

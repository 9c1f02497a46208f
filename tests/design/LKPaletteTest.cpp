#include "design/LKPalette.h"

#include <QtCore/QMetaProperty>

#include "design/LK.h"

using namespace larkspan;

namespace {

struct Expected
{
    const char *field;
    const char *light; // "RRGGBB opacity"
    const char *dark;
};

constexpr Expected table[]{
    {"accent", "6c74f0 1", "7a82ff 1"},
    {"accentHover", "5a62de 1", "6870f0 1"},
    {"accentPressed", "4850c4 1", "565ed6 1"},
    {"accentSubtle", "6c74f0 0.14", "7a82ff 0.2"},
    {"accentForeground", "ffffff 1", "ffffff 1"},
    {"accentSolid", "5a62de 1", "5a62de 1"},
    {"accentSolidHover", "4e56d4 1", "4e56d4 1"},
    {"accentSolidPressed", "4850c4 1", "4850c4 1"},
    {"danger", "ff453a 1", "ff453a 1"},
    {"dangerHover", "e63c31 1", "ff6259 1"},
    {"dangerSubtle", "ff453a 0.12", "ff453a 0.18"},
    {"warning", "ff9f0a 1", "ff9f0a 1"},
    {"warningSubtle", "ff9f0a 0.14", "ff9f0a 0.18"},
    {"info", "0a84ff 1", "0a84ff 1"},
    {"infoSubtle", "0a84ff 0.12", "0a84ff 0.18"},
    {"surfaceWindow", "ececed 1", "191919 1"},
    {"surfaceSidebar", "f5f5f6 1", "1f1f21 1"},
    {"surfaceCard", "ffffff 1", "242426 1"},
    {"surfaceElevated", "ffffff 1", "2a2a2c 1"},
    {"surfaceHover", "000000 0.045", "ffffff 0.06"},
    {"surfacePressed", "000000 0.09", "ffffff 0.11"},
    {"surfaceSelected", "6c74f0 0.14", "7a82ff 0.2"},
    {"borderSubtle", "c3c3c7 1", "ffffff 0.14"},
    {"borderStrong", "87878e 1", "ffffff 0.38"},
    {"textPrimary", "18181a 1", "f2f2f3 1"},
    {"textSecondary", "525258 1", "a8a8ac 1"},
    {"textTertiary", "6b6b72 1", "8a8a90 1"},
    {"textOnAccent", "ffffff 1", "ffffff 1"},
    {"textDisabled", "a5a5ab 1", "5a5a5e 1"},
};

std::string written(const QColor &color)
{
    return QStringLiteral("%1 %2").arg(color.name().mid(1)).arg(color.alphaF(), 0, 'g', 3).toStdString();
}

QColor fieldOf(const LKPalette &palette, const char *field)
{
    const QMetaObject &meta = LKPalette::staticMetaObject;
    return meta.property(meta.indexOfProperty(field)).readOnGadget(&palette).value<QColor>();
}

} // namespace

TEST(LKPalette, HasEveryColourOfBothThemes)
{
    for (const Expected &expected : table) {
        EXPECT_EQ(written(fieldOf(LKPalette::light(), expected.field)), expected.light) << expected.field;
        EXPECT_EQ(written(fieldOf(LKPalette::dark(), expected.field)), expected.dark) << expected.field;
    }
    EXPECT_EQ(LKPalette::staticMetaObject.propertyCount(),
              static_cast<int>(std::size(table)) + 4); // and the shadows, and the gradient
}

TEST(LKPalette, HasItsFieldsInTheirOrder)
{
    std::vector<std::string> expected;
    for (const Expected &row : table) {
        expected.emplace_back(row.field);
    }
    expected.insert(expected.end(), {"shadowCard", "shadowPopover", "shadowModal"});
    std::vector<std::string> fields;
    for (int i = 0; i < static_cast<int>(expected.size()); ++i) {
        fields.emplace_back(LKPalette::staticMetaObject.property(i).name());
    }
    EXPECT_EQ(fields, expected);
}

TEST(LKMotionScale, HasTheHousesDurationsAndCurves)
{
    const LKMotionScale motion;
    EXPECT_EQ(motion.press, 100);
    EXPECT_EQ(motion.hover, 120);
    EXPECT_EQ(motion.reveal, 140);
    EXPECT_EQ(motion.overlay, 180);
    EXPECT_EQ(motion.step, 260);
    EXPECT_EQ(motion.toolIn, 380);
    EXPECT_EQ(motion.toolOut, 280);
    EXPECT_EQ(motion.afterIntro, 650);
    EXPECT_EQ(motion.breath, 2600);
    EXPECT_EQ(motion.cellPulse, 325);
    EXPECT_EQ(motion.shimmer, 1400);
    EXPECT_EQ(motion.message, 350);
    EXPECT_EQ(motion.messageStay, 2400);
    EXPECT_EQ(motion.curve, (QVariantList{0.2, 0.8, 0.2, 1.0, 1.0, 1.0}));
    EXPECT_EQ(motion.easeInOut, (QVariantList{0.42, 0.0, 0.58, 1.0, 1.0, 1.0}));
}

TEST(LKPalette, HasTheShadowsOfBothThemes)
{
    const auto black = [](float opacity) { return QColor::fromRgbF(0, 0, 0, opacity); };
    EXPECT_EQ(LKPalette::light().shadowCard, (LKShadow{black(0.06f), 1, 0, 1}));
    EXPECT_EQ(LKPalette::light().shadowPopover, (LKShadow{black(0.16f), 8, 0, 4}));
    EXPECT_EQ(LKPalette::light().shadowModal,
              (std::vector{LKShadow{black(0.28f), 20, 0, 12}, LKShadow{black(0.12f), 4, 0, 2}}));
    EXPECT_EQ(LKPalette::dark().shadowCard, (LKShadow{black(0.3f), 1, 0, 1}));
    EXPECT_EQ(LKPalette::dark().shadowPopover, (LKShadow{black(0.45f), 10, 0, 4}));
    EXPECT_EQ(LKPalette::dark().shadowModal,
              (std::vector{LKShadow{black(0.55f), 24, 0, 16}, LKShadow{black(0.3f), 4, 0, 2}}));
}

TEST(LKPalette, GradientTakesTurnsBetweenTheAccentAndTheInformingColour)
{
    for (const LKPalette *palette : {&LKPalette::light(), &LKPalette::dark()}) {
        EXPECT_EQ(palette->aiGradient(),
                  (QList{palette->accent, palette->info, palette->accent, palette->info, palette->accent}));
    }
}

TEST(LKPalette, SelectedSurfaceIsTheSubtleAccentAndCardsAreElevatedInLightOnly)
{
    for (const LKPalette *palette : {&LKPalette::light(), &LKPalette::dark()}) {
        EXPECT_EQ(palette->surfaceSelected, palette->accentSubtle);
    }
    EXPECT_EQ(LKPalette::light().surfaceCard, LKPalette::light().surfaceElevated);
    EXPECT_NE(LKPalette::dark().surfaceCard, LKPalette::dark().surfaceElevated);
}

TEST(LK, IsDarkAndMovesUntilTheProgramSaysOtherwise)
{
    EXPECT_EQ(LK::instance().theme(), LK::Theme::Dark);
    EXPECT_EQ(LK::instance().palette(), LKPalette::dark());
    EXPECT_FALSE(LK::instance().boringMode());
}

TEST(LK, GivesHalfPointsTheirOwnSize)
{
    const QFont eleven = LK::instance().font(11);
    const QFont elevenAndAHalf = LK::instance().font(11.5, QFont::DemiBold);
    EXPECT_NEAR(elevenAndAHalf.pointSizeF() / eleven.pointSizeF(), 11.5 / 11, 1e-9);
    EXPECT_EQ(elevenAndAHalf.weight(), QFont::DemiBold);
}

TEST(LK, LaysOneColourOverAnotherAsAPainterDoes)
{
    const LK &lk = LK::instance();
    const QColor white(Qt::white);
    EXPECT_EQ(lk.over(white, Qt::black), white);
    EXPECT_EQ(lk.over(Qt::transparent, Qt::black), QColor(Qt::black));
    EXPECT_EQ(lk.over(Qt::transparent, Qt::transparent).alpha(), 0);
    // Half of white over solid black is grey; over nothing it is the same half of white.
    const QColor half = QColor::fromRgbF(1, 1, 1, 0.5);
    EXPECT_EQ(lk.over(half, Qt::black).rgba(), qRgba(128, 128, 128, 255));
    EXPECT_EQ(lk.over(half, Qt::transparent).rgba(), half.rgba());
    // A colour that is nearly transparent changes nearly nothing.
    EXPECT_EQ(lk.over(half, QColor::fromRgbF(0, 0, 0, 0.001F)).red(), 255);
}

// Sizes and colours of the screens' texts, and the measures around them.
#include "design/LK.h"
#include "tests/screens/ResultsFixture.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

class TextStylesTest : public ResultsTest
{
protected:
    ~TextStylesTest() override { LK::instance().setTheme(LK::Theme::Dark); }

    // The shown piece of text itself, not a control that bears it.
    static QQuickItem *findText(QQuickItem *root, const QString &text)
    {
        for (QQuickItem *child : root->childItems()) {
            if (!child->isVisible()) {
                continue;
            }
            if (child->inherits("QQuickText") && child->property("text") == text) {
                return child;
            }
            if (QQuickItem *found = findText(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    QQuickItem *awaitText(const QString &text)
    {
        QQuickItem *item = nullptr;
        EXPECT_TRUE(waitUntil([&] { return (item = findText(scene->window().contentItem(), text)) != nullptr; }))
            << text.toStdString();
        return item;
    }

    // In both themes.
    void expectStyle(const QString &text, double size, QColor LKPalette::*color, QFont::Weight weight = QFont::Normal)
    {
        for (const LK::Theme theme : {LK::Theme::Light, LK::Theme::Dark}) {
            LK::instance().setTheme(theme);
            const QQuickItem *item = awaitText(text);
            ASSERT_NE(item, nullptr);
            EXPECT_EQ(item->property("font").value<QFont>(), LK::instance().font(size, weight)) << text.toStdString();
            EXPECT_EQ(item->property("color").value<QColor>(), LK::paletteOf(theme).*color) << text.toStdString();
        }
    }

    static void expectWhite(const QQuickItem *item, double size, QFont::Weight weight = QFont::Normal)
    {
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->property("font").value<QFont>(), LK::instance().font(size, weight));
        EXPECT_EQ(item->property("color").value<QColor>(), QColor(Qt::white));
    }

    static const QQuickItem *ancestorWith(const QQuickItem *item, const char *property)
    {
        while (item != nullptr && !item->property(property).isValid()) {
            item = item->parentItem();
        }
        return item;
    }
};

} // namespace

TEST_F(TextStylesTest, OfTheTitleLinesAndTheFooter)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    expectStyle(shoot.lastPathComponent() + u" · 2 clips · 2 bins"_s, 11.5, &LKPalette::textPrimary);
    expectStyle(u"0 vertical · 2 horizontal · native aspect kept"_s, 11, &LKPalette::textTertiary);
    expectStyle(u"Binnacle · build 7"_s, 11, &LKPalette::textTertiary);
    expectStyle(u"Model"_s, 11, &LKPalette::textSecondary);
    const QQuickItem *footer = ancestorWith(awaitText(u"Model"_s), "modelNoteOpen");
    ASSERT_NE(footer, nullptr);
    EXPECT_EQ(footer->height(), 44);
    EXPECT_EQ(awaitText(u"Binnacle · build 7"_s)->mapToItem(footer, QPointF()).x(), 16);
    const QQuickItem *exports = ancestorWith(awaitText(u"Export"_s), "kind");
    EXPECT_TRUE(waitUntil([&] {
        return exports->mapToItem(footer, {exports->width(), 0}).x() == footer->width() - 16;
    }));
    const QQuickItem *again = ancestorWith(awaitText(u"Sort Again"_s), "kind");
    EXPECT_TRUE(waitUntil([&] { return exports->x() - again->x() - again->width() == 10; }));
}

TEST_F(TextStylesTest, OfACard)
{
    sortAndShowAll({"kitchen 1"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Garage"_s);
    expectStyle(u"kitchen 1"_s, 10.5, &LKPalette::textPrimary);
    ASSERT_TRUE(waitUntil([this] { return findText(grid(), u"Garage"_s) != nullptr; }));
    const QQuickItem *tag = findText(grid(), u"Garage"_s); // the bins name it too
    expectWhite(tag, 9.5);
    EXPECT_EQ(tag->property("leftPadding"), 6);
    EXPECT_EQ(tag->property("rightPadding"), 6);
    EXPECT_EQ(tag->property("topPadding"), 2);
    EXPECT_EQ(tag->property("bottomPadding"), 2);
    const QQuickItem *card = ancestorWith(tag, "primaryBin");
    EXPECT_EQ(tag->x(), 6);
    EXPECT_EQ(tag->y() + tag->height(), 95 - 6);
    hover(card);
    expectWhite(awaitText(u"Move"_s), 9.5, QFont::Medium);
    const QQuickItem *move = ancestorWith(awaitText(u"Move"_s), "leftPadding");
    while (!move->property("down").isValid()) {
        move = move->parentItem();
    }
    EXPECT_EQ(move->height(), 18);
    EXPECT_EQ(move->property("leftPadding"), 7);
    EXPECT_EQ(move->property("rightPadding"), 7);
    EXPECT_EQ(move->y(), 6);
    EXPECT_EQ(move->x() + move->width(), card->width() - 6);
}

TEST_F(TextStylesTest, OfTheReviewList)
{
    sortAndShowAll({"kitchen 1", "dark 2"});
    expectStyle(u"1 clip Binnacle wasn't sure about"_s, 11.5, &LKPalette::textPrimary);
    expectStyle(u"dark 2.mov"_s, 11.5, &LKPalette::textPrimary);
    expectStyle(u"couldn't read any frames"_s, 11, &LKPalette::textSecondary);
    const QQuickItem *bins = findLabelled(scene->root(), u"Bin of dark 2.mov"_s);
    ASSERT_NE(bins, nullptr);
    EXPECT_EQ(bins->width(), 190);
    EXPECT_EQ(bins->parentItem()->property("spacing"), 12);
    const QQuickItem *still = bins->parentItem()->childItems().front();
    EXPECT_EQ(still->size(), QSizeF(96, 54));
}

TEST_F(TextStylesTest, OfThePreview)
{
    sortAndShowAll({"kitchen 1"});
    engine.setPreviewClip(clip(u"kitchen 1"_s));
    expectStyle(u"kitchen 1.mov"_s, 12.5, &LKPalette::textPrimary);
    expectStyle(u"0.0s · 0 × 0 · 59.94 fps"_s, 11, &LKPalette::textSecondary);
    const QQuickItem *modal = ancestorWith(awaitText(u"kitchen 1.mov"_s), "wantsPlaying");
    ASSERT_NE(modal, nullptr);
    EXPECT_EQ(modal->width(), 760);
    const QQuickItem *play = findShown(scene->root(), u"Play"_s);
    EXPECT_EQ(play->size(), QSizeF(44, 44));
    EXPECT_EQ(play->parentItem()->size(), QSizeF(760, 428));
    EXPECT_EQ(findLabelled(scene->root(), u"Bin"_s)->width(), 168);
    EXPECT_EQ(findLabelled(scene->root(), u"Second bin"_s)->width(), 168);
}

TEST_F(TextStylesTest, OfADoneExport)
{
    sortAndShowAll({"kitchen 1"});
    scene->click(u"Export"_s);
    expectStyle(shoot.lastPathComponent() + u" · event created"_s, 11.5, &LKPalette::textPrimary);
    expectStyle(u"Event created"_s, 15, &LKPalette::textPrimary);
    expectStyle(shoot.lastPathComponent() + u".fcpxml · 1 bins · 1 clips"_s, 11.5, &LKPalette::textSecondary);
    expectStyle(u"Your footage was not moved or copied."_s, 11, &LKPalette::textTertiary);
    const QQuickItem *heading = awaitText(u"Event created"_s);
    EXPECT_EQ(heading->parentItem()->property("spacing"), 14);
    const QQuickItem *mark = heading->parentItem()->childItems().front();
    EXPECT_EQ(mark->size(), QSizeF(44, 28));
    const QQuickItem *open = ancestorWith(awaitText(u"Open in Final Cut Pro"_s), "kind");
    EXPECT_EQ(open->parentItem()->property("spacing"), 8);
}

TEST_F(TextStylesTest, OfTheModelsNote)
{
    show();
    scene->click(u"What this model does"_s);
    expectStyle(u"Local: On This Mac"_s, 12, &LKPalette::textPrimary, QFont::DemiBold);
    expectStyle(u"Runs entirely on this Mac with Apple's built-in vision. Works offline, costs nothing, and no frames "
                "leave the machine."_s,
                11, &LKPalette::textSecondary);
    expectStyle(u"70% accuracy on a typical listing shoot"_s, 10.5, &LKPalette::textTertiary);
    const QQuickItem *card = awaitText(u"Local: On This Mac"_s)->parentItem();
    EXPECT_EQ(card->width(), 260);
    EXPECT_EQ(card->property("spacing"), 8);
}

namespace {

// The same while a sort is held.
class WorkingStylesTest : public GatedViewTest
{};

} // namespace

TEST_F(WorkingStylesTest, OfASortAndItsElevenStatusLines)
{
    makeClips({"kitchen 1"});
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Cancel"_s));
    const QQuickItem *line =
        findShown(scene->root(), u"A peek as they land — the full set is browsable when the sort finishes."_s);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->property("font").value<QFont>(), LK::instance().font(11));
    EXPECT_EQ(line->property("color").value<QColor>(), LKPalette::dark().textTertiary);
    const QQuickItem *column = line->parentItem();
    EXPECT_EQ(column->property("spacing"), 22);
    EXPECT_EQ(column->property("padding"), 34);
    const QQuickItem *block = column->childItems().front();
    EXPECT_EQ(block->property("spacing"), 13);
    const auto parts = block->childItems();
    ASSERT_EQ(parts.size(), 3);
    EXPECT_EQ(
        parts[0]->property("messages").toStringList(),
        (QStringList{u"Reading the frames…"_s, u"Walking every room…"_s, u"Kitchen or bathroom?…"_s,
                     u"Sniffing out drone shots…"_s, u"Finding the agent in frame…"_s, u"Peeking through doorways…"_s,
                     u"Untangling the open-plan…"_s, u"Sorting wides from details…"_s, u"Weighing the close calls…"_s,
                     u"Tallying up the bins…"_s, u"Almost got it…"_s}));
    EXPECT_EQ(parts[0]->property("round"), false);
    EXPECT_EQ(parts[1]->width(), 340);
    EXPECT_EQ(parts[2], findNamed(scene->root(), u"peek"_s));
    gate.open(1);
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(WorkingStylesTest, ATileComesWithAFadeAndGrowsFromAlmostItsSize)
{
    for (int i = 0; i < 3; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Cancel"_s));
    QQuickItem *peek = findNamed(scene->root(), u"peek"_s);
    double faintest = 1;
    double smallest = 1;
    const QObject watch; // goes before what it writes to
    QObject::connect(&scene->window(), &QQuickWindow::afterAnimating, &watch, [&] {
        for (const QQuickItem *tile : peek->property("contentItem").value<QQuickItem *>()->childItems()) {
            if (tile->property("fileName").isValid()) {
                faintest = std::min(faintest, tile->opacity());
                smallest = std::min(smallest, tile->scale());
                EXPECT_EQ(tile->transformOrigin(), QQuickItem::Center);
            }
        }
    });
    gate.open(2);
    EXPECT_TRUE(waitUntil([&] { return faintest < 1 && smallest < 1; }));
    EXPECT_GE(smallest, 0.94);
    gate.open(1);
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

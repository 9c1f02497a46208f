#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const std::string bins = "options: [{value: 'k', label: 'Kitchen'}, {value: 'b', label: 'Bathroom'}, "
                         "{value: 'd', label: 'Bedroom'}, {value: 'p', label: 'Pool'}]; objectName: 'choice'; "
                         "label: 'Bin'; ";

class Dropdown
{
public:
    explicit Dropdown(const std::string &properties, const std::string &around = "")
        : m_scene(document(around + "LKDropdown { " + properties + " }"))
    {}

    Scene &scene() { return m_scene; }
    QQuickItem *item() const { return findNamed(m_scene.root(), u"choice"_s); }
    QString selection() const { return item()->property("selection").toString(); }
    QString shown() const { return partOf(item(), "contentItem")->property("text").toString(); }
    QObject *popup() const { return item()->property("popup").value<QObject *>(); }
    bool isOpen() const { return popup()->property("opened").toBool(); }
    [[nodiscard]] bool opens() const
    {
        return waitUntil([this] { return isOpen(); });
    }
    [[nodiscard]] bool closes() const
    {
        return waitUntil([this] { return !popup()->property("visible").toBool(); });
    }
    QQuickItem *list() const { return popup()->property("contentItem").value<QQuickItem *>(); }
    QQuickItem *entry(const QString &label) const { return findShown(list(), label); }
    QString highlighted() const
    {
        const auto *row = list()->property("currentItem").value<QQuickItem *>();
        return row ? row->property("text").toString() : QString();
    }
    void click() { QTest::mouseClick(&m_scene.window(), Qt::LeftButton, {}, middleOf(item())); }
    void focus() { item()->forceActiveFocus(Qt::TabFocusReason); }

private:
    Scene m_scene;
};

} // namespace

TEST(LKDropdown, HasTheMetricsOfItsSizesAndFillsItsWidth)
{
    const double points[]{11.5, 12.5, 13};
    const double glyphs[]{10.5, 11.5, 12};
    for (int size = 0; size < 3; ++size) {
        const Dropdown dropdown(bins + "selection: 'k'; size: " + std::to_string(size));
        const QQuickItem *text = partOf(dropdown.item(), "contentItem");
        const QQuickItem *glyph = partOf(dropdown.item(), "indicator");
        EXPECT_EQ(dropdown.item()->height(), 22 + 4 * size);
        EXPECT_TRUE(hasFont(text, points[size], QFont::Normal));
        EXPECT_TRUE(hasFont(glyph, glyphs[size], QFont::Normal));
        EXPECT_EQ(glyph->property("text").toString(), u"▾"_s);
        EXPECT_EQ(text->x(), 9);
        EXPECT_NEAR(glyph->x(), text->x() + text->width() + 6, 0.01);
        EXPECT_NEAR(dropdown.item()->width(), 9 + text->implicitWidth() + 6 + glyph->width() + 9, 0.01);
        EXPECT_NEAR(dropdown.item()->width(), glyph->x() + glyph->width() + 9, 0.01);
        EXPECT_EQ(partOf(dropdown.item(), "background")->property("radius").toDouble(), 5);
    }
    const Dropdown wide(bins + "selection: 'k'; width: 190");
    const QQuickItem *glyph = partOf(wide.item(), "indicator");
    EXPECT_NEAR(glyph->x() + glyph->width(), 190 - 9, 0.01);
}

TEST(LKDropdown, HasTheFillBorderAndWeightOfItsTone)
{
    for (const LK::Theme theme : {LK::Theme::Light, LK::Theme::Dark}) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        const auto faint = [](QColor color) {
            color.setAlphaF(static_cast<float>(color.alphaF() * 0.55));
            return color;
        };
        struct Expected
        {
            QColor rest;
            QColor hover;
            QColor border;
            double width;
            int weight;
        };
        const Expected expected[]{
            {palette.surfaceCard, palette.surfaceHover, palette.borderStrong, 1, QFont::Normal},
            {faint(palette.warningSubtle), palette.warningSubtle, palette.warning, 1.5, QFont::Medium},
            {faint(palette.dangerSubtle), palette.dangerSubtle, palette.danger, 1.5, QFont::Medium},
            {palette.surfaceCard, palette.surfaceHover, QColor(Qt::transparent), 0, QFont::Medium},
        };
        for (int tone = 0; tone < 4; ++tone) {
            Dropdown dropdown(bins + "selection: 'k'; tone: " + std::to_string(tone));
            const QQuickItem *frame = partOf(dropdown.item(), "background");
            const auto *border = frame->property("border").value<QObject *>();
            EXPECT_EQ(colorOf(frame).rgba(), expected[tone].rest.rgba()) << tone;
            EXPECT_EQ(frame->property("stroke").value<QColor>(), expected[tone].border) << tone;
            EXPECT_EQ(border->property("width").toDouble(), expected[tone].width) << tone;
            EXPECT_EQ(frame->childItems().constFirst()->isVisible(), tone == 3); // the gradient
            EXPECT_TRUE(hasFont(partOf(dropdown.item(), "contentItem"), 12.5, expected[tone].weight));
            QTest::mouseMove(&dropdown.scene().window(), middleOf(dropdown.item()));
            EXPECT_TRUE(becomes(frame, expected[tone].hover)) << tone;
        }
    }
}

TEST(LKDropdown, OpensByAClickAnywhereOnTheLabelAndWritesTheChoice)
{
    Dropdown dropdown(bins + "selection: page.stored; onActivated: page.stored = selection",
                      "property string stored: 'k'\n");
    EXPECT_EQ(dropdown.shown(), u"Kitchen"_s);
    QTest::mouseClick(&dropdown.scene().window(), Qt::LeftButton, {}, QPoint(2, 2));
    ASSERT_TRUE(dropdown.opens());
    QTest::mouseClick(&dropdown.scene().window(), Qt::LeftButton, {}, middleOf(dropdown.entry(u"Pool"_s)));
    EXPECT_TRUE(dropdown.closes());
    EXPECT_EQ(dropdown.scene().root()->property("stored").toString(), u"p"_s);
    EXPECT_EQ(dropdown.shown(), u"Pool"_s);
    dropdown.scene().root()->setProperty("stored", u"d"_s);
    EXPECT_EQ(dropdown.shown(), u"Bedroom"_s);
}

TEST(LKDropdown, ListsItsOptionsInOrderWithDisabledOnesThatCannotBeChosen)
{
    Dropdown dropdown(bins + "selection: 'k'; disabledValues: ['b']");
    dropdown.click();
    ASSERT_TRUE(dropdown.opens());
    double y = -1;
    for (const QString &label : {u"Kitchen"_s, u"Bathroom"_s, u"Bedroom"_s, u"Pool"_s}) {
        const QQuickItem *entry = dropdown.entry(label);
        ASSERT_NE(entry, nullptr);
        EXPECT_GT(entry->y(), y);
        y = entry->y();
        EXPECT_EQ(entry->isEnabled(), label != u"Bathroom"_s);
    }
    EXPECT_EQ(colorOf(partOf(dropdown.entry(u"Bathroom"_s), "contentItem")), LK::instance().palette().textDisabled);
    QTest::mouseClick(&dropdown.scene().window(), Qt::LeftButton, {}, middleOf(dropdown.entry(u"Bathroom"_s)));
    EXPECT_TRUE(dropdown.isOpen());
    EXPECT_EQ(dropdown.selection(), u"k"_s);
    dropdown.scene().key(Qt::Key_Down);
    EXPECT_EQ(dropdown.highlighted(), u"Bedroom"_s);
}

TEST(LKDropdown, IsWalkedByKeysWhileOpenAndChoosesWithReturnOrSpace)
{
    Dropdown dropdown(bins + "selection: 'k'");
    dropdown.focus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        dropdown.scene().key(key);
        ASSERT_TRUE(dropdown.opens());
        dropdown.scene().key(Qt::Key_End);
        EXPECT_EQ(dropdown.highlighted(), u"Pool"_s);
        dropdown.scene().key(Qt::Key_Up);
        EXPECT_EQ(dropdown.highlighted(), u"Bedroom"_s);
        dropdown.scene().key(Qt::Key_Home);
        dropdown.scene().key(Qt::Key_Down);
        EXPECT_EQ(dropdown.highlighted(), u"Bathroom"_s);
        dropdown.scene().key(key);
        EXPECT_TRUE(dropdown.closes());
        EXPECT_EQ(dropdown.selection(), u"b"_s);
        dropdown.item()->setProperty("selection", u"k"_s);
    }
}

TEST(LKDropdown, EscapeClosesItWithoutAChoice)
{
    Dropdown dropdown(bins + "selection: 'k'");
    dropdown.focus();
    dropdown.scene().key(Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(dropdown.opens());
    dropdown.scene().key(Qt::Key_Down);
    dropdown.scene().key(Qt::Key_Escape);
    EXPECT_TRUE(dropdown.closes());
    EXPECT_EQ(dropdown.selection(), u"k"_s);
}

TEST(LKDropdown, ChoosesByArrowsAndTypedLettersWhileClosed)
{
    Dropdown dropdown(bins + "selection: 'k'; disabledValues: ['b']");
    dropdown.focus();
    dropdown.scene().key(Qt::Key_Down);
    EXPECT_EQ(dropdown.selection(), u"d"_s);
    dropdown.scene().key(Qt::Key_Up);
    EXPECT_EQ(dropdown.selection(), u"k"_s);
    dropdown.scene().key(Qt::Key_Up);
    EXPECT_EQ(dropdown.selection(), u"k"_s);
    dropdown.scene().key(Qt::Key_P);
    EXPECT_EQ(dropdown.selection(), u"p"_s);
    EXPECT_FALSE(dropdown.isOpen());
}

TEST(LKDropdown, OpensItsListForArrowsAndLettersWhereNothingMayBeChosenClosed)
{
    for (const auto &[key, shown] : {std::pair{Qt::Key_Down, u"Bathroom"_s},
                                     {Qt::Key_Up, u"Bathroom"_s},
                                     {Qt::Key_Home, u"Kitchen"_s},
                                     {Qt::Key_End, u"Pool"_s},
                                     {Qt::Key_P, u"Pool"_s}}) {
        Dropdown dropdown(bins + "selection: 'b'; choosesClosed: false");
        dropdown.focus();
        dropdown.scene().key(key);
        EXPECT_TRUE(dropdown.opens());
        EXPECT_EQ(dropdown.highlighted(), shown);
        dropdown.scene().key(Qt::Key_Escape);
        EXPECT_TRUE(dropdown.closes());
        EXPECT_EQ(dropdown.selection(), u"b"_s);
    }
}

TEST(LKDropdown, TheRowsOfAListThatScrollsEndBesideItsBar)
{
    for (const auto &[count, left] : {std::pair{4, 0}, std::pair{40, 8}}) {
        Dropdown dropdown("objectName: 'choice'; selection: 0; options: Array.from({length: " + std::to_string(count) +
                          "}, (item, i) => ({value: i, label: 'Room ' + i}))");
        dropdown.click();
        ASSERT_TRUE(dropdown.opens());
        const auto *row = dropdown.list()->property("currentItem").value<QQuickItem *>();
        EXPECT_EQ(dropdown.list()->width() - row->width(), left) << count;
    }
}

TEST(LKDropdown, FindsWhatIsTypedByItsFirstLettersAndGoesRoundByOne)
{
    Dropdown dropdown(bins + "selection: 'k'");
    dropdown.focus();
    dropdown.scene().key(Qt::Key_B);
    EXPECT_EQ(dropdown.selection(), u"b"_s);
    dropdown.scene().key(Qt::Key_E);
    EXPECT_EQ(dropdown.selection(), u"d"_s);
    Dropdown again(bins + "selection: 'k'");
    again.focus();
    for (const QString &expected : {u"b"_s, u"d"_s, u"b"_s}) {
        again.scene().key(Qt::Key_B);
        EXPECT_EQ(again.selection(), expected);
    }
}

TEST(LKDropdown, WithASelectionOutsideItsOptionsShowsAnEmptyLabelAndStaysUsable)
{
    Dropdown dropdown(bins + "selection: 'x'");
    EXPECT_EQ(dropdown.shown(), QString());
    dropdown.click();
    ASSERT_TRUE(dropdown.opens());
    QTest::mouseClick(&dropdown.scene().window(), Qt::LeftButton, {}, middleOf(dropdown.entry(u"Kitchen"_s)));
    EXPECT_TRUE(dropdown.closes());
    EXPECT_EQ(dropdown.selection(), u"k"_s);
    EXPECT_EQ(dropdown.shown(), u"Kitchen"_s);
}

TEST(LKDropdown, StandsNoOptions)
{
    Dropdown dropdown("objectName: 'choice'");
    EXPECT_EQ(dropdown.shown(), QString());
    dropdown.focus();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_A, Qt::Key_Space}) {
        dropdown.scene().key(key);
    }
    EXPECT_EQ(dropdown.shown(), QString());
}

TEST(LKDropdown, KeepsItsSelectionWhenItsOptionsChange)
{
    Dropdown dropdown(bins + "selection: 'p'");
    dropdown.item()->setProperty("options",
                                 QVariantList{QVariantMap{{u"value"_s, u"x"_s}, {u"label"_s, u"Garage"_s}},
                                              QVariantMap{{u"value"_s, u"p"_s}, {u"label"_s, u"Swimming"_s}}});
    EXPECT_EQ(dropdown.shown(), u"Swimming"_s);
    dropdown.item()->setProperty("options", QVariantList{});
    EXPECT_EQ(dropdown.shown(), QString());
    EXPECT_EQ(dropdown.selection(), u"p"_s);
}

TEST(LKDropdown, ScrollsALongListThatNeverLeavesTheWindow)
{
    const std::string many =
        "objectName: 'choice'; options: Array.from({length: 40}, (unused, i) => ({value: i, label: "
        "'Entry ' + i})); selection: 0; ";
    for (const int y : {4, 150, 370}) {
        Dropdown dropdown(many + "x: 500; y: " + std::to_string(y));
        dropdown.focus();
        dropdown.click();
        ASSERT_TRUE(dropdown.opens());
        const QQuickItem *panel = dropdown.list()->parentItem();
        const QRectF place = panel->mapRectToScene(panel->boundingRect());
        EXPECT_TRUE(QRectF(6, 6, 588, 388).contains(place)) << y << ": " << place.top() << " to " << place.bottom();
        EXPECT_EQ(place.top() > y, y != 370) << y; // below where there is more room, above at the bottom
        dropdown.scene().key(Qt::Key_End);
        EXPECT_EQ(dropdown.highlighted(), u"Entry 39"_s);
        EXPECT_TRUE(waitUntil([&] {
            const QQuickItem *last = dropdown.entry(u"Entry 39"_s);
            return last && place.contains(last->mapRectToScene(last->boundingRect()));
        }));
    }
}

TEST(LKDropdown, IsAComboBoxThatTellsItsChoiceToAssistiveTechnology)
{
    Dropdown dropdown(bins + "selection: 'k'");
    QAccessibleInterface *told = accessible(dropdown.item());
    EXPECT_EQ(told->role(), QAccessible::ComboBox);
    EXPECT_EQ(told->text(QAccessible::Name), u"Bin"_s);
    EXPECT_EQ(told->text(QAccessible::Description), u"Kitchen"_s);
    told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(dropdown.opens());
    QQuickItem *entry = dropdown.entry(u"Pool"_s);
    EXPECT_EQ(accessible(entry)->role(), QAccessible::ListItem);
    accessible(entry)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(dropdown.selection(), u"p"_s);
}

TEST(LKDropdown, IsMirroredInARightToLeftLayout)
{
    const Dropdown dropdown(bins + "selection: 'k'; LayoutMirroring.enabled: true; "
                                   "LayoutMirroring.childrenInherit: true; width: 200");
    const QQuickItem *glyph = partOf(dropdown.item(), "indicator");
    const QQuickItem *text = partOf(dropdown.item(), "contentItem");
    EXPECT_EQ(glyph->x(), 9);
    EXPECT_NEAR(text->x(), 9 + glyph->width() + 6, 0.01);
    EXPECT_EQ(text->property("effectiveHorizontalAlignment").toInt(), Qt::AlignRight);
}

TEST(LKDropdown, ADisabledOneDimsAndDoesNotOpen)
{
    Dropdown dropdown(bins + "selection: 'k'; enabled: false");
    dropdown.click();
    EXPECT_FALSE(dropdown.popup()->property("visible").toBool());
    EXPECT_EQ(dropdown.item()->opacity(), 0.45);
}

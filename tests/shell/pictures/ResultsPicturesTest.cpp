// A sorted shoot: its bins, its clips, and those to look at.
#include "core/bins/RoomLabel.h"
#include "tests/shell/pictures/ScreenPictures.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST_F(ScreenPictures, TheResults)
{
    openInCorner();
    sortSample();
    engine.setSelectedBin(u"Kitchen"_s);
    (void)shown(u"A001_C003_1120"_s);
    picture(u"results-bin"_s);
    picture(u"results-hover"_s, [this] { Desktop::moveTo(shown(u"A001_C003_1120"_s)); });
    picture(u"results-move"_s, [this] {
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        Desktop::moveTo(shown(u"A001_C004_1120"_s));
        Desktop::click(shown(u"Move"_s));
        (void)shown(u"Amenities / Other"_s);
    });
    Desktop::key(u"Escape"_s);
    const auto closeMenus = [this] {
        Desktop::moveTo(shown(u"Export"_s)); // from an entry whose menu would open again
        Desktop::key(u"Escape"_s);           // the inner menu, then the outer one
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Reveal in Finder"_s));
    };
    picture(u"results-menu"_s, [&] {
        closeMenus();
        findNamed(window->contentItem(), u"clips"_s)->forceActiveFocus(Qt::TabFocusReason);
        Desktop::key(u"Home"_s);
        Desktop::key(u"Menu"_s);
        Desktop::click(shown(u"Also Tag"_s));
        (void)shown(u"Amenities / Other"_s);
    });
    closeMenus();
    engine.setSelectedBin(u"Aerial / Drone"_s);
    (void)shown(u"DJI_0021"_s);
    picture(u"results-aerial"_s);
    SortOptions options = engine.options();
    options.showClipCounts = false;
    engine.setOptions(options);
    engine.confirmAll();
    picture(u"results-quiet"_s);
}

TEST_F(ScreenPictures, TheReview)
{
    mayBeElided.insert(u"A001_C020 lens cap still on, first take after lunch break.mov"_s);
    openInCorner();
    sortSample();
    engine.setSelectedBin(reviewKey());
    (void)shown(u"Confirm All"_s);
    picture(u"review"_s);
    picture(u"review-hover"_s, [this] { Desktop::moveTo(shown(u"A001_C005_1120.mov"_s)); });
    Desktop::key(u"Tab"_s); // out of the sidebar
    Desktop::key(u"Tab"_s);
    picture(u"review-picker"_s, [this] {
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        findNamed(window->contentItem(), u"review"_s)->forceActiveFocus(Qt::TabFocusReason);
        Desktop::key(u"Home"_s);
        Desktop::key(u"m"_s);
        (void)shown(u"Amenities / Other"_s);
    });
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Amenities / Other"_s));
    picture(u"review-picker-letter"_s, [this] { // of the last row, which opens upwards
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        findNamed(window->contentItem(), u"review"_s)->forceActiveFocus(Qt::TabFocusReason);
        Desktop::key(u"End"_s);
        Desktop::key(u"m"_s);
        (void)shown(u"Laundry Room"_s);
        const QString name = u"Bin of A001_C020 lens cap still on, first take after lunch break.mov"_s;
        const auto isAt = [&](const QString &bin) {
            const QQuickItem &picker = control(name);
            const int index = picker.property("highlightedIndex").toInt();
            return index == picker.property("names").toStringList().indexOf(bin);
        };
        ASSERT_TRUE(waitUntil([&] { return isAt(u"Unsorted"_s); }));
        Desktop::key(u"l"_s);
        ASSERT_TRUE(waitUntil([&] { return isAt(u"Laundry Room"_s); }));
        Desktop::key(u"l"_s);
        ASSERT_TRUE(waitUntil([&] { return isAt(u"Living Room"_s); }));
    });
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Amenities / Other"_s));
    for (const auto &clip : engine.clipsInBin(reviewKey())) {
        if (clip != engine.clipsInBin(reviewKey()).front()) {
            engine.confirm(clip->id);
        }
    }
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    picture(u"review-one"_s);
}

// A card that is mounted while the editor is at something else.
#include <fstream>

#include "design/IntroSequence.h"
#include "tests/output/DeviceTree.h"
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Before the window's fixture, which hands it on.
struct CardReader
{
    CardReader() { tree.addCardReader("8:17"); }

    DeviceTree tree;
    const TempFolder world;
    const std::filesystem::path mounts = world.write("mounts");
};

class CardOfferTest : protected CardReader, public ShellWindowTest
{
protected:
    CardOfferTest() : ShellWindowTest({}, VolumeWatcher::System{.mountTable = mounts, .deviceTree = tree.path()})
    {
        engine.setImportRoot(FileUrl(desk.path()));
        QObject::connect(&watcher, &VolumeWatcher::accepted, [this] { ++accepted; });
    }

    // Puts a card in; returns once it is on offer and, past the intro, once the offer has come up.
    void insertCard(const std::string &name = "CARD")
    {
        (void)world.write(name + "/DCIM/100/C1.MP4");
        std::ofstream(mounts, std::ios::app) << "80 27 8:17 / " << (world / name).string() << " rw - exfat source rw\n";
        watcher.handleMount(FileUrl(world / name));
        ASSERT_TRUE(waitUntil([&] {
            return watcher.pendingCandidate() &&
                   watcher.pendingCandidate()->displayName == QString::fromStdString(name);
        }));
        ASSERT_TRUE(waitUntil([this] {
            return app.phase() == AppState::Phase::Intro ||
                   overlay(u"importPromptOverlay"_s).property("opened").toBool();
        }));
    }

    QObject &overlay(const QString &name) const { return *window->findChild<QObject *>(name); }
    bool isOffered() const { return watcher.pendingCandidate().has_value(); }
    QQuickItem *field() const { return findLabelled(window->contentItem(), u"Account name"_s); }

    // Opens Preferences at a field and puts the keyboard into it.
    void write()
    {
        app.setAccountName(u"A"_s);
        app.openPreferences();
        app.setProperty("preferencesTab", u"Account"_s);
        ASSERT_TRUE(waitUntil(
            [this] { return field() != nullptr && overlay(u"preferencesOverlay"_s).property("opened").toBool(); }));
        field()->forceActiveFocus();
        ASSERT_TRUE(waitUntil([this] { return field()->hasActiveFocus(); }));
    }

    int accepted = 0;
};

} // namespace

TEST_F(CardOfferTest, ReturnAcceptsOnceTheOfferHasBeenLookedAt)
{
    open();
    insertCard();
    ASSERT_TRUE(hasKeyboard(u"Import && Sort"_s));
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return accepted == 1; }));
}

TEST_F(CardOfferTest, DuringACopySaysThatAcceptingStopsItForAsLongAsItRuns)
{
    const QString warning = u"Importing this card stops the copy that is running."_s;
    open();
    sort();
    startCopy();
    insertCard();
    (void)shown(warning);
    copying.open();
    EXPECT_TRUE(goes(warning));
    EXPECT_TRUE(isOffered());
    EXPECT_TRUE(reaches(engine, StageKind::done));
}

TEST_F(CardOfferTest, WhatIsWrittenInPreferencesGoesOnBeingWrittenThere)
{
    open();
    write();
    insertCard();
    Desktop::key(u"space"_s);
    ASSERT_TRUE(waitUntil([this] { return app.accountName() == u"A "_s; }));
    Desktop::key(u"Return"_s);
    Desktop::key(u"b"_s);
    ASSERT_TRUE(waitUntil([this] { return app.accountName() == u"A b"_s; }));
    EXPECT_TRUE(isOffered());
    Desktop::key(u"Escape"_s); // of Preferences, which lie above
    ASSERT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
    EXPECT_TRUE(hasKeyboard(u"Import && Sort"_s));
    EXPECT_TRUE(isOffered());
    EXPECT_EQ(accepted, 0);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return accepted == 1; }));
}

TEST_F(CardOfferTest, ThePreviewKeepsTheKeyboard)
{
    open();
    sort();
    engine.setSelectedBin(u"Kitchen"_s);
    Desktop::click(shown(u"kitchen 1"_s));
    (void)shown(u"Play"_s);
    ASSERT_TRUE(hasKeyboard(u"Play"_s));
    insertCard();
    Desktop::key(u"space"_s);
    EXPECT_TRUE(goes(u"Play"_s));
    Desktop::key(u"Return"_s);
    drain();
    EXPECT_TRUE(isOffered());
    EXPECT_TRUE(engine.hasPreview());
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
    EXPECT_TRUE(hasKeyboard(u"Import && Sort"_s));
    EXPECT_TRUE(isOffered());
    EXPECT_EQ(accepted, 0);
}

TEST_F(CardOfferTest, ANameThatIsBeingWrittenBelowIsFinishedFirst)
{
    open();
    sort();
    Desktop::click(shown(u"Projects"_s));
    ASSERT_TRUE(hasKeyboard(u"New Project"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(shoot.lastPathComponent()));
    Desktop::key(u"F2"_s);
    ASSERT_TRUE(
        waitUntil([this] { return window->activeFocusItem()->property("selectedText") == shoot.lastPathComponent(); }));
    Desktop::key(u"V"_s);
    ASSERT_TRUE(hasKeyboard(u"V"_s));
    insertCard();
    Desktop::key(u"space"_s);
    ASSERT_TRUE(hasKeyboard(u"V "_s));
    Desktop::key(u"x"_s);
    ASSERT_TRUE(hasKeyboard(u"V x"_s));
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.projects().front().name == u"V x"_s; }));
    EXPECT_TRUE(hasKeyboard(u"Import && Sort"_s)); // now that nothing is written any more
    EXPECT_TRUE(isOffered());
    EXPECT_EQ(accepted, 0);
}

TEST_F(CardOfferTest, EscapeClosesThePreviewThenPreferencesThenTheOffer)
{
    open();
    sort();
    insertCard();
    engine.setPreviewClip(engine.clips().front());
    app.openPreferences();
    for (const QString &name : {u"importPromptOverlay"_s, u"previewOverlay"_s, u"preferencesOverlay"_s}) {
        ASSERT_TRUE(waitUntil([&] { return overlay(name).property("opened").toBool(); })) << name.toStdString();
    }
    const auto levelOf = [this](const QString &name) { return overlay(name).property("z").toDouble(); };
    EXPECT_LT(levelOf(u"importPromptOverlay"_s), levelOf(u"previewOverlay"_s));
    EXPECT_LT(levelOf(u"previewOverlay"_s), levelOf(u"preferencesOverlay"_s));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
    EXPECT_TRUE(app.property("showPreferences").toBool());
    EXPECT_TRUE(isOffered());
    ASSERT_TRUE(waitUntil([this] { return !overlay(u"previewOverlay"_s).property("visible").toBool(); }));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
    EXPECT_TRUE(isOffered());
    ASSERT_TRUE(waitUntil([this] { return !overlay(u"preferencesOverlay"_s).property("visible").toBool(); }));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !isOffered(); }));
    EXPECT_TRUE(app.isSortToolOpen());
    EXPECT_EQ(accepted, 0);
}

TEST_F(CardOfferTest, IsNotShownDuringTheIntroAndEscapeWithdrawsIt)
{
    openInIntro();
    auto *intro = window->findChild<IntroSequence *>();
    ASSERT_NE(intro, nullptr);
    QObject::disconnect(intro, &IntroSequence::finished, nullptr, nullptr); // lasts as long as the test
    insertCard();
    drain();
    ASSERT_EQ(app.phase(), AppState::Phase::Intro);
    EXPECT_FALSE(overlay(u"importPromptOverlay"_s).property("visible").toBool());
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !isOffered(); }));
}

TEST_F(CardOfferTest, AQuestionOnClosingKeepsTheKeyboard)
{
    open();
    sort();
    startCopy();
    window->close();
    ASSERT_TRUE(hasKeyboard(u"Finish, Then Close"_s));
    insertCard();
    Desktop::key(u"Tab"_s); // to another answer
    ASSERT_TRUE(waitUntil([this] {
        const QString answer = window->activeFocusItem()->property("text").toString();
        return answer == u"Keep Open"_s || answer == u"Stop and Close"_s;
    }));
    EXPECT_TRUE(isOffered());
    copying.open();
    EXPECT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(accepted, 0);
}

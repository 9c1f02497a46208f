// The menu of the window, and the diagnostics that it writes.
#include <QtCore/QScopeGuard>

#include "tests/shell/ShellWindow.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

class MenuTest : public ShellWindowTest
{
protected:
    MenuTest() { qputenv("HOME", QByteArray::fromStdString(desk.path().string())); }
    ~MenuTest() override { qputenv("HOME", home); }

    void openDiagnostics()
    {
        openMenu();
        Desktop::click(shown(u"Diagnostics"_s));
        (void)shown(u"Export Vision Vocabulary…"_s);
    }

    // The panel for a file, with its suggestion. It takes keyboard focus once it has faded in.
    void awaitPanel()
    {
        ASSERT_TRUE(waitUntil([this] { return fileRequest.browser()->canAccept(); }));
        ASSERT_TRUE(hasKeyboard(fileRequest.browser()->fileName()));
    }

    const QByteArray home = qgetenv("HOME");
};

} // namespace

TEST_F(MenuTest, PreferencesAreReachedByTheKeyboardAlone)
{
    open();
    openMenu();
    Desktop::key(u"Down"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return app.property("showPreferences").toBool(); }));
}

TEST_F(MenuTest, WithoutClipsOnlyTheVocabularyCanBeExported)
{
    open();
    openDiagnostics();
    EXPECT_FALSE(shown(u"Export Clip Diagnostics (CSV)…"_s).isEnabled());
    Desktop::click(shown(u"Export Vision Vocabulary…"_s));
    awaitPanel();
    Desktop::key(u"Return"_s);
    const fs::path file = desk / "vision-vocabulary.txt";
    EXPECT_TRUE(waitUntil([&] { return fs::exists(file); }));
    EXPECT_EQ(bytesOf(file), "bed\nsofa");
}

TEST_F(MenuTest, TheDiagnosticsOfTheClipsAreWrittenWhereTheEditorSays)
{
    open();
    sort();
    openDiagnostics();
    Desktop::click(shown(u"Export Clip Diagnostics (CSV)…"_s));
    awaitPanel();
    Desktop::click(shown(u"Save"_s));
    const fs::path file = desk / "binnacle-diagnostics.csv";
    EXPECT_TRUE(waitUntil([&] { return fs::exists(file); }));
    EXPECT_THAT(bytesOf(file),
                testing::StartsWith("clip,primary_bin,extra_bins,confidence,human_fraction,vertical,identifier,"
                                    "identifier_confidence\n"));
}

TEST_F(MenuTest, AFileThatCannotBeWrittenIsSaidAndNothingIsLeft)
{
    open();
    openDiagnostics();
    Desktop::click(shown(u"Export Vision Vocabulary…"_s));
    awaitPanel();
    fs::permissions(desk.path(), fs::perms(0755));
    {
        const Unprivileged user; // may read the folder, but not write into it
        Desktop::click(shown(u"Save"_s));
        (void)shown(u"The file couldn't be written"_s);
    }
    (void)shown(u"Permission denied"_s);
    Desktop::click(shown(u"OK"_s));
    EXPECT_TRUE(goes(u"The file couldn't be written"_s));
    EXPECT_FALSE(fs::exists(desk / "vision-vocabulary.txt"));
}

TEST_F(MenuTest, ExportForWritesTheShootInTheChosenFormatByKeyboardAndReveals)
{
    open();
    openMenu();
    EXPECT_FALSE(shown(u"Export For…"_s).isEnabled());
    closeMenu();
    sort();
    openMenu();
    Desktop::click(shown(u"Export For…"_s));
    ASSERT_TRUE(waitUntil([this] { return handoff.isShown(); }));
    ASSERT_TRUE(hasKeyboard(u"Export"_s));
    Desktop::click(shown(u"Keywords as a table (CSV)"_s));
    ASSERT_TRUE(waitUntil([this] { return handoff.format() == u"csv"_s; }));
    Desktop::click(shown(u"A Mac"_s));
    ASSERT_TRUE(waitUntil([this] { return handoff.place() == u"mac"_s; }));
    (void)shown(u"Writes "_s + handoff.file());
    // The sheet's: the footer below has one too.
    Desktop::click(*findShown(shown(u"Export For…"_s).parentItem(), u"Export"_s));
    (void)shown(u"Written: "_s + handoff.file());
    EXPECT_THAT(bytesOf(handoff.file().toStdString()), testing::StartsWith("File Name,Clip Directory,"));
    ASSERT_TRUE(hasKeyboard(u"Reveal"_s));
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return revealed.size() == 1; }));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !handoff.isShown(); }));
}

TEST_F(MenuTest, ExportForShowsHowFarItHasReadTheTimecodesAndCanBeLeftMeanwhile)
{
    open();
    sort();
    holdsTimecodes = true;
    const auto lets = qScopeGuard([this] { reading.open(100); });
    handoff.open();
    Desktop::click(shown(u"Event with camera timecode"_s));
    ASSERT_TRUE(waitUntil([this] { return handoff.format() == u"fcpxml-timecode"_s; }));
    (void)shown(u"Writes "_s + handoff.file());
    const QQuickItem &button = *findShown(shown(u"Export For…"_s).parentItem(), u"Export"_s);
    Desktop::click(button);
    (void)shown(u"Reading the clips' timecodes"_s);
    (void)shown(u"0 of 2"_s);
    EXPECT_FALSE(isShown(u"Writes "_s + handoff.file()));
    EXPECT_FALSE(button.isEnabled());
    ASSERT_TRUE(hasKeyboard(u"Cancel"_s));
    reading.open();
    (void)shown(u"1 of 2"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return !handoff.isShown(); }));
    EXPECT_FALSE(handoff.isReading());
    reading.open(100);
    handoff.open();
    (void)shown(u"Writes "_s + handoff.file());
    ASSERT_TRUE(hasKeyboard(u"Export"_s));
    Desktop::key(u"Return"_s);
    (void)shown(u"Written: "_s + handoff.file());
    EXPECT_TRUE(hasKeyboard(u"Reveal"_s));
}

TEST_F(MenuTest, TheArrowsWalkTheFormatsOfExportFor)
{
    open();
    sort();
    handoff.open();
    Desktop::click(shown(u"Kdenlive project"_s));
    Desktop::key(u"Down"_s);
    EXPECT_TRUE(waitUntil([this] { return handoff.format() == u"fcpxml-timeline"_s; }));
    Desktop::key(u"Up"_s);
    EXPECT_TRUE(waitUntil([this] { return handoff.format() == u"kdenlive"_s; }));
}

TEST_F(MenuTest, CheckCoverageSaysWhatIsMissingAndKeepsWhatTheEditorTicks)
{
    open();
    openMenu();
    EXPECT_FALSE(shown(u"Check Coverage…"_s).isEnabled());
    closeMenu();
    sort();
    openMenu();
    Desktop::click(shown(u"Check Coverage…"_s));
    (void)shown(u"Missing: Bathroom, Bedroom, Living Room, Exterior Front, Exterior Back"_s);
    (void)shown(u"One take only: Kitchen"_s);
    ASSERT_TRUE(hasKeyboard(u"Done"_s));
    Desktop::click(shown(u"Bathroom"_s));
    (void)shown(u"Missing: Bedroom, Living Room, Exterior Front, Exterior Back"_s);
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"Bedroom"_s));
    Desktop::key(u"space"_s);
    (void)shown(u"Missing: Living Room, Exterior Front, Exterior Back"_s);
    Desktop::key(u"Right"_s);
    ASSERT_TRUE(hasKeyboard(u"Exterior Back"_s));
    Desktop::key(u"Return"_s);
    (void)shown(u"Missing: Living Room, Exterior Front"_s);
    Desktop::key(u"Tab"_s);
    ASSERT_TRUE(hasKeyboard(u"Done"_s));
    Desktop::key(u"shift+Tab"_s);
    ASSERT_TRUE(hasKeyboard(u"Exterior Back"_s)); // the one stop among the bins
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !coverage.isShown(); }));
    ASSERT_TRUE(goes(u"Coverage"_s));

    SettingsStore next{QString::fromStdString((desk / "settings.ini").string())}; // of a program that starts now
    CoverageCheck again(engine, next);
    again.open();
    EXPECT_EQ(again.missing(), u"Missing: Living Room, Exterior Front"_s);
}

TEST_F(MenuTest, CoverageIsCheckedFromTheDoneScreenToo)
{
    open();
    sort();
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    openMenu();
    Desktop::click(shown(u"Check Coverage…"_s));
    (void)shown(u"One take only: Kitchen"_s);
    Desktop::key(u"Return"_s); // of "Done"
    EXPECT_TRUE(waitUntil([this] { return !coverage.isShown(); }));
}

TEST_F(MenuTest, TheDoneScreenOffersExportForToo)
{
    open();
    sort();
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    Desktop::click(shown(u"Export For…"_s));
    EXPECT_TRUE(waitUntil([this] { return handoff.isShown(); }));
}

TEST_F(MenuTest, VerificationIsTurnedOnAndOffAndStored)
{
    open();
    for (const bool on : {true, false}) {
        openMenu();
        Desktop::click(shown(on ? u"Verify Copies Byte for Byte"_s : u"✓ Verify Copies Byte for Byte"_s));
        ASSERT_TRUE(waitUntil(
            [&] { return engine.options().verifyLevel == (on ? VerifyLevel::checksum : VerifyLevel::sizeOnly); }));
        ASSERT_TRUE(goes(u"Preferences…"_s));
        EXPECT_EQ(store.string(u"lkVerifyLevel"_s), on ? u"checksum"_s : u"sizeOnly"_s);
    }
}

TEST_F(MenuTest, ACopyIsReportedFromTheMenuAndFromTheDoneScreen)
{
    open();
    openMenu();
    EXPECT_FALSE(shown(u"Copy Report…"_s).isEnabled());
    closeMenu();
    sort();
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    EXPECT_FALSE(isShown(u"Copy Report…"_s));
    opened.clear();

    engine.copyHistory()->add({.source = shoot, .destination = FileUrl(desk.path())});
    Desktop::click(shown(u"Copy Report…"_s));
    ASSERT_TRUE(waitUntil([this] { return opened.size() == 1; }));
    EXPECT_EQ(bytesOf(opened.front().path()), "1 copies");

    openMenu();
    QQuickItem *const item = findShown(shown(u"Preferences…"_s).parentItem(), u"Copy Report…"_s);
    ASSERT_NE(item, nullptr);
    Desktop::click(*item);
    EXPECT_TRUE(waitUntil([this] { return opened.size() == 2; }));
}

TEST_F(MenuTest, AReportThatCannotBeWrittenIsSaid)
{
    open();
    sort();
    engine.copyHistory()->add({.source = shoot, .destination = FileUrl(desk / "unplugged")});
    fs::permissions(desk.path(), fs::perms(0755));
    {
        const Unprivileged user; // may not write into the documents either
        engine.showCopyReport();
        (void)shown(u"The file couldn't be written"_s);
    }
    EXPECT_THAT(opened, testing::IsEmpty());
    Desktop::click(shown(u"OK"_s));
    EXPECT_TRUE(goes(u"The file couldn't be written"_s));
}

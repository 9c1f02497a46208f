// The state of the sheet "Export For…" and the files that it writes, without a window.
#include "shell/sheets/HandoffExport.h"

#include <atomic>
#include <set>

#include <QtCore/QScopeGuard>

#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

class HandoffExportTest : public SortEngineTest
{
protected:
    HandoffExportTest() : engine(handoffSeams()) {}

    SortSeams handoffSeams()
    {
        auto parts = seams();
        parts.eventText = [](const auto &...) { return u"event"_s; };
        return parts;
    }

    void sort()
    {
        makeClips({"kitchen 1", "pool 2"});
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    [[nodiscard]] fs::path fileNamed(const QString &suffix) const
    {
        return folder / (shoot.lastPathComponent() + suffix).toStdString();
    }

    // A shoot on a volume that is mounted as "Card".
    HandoffExport::System systemWithCard() const
    {
        return {.mountTable =
                    desk.write("mounts", "1 0 8:17 / " + folder.path().string() + " rw - exfat /dev/sdb1 rw\n"),
                .deviceTree = desk.path(),
                .labels = desk.path()};
    }

    // The same with clips of ten o'clock. Each is read once the gate lets it.
    HandoffExport::System systemWithSlowClips()
    {
        auto system = systemWithCard();
        system.readTimecode = [this](const FileUrl &) -> std::optional<Timecode> {
            ++reads;
            if (QThread::currentThread() == QCoreApplication::instance()->thread()) {
                ADD_FAILURE() << "the window waits for the clip";
            } else {
                reading.pass();
            }
            return tenOClock;
        };
        return system;
    }

    // Has a first clip waited for, and the file not written.
    void beginToRead(HandoffExport &handoff)
    {
        handoff.open();
        handoff.setFormat(u"fcpxml-timecode"_s);
        handoff.write();
        ASSERT_TRUE(handoff.isReading());
        reading.awaitArrival();
        EXPECT_FALSE(handoff.isWritten());
    }

    const Timecode tenOClock{.frame = 900'000, .rate = {.counted = 25, .isOver1001 = false}, .isDropFrame = false};
    std::atomic<int> reads = 0;
    Gate reading;

    const TempFolder desk;
    SettingsStore store{QString::fromStdString((desk / "settings.ini").string())};
    SortEngine engine;
};

} // namespace

TEST_F(HandoffExportTest, ThereIsNothingToWriteBeforeAShootIsSorted)
{
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    EXPECT_FALSE(handoff.isAvailable());
    EXPECT_FALSE(handoff.isShown());
    handoff.write();
    EXPECT_FALSE(handoff.isWritten());
    EXPECT_EQ(handoff.problem(), u""_s);
}

TEST_F(HandoffExportTest, EveryFormatIsWrittenUnderANameOfItsOwnAndTheEventStays)
{
    sort();
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    HandoffExport handoff(
        engine, store, [this](const FileUrl &file) { revealed.push_back(file); }, systemWithCard());
    handoff.open();
    std::set<fs::path> files;
    for (const QVariant &option : HandoffExport::formats()) {
        handoff.setFormat(option.toMap()[u"value"_s].toString());
        EXPECT_FALSE(handoff.isWritten()) << "of another format's file that can't be said";
        handoff.write();
        EXPECT_TRUE(waitUntil([&] { return handoff.isWritten(); }));
        EXPECT_TRUE(fs::exists(handoff.file().toStdString())) << handoff.file().toStdString();
        files.insert(handoff.file().toStdString());
        handoff.reveal();
        EXPECT_EQ(revealed.back().displayPath(), handoff.file());
    }
    EXPECT_EQ(files.size(), allHandoffFormats.size());
    EXPECT_EQ(bytesOf(fileNamed(u".fcpxml"_s)), "event");
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(HandoffExportTest, TheChoicesAreThereAgainNextTime)
{
    sort();
    {
        HandoffExport handoff(engine, store, {}, systemWithCard());
        EXPECT_EQ(handoff.format(), u"kdenlive"_s);
        EXPECT_EQ(handoff.place(), u"thisComputer"_s);
        handoff.setFormat(u"otio"_s);
        handoff.setFormat(u"no such format"_s);
        handoff.setPlace(u"mac"_s);
    }
    const HandoffExport handoff(engine, store, {}, systemWithCard());
    EXPECT_EQ(handoff.format(), u"otio"_s);
    EXPECT_EQ(handoff.place(), u"mac"_s);
    EXPECT_EQ(store.string(u"lkHandoffFormat"_s), u"otio"_s);
    EXPECT_EQ(store.string(u"lkHandoffPlace"_s), u"mac"_s);
}

TEST_F(HandoffExportTest, AMacsPathsAreInTheExampleAndInTheFile)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    EXPECT_EQ(handoff.example(), engine.clips().front()->url.displayPath());
    handoff.setPlace(u"mac"_s);
    const QString onMac = u"/Volumes/%1/kitchen 1.mov"_s.arg(shoot.lastPathComponent());
    EXPECT_EQ(handoff.example(), onMac);
    handoff.setFormat(u"kdenlive"_s);
    handoff.write();
    EXPECT_THAT(bytesOf(handoff.file().toStdString()), testing::HasSubstr(onMac.toStdString()));
}

TEST_F(HandoffExportTest, AFolderThatCannotBeWrittenIsSaidAndNothingIsLeft)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    const auto before = std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator());
    {
        const Unprivileged user; // who may not write there
        handoff.write();
    }
    EXPECT_FALSE(handoff.isWritten());
    EXPECT_EQ(handoff.problem(), u"Permission denied"_s);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), before);
    handoff.write();
    EXPECT_TRUE(handoff.isWritten());
    EXPECT_EQ(handoff.problem(), u""_s);
}

TEST_F(HandoffExportTest, TheOutcomeSaysWhatWillBeWrittenWhatFailedAndWhatIsWritten)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    EXPECT_EQ(handoff.outcome(), u"Writes "_s + handoff.file());
    {
        const Unprivileged user; // who may not write there
        handoff.write();
    }
    EXPECT_EQ(handoff.outcome(), u"The file couldn't be written: Permission denied"_s);
    handoff.write();
    EXPECT_EQ(handoff.outcome(), u"Written: "_s + handoff.file());
    handoff.setFormat(u"csv"_s);
    EXPECT_EQ(handoff.outcome(), u"Writes "_s + handoff.file());
}

TEST_F(HandoffExportTest, NumberedBinsLoseTheirGapsAsInTheEvent)
{
    sort();
    engine.reassign(engine.clips().front()->id, u"Kitchen 3"_s);
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    handoff.setFormat(u"csv"_s);
    handoff.write();
    EXPECT_THAT(bytesOf(handoff.file().toStdString()), testing::HasSubstr(",Kitchen,"));
}

TEST_F(HandoffExportTest, AReopenedClipsTimecodeIsReadWhenItIsAskedFor)
{
    sort();
    makeMedia(folder / "kitchen 1.mov", "-f lavfi -i testsrc2=s=64x48:r=25:d=0.2 -c:v libx264 -preset ultrafast "
                                        "-pix_fmt yuv420p -timecode 10:00:00:00");
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    handoff.setFormat(u"fcpxml-timecode"_s);
    handoff.write();
    EXPECT_TRUE(waitUntil([&] { return handoff.isWritten(); }));
    EXPECT_EQ(engine.clips().front()->timecode, tenOClock);
    EXPECT_THAT(bytesOf(handoff.file().toStdString()), testing::HasSubstr("tcFormat=\"NDF\""));
}

TEST_F(HandoffExportTest, TheWindowGoesOnWhileTimecodesAreReadAndTheFileFollows)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    const auto lets = qScopeGuard([this] { reading.open(100); });
    beginToRead(handoff);
    EXPECT_EQ(handoff.readCount(), 0);
    EXPECT_EQ(handoff.readTotal(), 2);
    handoff.write(); // pressed twice
    reading.open();
    EXPECT_TRUE(waitUntil([&] { return handoff.readCount() == 1; }));
    EXPECT_FALSE(fs::exists(handoff.file().toStdString()));
    reading.open();
    EXPECT_TRUE(waitUntil([&] { return handoff.isWritten(); }));
    EXPECT_FALSE(handoff.isReading());
    EXPECT_EQ(reads, 2);
    EXPECT_THAT(bytesOf(handoff.file().toStdString()), testing::HasSubstr("start=\"2160000000/60000s\""));
}

TEST_F(HandoffExportTest, FormatsWithoutTimecodesReadNoneAndTheOthersReadEachOnce)
{
    sort();
    reading.open(100);
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    handoff.open();
    for (const QString &format : {u"kdenlive"_s, u"csv"_s}) {
        handoff.setFormat(format);
        handoff.write();
        EXPECT_TRUE(handoff.isWritten()) << format.toStdString();
    }
    EXPECT_EQ(reads, 0);
    for (const QString &format : {u"otio"_s, u"fcpxml-timeline"_s, u"fcpxml-timecode"_s}) {
        handoff.setFormat(format);
        handoff.write();
        EXPECT_TRUE(waitUntil([&] { return handoff.isWritten(); })) << format.toStdString();
        EXPECT_EQ(reads, 2) << format.toStdString();
    }
}

TEST_F(HandoffExportTest, ClosingTheSheetStopsTheReadingAndWritesNothing)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    const auto lets = qScopeGuard([this] { reading.open(100); });
    beginToRead(handoff);
    handoff.close();
    EXPECT_FALSE(handoff.isReading());
    reading.open(100);
    handoff.open();
    handoff.write();
    EXPECT_TRUE(waitUntil([&] { return handoff.isWritten(); }));
    EXPECT_EQ(reads, 3) << "the first clip twice, the second once";
}

TEST_F(HandoffExportTest, AnotherChoiceStopsTheReadingAndCanBeWrittenAtOnce)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    const auto lets = qScopeGuard([this] { reading.open(100); });
    beginToRead(handoff);
    const QString withTimecodes = handoff.file();
    handoff.setPlace(u"mac"_s);
    EXPECT_FALSE(handoff.isReading());
    handoff.setFormat(u"csv"_s);
    handoff.write();
    EXPECT_TRUE(handoff.isWritten());
    reading.open(100);
    drain();
    EXPECT_TRUE(handoff.isWritten());
    EXPECT_FALSE(fs::exists(withTimecodes.toStdString()));
}

TEST_F(HandoffExportTest, AnotherShootStopsTheReading)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    const auto lets = qScopeGuard([this] { reading.open(100); });
    beginToRead(handoff);
    engine.openProject(projectID(shoot));
    EXPECT_FALSE(handoff.isReading());
    reading.open(100);
    drain();
    EXPECT_FALSE(handoff.isWritten());
    EXPECT_FALSE(engine.clips().front()->isTimecodeRead);
}

TEST_F(HandoffExportTest, AFolderThatCannotBeWrittenIsSaidAfterTheReadingToo)
{
    sort();
    reading.open(100);
    HandoffExport handoff(engine, store, {}, systemWithSlowClips());
    handoff.open();
    handoff.setFormat(u"otio"_s);
    {
        const Unprivileged user; // who may not write there
        handoff.write();
        EXPECT_TRUE(waitUntil([&] { return !handoff.isReading(); }));
    }
    EXPECT_FALSE(handoff.isWritten());
    EXPECT_EQ(handoff.problem(), u"Permission denied"_s);
    handoff.write();
    EXPECT_TRUE(handoff.isWritten());
    EXPECT_EQ(reads, 2);
}

TEST_F(HandoffExportTest, TheSheetGoesWithTheShoot)
{
    sort();
    HandoffExport handoff(engine, store, {}, systemWithCard());
    handoff.open();
    EXPECT_TRUE(handoff.isShown());
    engine.reset();
    EXPECT_FALSE(handoff.isShown());
    EXPECT_FALSE(handoff.isAvailable());
}

// Footage that is gone from its place, and found where an export has moved it.
#include "core/engine/FootageSearch.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace fs = std::filesystem;

// A reopened shoot whose footage was moved into the folders of its bins. What a file shows of itself is in its name
// and, as its length, in its content.
class MovedFootageTest : public SortEngineTest
{
protected:
    static ClipPtr probeWithLength(const FileUrl &url)
    {
        auto clip = probe(url);
        std::error_code gone;
        const auto size = fs::file_size(url.path(), gone);
        clip->duration = gone ? 0.0 : static_cast<double>(size);
        clip->naturalSize = clip->displaySize = {16, 9};
        return clip;
    }

    // As organizing names its folders and files.
    static std::vector<FileUrl> places(const FileUrl &clip, const FileUrl &root, const QString &bin)
    {
        std::vector<FileUrl> found;
        const QString stem = clip.baseName();
        for (const QString &name : {stem, stem + u" 2"_s}) {
            const FileUrl place = root.appending(bin).appending(name + u".mov"_s);
            if (fs::exists(place.path())) {
                found.push_back(place);
            }
        }
        return found;
    }

    // The same, with a search for footage that waits at the gate.
    SortSeams searchingSeams(Gate &gate)
    {
        auto parts = movingSeams();
        parts.placesInBin = [&gate](const FileUrl &clip, const FileUrl &root, const QString &bin) {
            gate.pass();
            return places(clip, root, bin);
        };
        return parts;
    }

    SortSeams movingSeams()
    {
        auto parts = seams();
        parts.probeClip = probeWithLength;
        parts.placesInBin = places;
        parts.sampleFrames = [](const MediaClip &clip, int, double) {
            return fs::exists(clip.url.path()) ? sample(clip) : Frames();
        };
        parts.eventText = [](const std::vector<ClipPtr> &clips, const QString &) {
            QString text;
            for (const ClipPtr &clip : clips) {
                text += clip->destinationURL.value_or(clip->sourceURL()).displayPath() + u'\n';
            }
            return text;
        };
        parts.organizeByBin = [this](const std::vector<ClipToOrganize> &clips, const auto &...) -> OrganizeAnswer {
            organized.clear();
            for (const ClipToOrganize &clip : clips) {
                organized.push_back(clip.url);
            }
            return {};
        };
        return parts;
    }

    void sortThenMove(const std::map<std::string, std::string> &moves)
    {
        SortEngine engine(movingSeams());
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        for (const auto &[from, to] : moves) {
            fs::create_directories((folder / to).parent_path());
            fs::rename(folder / from, folder / to);
        }
    }

    static bool hasAllThumbnails(const SortEngine &engine)
    {
        return std::ranges::none_of(engine.clips(), [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
    }

    const QString id = projectID(shoot);
    std::vector<FileUrl> organized;
};

TEST_F(MovedFootageTest, IsFoundInTheFolderOfItsBinAndShown)
{
    (void)folder.write("kitchen 1.mov", "1");
    (void)folder.write("pool 2.mov", "22");
    sortThenMove({{"kitchen 1.mov", "Kitchen/kitchen 1.mov"}, {"pool 2.mov", "Pool/pool 2 2.mov"}});
    SortEngine engine(movingSeams());
    engine.openProject(id);
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(engine.clips()[0]->footageURL(), FileUrl(folder / "Kitchen/kitchen 1.mov"));
    EXPECT_EQ(engine.clips()[1]->footageURL(), FileUrl(folder / "Pool/pool 2 2.mov"));
    EXPECT_EQ(engine.clips()[0]->destinationURL, std::nullopt) << "nothing was exported in this session";
    EXPECT_EQ(engine.clips()[0]->url, FileUrl(folder / "kitchen 1.mov"));
    engine.confirmAll();
    EXPECT_EQ(saved()->clips[0].path, FileUrl(folder / "kitchen 1.mov")) << "the project is stored as before";
}

TEST_F(MovedFootageTest, IsFoundUnderTheShootsFolderFirstAndInTheFolderOfAnotherBin)
{
    (void)folder.write("kitchen 1.mov", "1");
    (void)folder.write("pool 2.mov", "22");
    sortThenMove({{"kitchen 1.mov", "Shoots/Kitchen/kitchen 1.mov"}, {"pool 2.mov", "Shoots/Kitchen/pool 2.mov"}});
    (void)folder.write("Kitchen/kitchen 1.mov", "1");
    SortEngine engine(movingSeams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.openProject(id);
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(engine.clips()[0]->footageURL(), FileUrl(folder / "Shoots/Kitchen/kitchen 1.mov"));
    EXPECT_EQ(engine.clips()[1]->footageURL(), FileUrl(folder / "Shoots/Kitchen/pool 2.mov"));
}

TEST_F(MovedFootageTest, IsOnlyWhatAgreesWithTheClipAndEachFileIsOnesOnly)
{
    const auto write = [this](const char *name, const char *content) {
        return probeWithLength(FileUrl(folder.write(name, content)));
    };
    // Two clips of one name from two folders of a card, one whose file is still there, and one of which nothing is
    // known.
    const std::vector clips{write("a/kitchen 1.mov", "1"), write("b/kitchen 1.mov", "1"), write("c/pool 2.mov", "22"),
                            write("d/pool 2.mov", "22"), write("dark 3.mov", "")};
    for (const ClipPtr &clip : clips) {
        clip->primaryBin = u"Bin"_s;
    }
    clips[3]->creationDate += std::chrono::hours(25);
    for (const char *gone : {"a", "b", "d", "dark 3.mov"}) {
        fs::remove_all(folder / gone);
    }
    (void)folder.write("Bin/kitchen 1.mov", "1");
    (void)folder.write("Bin/pool 2.mov", "22");
    (void)folder.write("Bin/dark 3.mov", "");
    const std::vector roots{FileUrl(folder.path())};
    const std::optional<FileUrl> none;
    EXPECT_THAT(findMovedFootage(clips, roots, movingSeams(), {}),
                ElementsAre(FileUrl(folder / "Bin/kitchen 1.mov"), none, none, none, none));
    (void)folder.write("Bin/kitchen 1 2.mov", "of another length");
    EXPECT_EQ(findMovedFootage(clips, roots, movingSeams(), {})[1], none);
    (void)folder.write("Bin/kitchen 1 2.mov", "2");
    EXPECT_EQ(findMovedFootage(clips, roots, movingSeams(), {})[1], FileUrl(folder / "Bin/kitchen 1 2.mov"));
}

TEST_F(MovedFootageTest, IsNeverTheFileOfAClipThatIsStillInItsPlace)
{
    const auto write = [this](const char *name) { return probeWithLength(FileUrl(folder.write(name, "1"))); };
    const std::vector clips{write("card/kitchen 1.mov"), write("Kitchen/kitchen 1.mov")};
    for (const ClipPtr &clip : clips) {
        clip->primaryBin = u"Kitchen"_s;
    }
    fs::remove(clips[0]->url.path());
    EXPECT_THAT(findMovedFootage(clips, std::vector{FileUrl(folder.path())}, movingSeams(), {}),
                testing::Each(std::nullopt));
}

TEST_F(MovedFootageTest, AFileThatDiffersInAnyOneThingIsOtherFootage)
{
    const auto shot = std::make_shared<MediaClip>(FileUrl(folder / "kitchen 1.mov"));
    shot->duration = 2.0;
    shot->naturalSize = {3840, 2160};
    shot->displaySize = {2160, 3840};
    shot->cameraModel = u"TestCam"_s;
    shot->creationDate = Date(std::chrono::hours(1000));
    const std::optional<FileUrl> place = FileUrl(folder.write("Kitchen/kitchen 1.mov"));
    shot->primaryBin = u"Kitchen"_s;
    const auto foundWith = [&](const std::function<void(MediaClip &)> &change) {
        auto parts = movingSeams();
        parts.probeClip = [&](const FileUrl &) {
            auto file = std::make_shared<MediaClip>(*shot);
            change(*file);
            return file;
        };
        return findMovedFootage(std::vector{shot}, std::vector{FileUrl(folder.path())}, parts, {}).front();
    };
    EXPECT_EQ(foundWith([](MediaClip &) {}), place);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.creationDate += std::chrono::hours(23); }), place);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.creationDate -= std::chrono::hours(23); }), place);
    const std::optional<FileUrl> none;
    EXPECT_EQ(foundWith([](MediaClip &file) { file.creationDate += std::chrono::hours(24); }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.creationDate -= std::chrono::hours(24); }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.duration += 0.04; }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.naturalSize = {1920, 1080}; }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.displaySize = {3840, 2160}; }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.frameDurationValue = 1000; }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.frameDurationScale = 30'000; }), none);
    EXPECT_EQ(foundWith([](MediaClip &file) { file.cameraModel.clear(); }), none);
    shot->naturalSize = {};
    EXPECT_EQ(foundWith([](MediaClip &) {}), none) << "of a clip without a picture too little is known";
}

TEST_F(MovedFootageTest, AnExportGoesOnFromThere)
{
    (void)folder.write("kitchen 1.mov", "1");
    (void)folder.write("pool 2.mov", "22");
    (void)folder.write("garage 3.mov", "333");
    sortThenMove({{"kitchen 1.mov", "Kitchen/kitchen 1.mov"}, {"pool 2.mov", "Pool/pool 2.mov"}});
    SortEngine engine(movingSeams());
    engine.openProject(id);
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    engine.reassign(engine.clips()[1]->id, u"Garage"_s);
    engine.setOptions({.fileHandling = FileHandling::move});
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_THAT(organized, ElementsAre(FileUrl(folder / "Pool/pool 2.mov"), FileUrl(folder / "garage 3.mov")))
        << "what lies in the folder of its bin stays there";
    EXPECT_THAT(bytesOf(engine.stage().event->path()),
                testing::StartsWith((folder / "Kitchen/kitchen 1.mov").native()));
}

TEST_F(MovedFootageTest, AnExportThatIsAskedForBeforeItWasFoundWaitsForTheSearch)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({{"kitchen 1.mov", "Kitchen/kitchen 1.mov"}});
    Gate gate;
    SortEngine engine(searchingSeams(gate));
    engine.openProject(id);
    gate.awaitArrival();
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(bytesOf(engine.stage().event->path()), (folder / "Kitchen/kitchen 1.mov").native() + "\n");
}

TEST_F(MovedFootageTest, AnExportThatWaitsForTheSearchIsForgottenWithItsShoot)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({{"kitchen 1.mov", "Kitchen/kitchen 1.mov"}});
    Gate gate;
    SortEngine engine(searchingSeams(gate));
    engine.openProject(id);
    gate.awaitArrival();
    engine.exportEvent();
    engine.openProject(id);
    gate.open(100);
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(engine.stage().kind, StageKind::results);
}

TEST_F(MovedFootageTest, AnExportAfterTheSearchGoesAheadWithoutWhatWasNotFound)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({{"kitchen 1.mov", "elsewhere.mov"}});
    auto parts = movingSeams();
    std::atomic<int> sampled = 0;
    parts.sampleFrames = [&](const MediaClip &, int, double) {
        ++sampled; // which follows the search
        return Frames();
    };
    SortEngine engine(parts);
    engine.openProject(id);
    ASSERT_TRUE(waitUntil([&] { return sampled == 1; }));
    drain();
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(MovedFootageTest, AnExportWaitsForNoSearchOfAnotherShoot)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({{"kitchen 1.mov", "Kitchen/kitchen 1.mov"}});
    const fs::path other = folder.write("other/pool 2.mov", "22");
    Gate gate;
    auto parts = movingSeams();
    parts.placesInBin = [&](const auto &...) {
        gate.pass();
        return std::vector<FileUrl>();
    };
    SortEngine engine(parts);
    engine.openProject(id);
    gate.awaitArrival();
    engine.sortFolder(FileUrl(other.parent_path()));
    gate.open(100);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    fs::remove(other);
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(MovedFootageTest, PicturesThatAnExportInterruptsAreTakenFromWhereItHasPutTheFootage)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({});
    Gate gate;
    std::atomic<bool> isFirst = true;
    auto parts = movingSeams();
    parts.placesInBin = [](const auto &...) { return std::vector<FileUrl>(); };
    parts.sampleFrames = [&, inner = parts.sampleFrames](const MediaClip &clip, int count, double size) {
        if (isFirst.exchange(false)) {
            gate.pass();
            return Frames();
        }
        return inner(clip, count, size);
    };
    parts.organizeByBin = [this](const std::vector<ClipToOrganize> &clips, const auto &...) -> OrganizeAnswer {
        fs::create_directory(folder / "Kitchen");
        fs::rename(folder / "kitchen 1.mov", folder / "Kitchen/kitchen 1.mov");
        return std::map{std::pair(clips.front().id, FileUrl(folder / "Kitchen/kitchen 1.mov"))};
    };
    SortEngine engine(parts);
    engine.openProject(id);
    gate.awaitArrival();
    engine.setOptions({.fileHandling = FileHandling::move});
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
}

TEST_F(MovedFootageTest, WhatWasFoundStaysFoundOnceTheShootsFolderIsAnother)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({{"kitchen 1.mov", "Shoots/Kitchen/kitchen 1.mov"}});
    const FileUrl found(folder / "Shoots/Kitchen/kitchen 1.mov");
    Gate gate;
    std::atomic<bool> isFirst = true;
    auto parts = movingSeams();
    parts.sampleFrames = [&, inner = parts.sampleFrames](const MediaClip &clip, int count, double size) {
        if (isFirst.exchange(false)) {
            gate.pass();
            return Frames();
        }
        return inner(clip, count, size);
    };
    SortEngine engine(parts);
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.openProject(id);
    gate.awaitArrival();
    ASSERT_TRUE(waitUntil([&] { return engine.clips().front()->footageURL() == found; }));
    engine.setImportRoot(FileUrl(folder / "other"));
    engine.setOptions({.fileHandling = FileHandling::copy});
    engine.exportEvent(); // ends the task that takes the pictures, which begins anew behind it
    ASSERT_TRUE(reaches(engine, StageKind::failed)); // nothing moves footage there
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(engine.clips().front()->footageURL(), found);
}

TEST_F(MovedFootageTest, AShootThatIsSortedHasNoPicturesOfTheOneBeforeToMakeUpFor)
{
    (void)folder.write("kitchen 1.mov", "1");
    sortThenMove({});
    const fs::path other = folder.write("other/dark 2.mov", "22");
    Gate sampling;
    Gate searching;
    std::atomic<bool> isFirst = true;
    auto parts = searchingSeams(searching);
    parts.sampleFrames = [&, inner = parts.sampleFrames](const MediaClip &clip, int count, double size) {
        if (isFirst.exchange(false)) {
            sampling.pass();
        }
        return inner(clip, count, size);
    };
    parts.organizeByBin = [&other](const auto &...) -> OrganizeAnswer {
        fs::remove(other); // so that a look for pictures would have to search for it
        return {};
    };
    SortEngine engine(parts);
    engine.openProject(id);
    sampling.awaitArrival();
    engine.sortFolder(FileUrl(other.parent_path())); // which drops the pictures that were to come
    sampling.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setOptions({.fileHandling = FileHandling::move});
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::organizing) << "there is no search to wait for";
    searching.open(100);
}

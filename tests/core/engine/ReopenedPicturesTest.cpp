// The pictures of reopened clips: how often they are announced, and when they are looked for once more.
#include <utility>

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

class ReopenedPicturesTest : public SortEngineTest
{
protected:
    // A search for a clip's footage waits at the gate, and an export takes the footage away.
    SortSeams searchingSeams()
    {
        auto parts = seams();
        parts.probeClip = [](const FileUrl &url) {
            auto clip = probe(url);
            clip->duration = 1.0;
            clip->naturalSize = {16, 9};
            return clip;
        };
        parts.placesInBin = [this](const auto &...) {
            searching.pass();
            return std::vector<FileUrl>();
        };
        parts.organizeByBin = [](const std::vector<ClipToOrganize> &clips, const auto &...) -> OrganizeAnswer {
            for (const ClipToOrganize &clip : clips) {
                std::filesystem::remove(clip.url.path());
            }
            return {};
        };
        return parts;
    }

    void sort(std::initializer_list<const char *> names)
    {
        makeClips(names);
        SortEngine engine(searchingSeams());
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        m_holdersAtRest = engine.clips().front().use_count();
    }

    // Waits until the task that takes the pictures has let go of the clips, which is the last that it does.
    [[nodiscard]] bool isTaskOver(const SortEngine &engine) const
    {
        const bool isOver = waitUntil([&] { return engine.clips().front().use_count() == m_holdersAtRest; });
        drain();
        return isOver;
    }

    Gate searching;
    const QString id = projectID(shoot);
    const SortOptions copying{.openEditorAfterExport = false, .fileHandling = FileHandling::copy};

private:
    long m_holdersAtRest = 0; // of a clip
};

} // namespace

TEST_F(ReopenedPicturesTest, AFullGroupIsAnnouncedOnceAndNoEmptyOneFollowsIt)
{
    sort({"a 1", "b 2", "c 3", "d 4"});
    SortEngine engine(searchingSeams());
    engine.openProject(id);
    int announced = 0;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { ++announced; });
    ASSERT_TRUE(isTaskOver(engine));
    EXPECT_FALSE(engine.clips().back()->thumbnail.isNull());
    EXPECT_EQ(announced, 1);
}

TEST_F(ReopenedPicturesTest, APictureThatCouldNotBeTakenIsNotTriedAgainAfterAnExport)
{
    sort({"dark 1"});
    SortEngine engine(searchingSeams());
    engine.setOptions(copying);
    engine.openProject(id);
    ASSERT_TRUE(isTaskOver(engine));
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::organizing) << "there is no search to wait for";
    searching.open(100);
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
}

TEST_F(ReopenedPicturesTest, AnExportThatBeginsWithTheLastPictureHasNoneToLookForAtItsEnd)
{
    sort({"pool 1"});
    SortEngine engine(searchingSeams());
    engine.setOptions(copying);
    engine.openProject(id);
    bool isExported = false;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] {
        if (!std::exchange(isExported, true)) {
            engine.exportEvent(); // which ends the task before it has said that it is through
        }
    });
    std::optional<StageKind> next;
    QObject::connect(&engine, &SortEngine::stageChanged, [&] {
        if (engine.stage().kind == StageKind::done && !next) {
            const auto exportAgain = [&] {
                engine.exportEvent();
                next = engine.stage().kind;
            };
            QMetaObject::invokeMethod(&engine, exportAgain, Qt::QueuedConnection); // before a look could land
        }
    });
    ASSERT_TRUE(waitUntil([&] { return next.has_value(); }));
    EXPECT_EQ(next, StageKind::organizing) << "there is no search to wait for";
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
}

#include "screens/stages/StageTexts.h"

#include "core/bins/RoomLabel.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class StageTextsTest : public SortEngineTest
{
protected:
    StageTextsTest() : engine(heldSeams())
    {
        texts.setEngine(&engine);
        texts.setProperty("toolName", u"Binnacle"_s);
        QObject::connect(&texts, &StageTexts::changed, [this] { titles << texts.title(); });
    }

    ~StageTextsTest() override { copying.open(100); }

    SortSeams heldSeams()
    {
        SortSeams parts = seams();
        parts.organizeByBin = [this](const auto &...) -> OrganizeAnswer {
            copying.pass();
            return {};
        };
        return parts;
    }

    void sortShoot()
    {
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    [[nodiscard]] QString name() const { return shoot.lastPathComponent(); }

    Gate copying;
    SortEngine engine;
    StageTexts texts;
    QStringList titles; // at each change
};

} // namespace

TEST_F(StageTextsTest, TheTitleFollowsTheStage)
{
    EXPECT_EQ(texts.title(), u"Binnacle"_s);
    EXPECT_EQ(texts.shapes(), QString());
    EXPECT_FALSE(texts.hasShoot());
    makeClips({"kitchen 1", "pool 2", "pool 3"});
    sortShoot();
    EXPECT_TRUE(titles.contains(u"Sorting "_s + name()));
    EXPECT_EQ(titles.back(), name() + u" · 3 clips · 2 bins"_s);
    EXPECT_EQ(texts.title(), titles.back());
    EXPECT_EQ(texts.shapes(), u"0 vertical · 3 horizontal · native aspect kept"_s);
    EXPECT_TRUE(texts.hasShoot());
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(texts.title(), name() + u" · event created"_s);
    EXPECT_EQ(texts.shapes(), QString());
    EXPECT_EQ(texts.done(), u"Event created"_s);
    EXPECT_TRUE(texts.hasShoot());
    engine.reset();
    EXPECT_EQ(texts.title(), u"Binnacle"_s);
    EXPECT_FALSE(texts.hasShoot());
}

TEST_F(StageTextsTest, WhileFootageIsOrganizedTheTitleSaysHow)
{
    makeClips({"kitchen 1"});
    sortShoot();
    engine.setOptions({.fileHandling = FileHandling::copy});
    engine.exportEvent();
    EXPECT_EQ(texts.title(), u"Copying "_s + name() + u" into folders"_s);
    EXPECT_EQ(titles.back(), texts.title());
    EXPECT_FALSE(texts.hasShoot());
}

TEST_F(StageTextsTest, AFolderWithoutClipsHasTheToolsName)
{
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_EQ(texts.title(), u"Binnacle"_s);
    EXPECT_FALSE(texts.hasShoot());
}

TEST_F(StageTextsTest, OneUnsureClipIsSingularAndTheNumberFollows)
{
    makeClips({"kitchen 1", "dark 2", "dark 3"});
    sortShoot();
    EXPECT_EQ(texts.unsure(), u"2 clips Binnacle wasn't sure about"_s);
    engine.confirm(engine.clipsInBin(reviewKey()).front()->id);
    EXPECT_EQ(texts.unsure(), u"1 clip Binnacle wasn't sure about"_s);
    engine.confirmAll();
    EXPECT_EQ(texts.unsure(), u"0 clips Binnacle wasn't sure about"_s);
}

TEST_F(StageTextsTest, AnEmptyBinIsNamed)
{
    EXPECT_EQ(texts.noClips(), u"No clips"_s);
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_EQ(texts.noClips(), u"No clips are left in Pool"_s);
    EXPECT_FALSE(titles.empty());
}

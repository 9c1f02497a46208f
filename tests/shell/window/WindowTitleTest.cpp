// The window's title, without a window.
#include "shell/window/WindowTitle.h"

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class WindowTitleTest : public SortEngineTest
{
protected:
    WindowTitleTest() : engine(gatedSeams(), 4) { title.setEngine(&engine); } // two clips at a time
    ~WindowTitleTest() override
    {
        landing.open(100);
        copying.open(100);
    }

    SortSeams gatedSeams()
    {
        SortSeams parts = seams();
        parts.sampleFrames = [this](const MediaClip &clip, int, double) {
            landing.pass();
            return sample(clip);
        };
        parts.organizeByBin = [this](const auto &...) -> OrganizeAnswer {
            copying.pass();
            return {};
        };
        return parts;
    }

    void show(bool isActive) { title.setProperty("isActive", isActive); }

    Gate landing; // of clips
    Gate copying;
    SortEngine engine;
    WindowTitle title;
};

} // namespace

TEST_F(WindowTitleTest, BehindAnotherWindowItSaysHowFarASortIs)
{
    show(false);
    EXPECT_EQ(title.text(), u"Larkspan"_s);
    makeClips({"kitchen 1", "pool 2", "garage 3"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(waitUntil([this] { return engine.total() == 3; }));
    EXPECT_EQ(title.text(), u"0% – Larkspan"_s);
    landing.open(2);
    ASSERT_TRUE(waitUntil([this] { return engine.done() == 2; }));
    EXPECT_EQ(title.text(), u"66% – Larkspan"_s);
    show(true);
    EXPECT_EQ(title.text(), u"Larkspan"_s);
    show(false);
    landing.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(title.text(), u"Larkspan"_s);
}

TEST_F(WindowTitleTest, TheCopyOfAnExportIsWorkToo)
{
    landing.open(2);
    makeClips({"kitchen 1", "pool 2"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    SortOptions options = engine.options();
    options.fileHandling = FileHandling::copy;
    engine.setOptions(options);
    show(false);
    engine.exportEvent();
    copying.awaitArrival();
    EXPECT_EQ(title.text(), u"0% – Larkspan"_s);
    copying.open();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(title.text(), u"Larkspan"_s);
}

TEST_F(WindowTitleTest, AChangeOfStageOrProgressIsTold)
{
    show(false);
    QStringList told;
    QObject::connect(&title, &WindowTitle::changed, [&] { told << title.text(); });
    landing.open(1);
    makeClips({"kitchen 1"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_TRUE(told.contains(u"0% – Larkspan"_s)) << told.join(u'|').toStdString();
    EXPECT_EQ(told.back(), u"Larkspan"_s);
}

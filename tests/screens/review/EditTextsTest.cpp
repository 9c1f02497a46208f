#include "screens/review/EditTexts.h"

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

using EditTextsTest = ModelTest;

} // namespace

TEST_F(EditTextsTest, SayWhatWouldBeUndoneAndRedone)
{
    makeClips({"kitchen 1", "dark 2", "dark 3"});
    EditTexts texts;
    EXPECT_EQ(texts.undo(), u"Undo"_s) << "before there is an engine";
    texts.setEngine(&engine);
    sortShoot();
    EXPECT_FALSE(texts.canUndo());
    EXPECT_FALSE(texts.canRedo());
    EXPECT_EQ(texts.undo(), u"Undo"_s);
    EXPECT_EQ(texts.redo(), u"Redo"_s);
    int changed = 0;
    QObject::connect(&texts, &EditTexts::changed, [&] { ++changed; });
    const QUuid kitchen = engine.clips()[0]->id;
    const auto saysAfter = [&](const std::function<void()> &edit) {
        changed = 0;
        edit();
        EXPECT_EQ(changed, 1);
        EXPECT_TRUE(texts.canUndo());
        return texts.undo();
    };
    EXPECT_EQ(saysAfter([&] { engine.reassign(kitchen, u"Pool"_s); }), u"Undo Move to Pool"_s);
    EXPECT_EQ(saysAfter([&] { engine.toggleExtraBin(kitchen, u"Garage"_s); }), u"Undo Also Tag Garage"_s);
    EXPECT_EQ(saysAfter([&] { engine.toggleExtraBin(kitchen, u"Garage"_s); }), u"Undo Remove Tag Garage"_s);
    EXPECT_EQ(saysAfter([&] { engine.setSecondBin(kitchen, u"Office"_s); }), u"Undo Second Bin Office"_s);
    EXPECT_EQ(saysAfter([&] { engine.setSecondBin(kitchen, {}); }), u"Undo No Second Bin"_s);
    EXPECT_EQ(saysAfter([&] { engine.confirm(engine.clips()[1]->id); }), u"Undo Confirm"_s);
    EXPECT_EQ(saysAfter([&] { engine.confirmAll(); }), u"Undo Confirm All"_s);
    EXPECT_EQ(saysAfter([&] { engine.undo(); }), u"Undo Confirm"_s);
    EXPECT_TRUE(texts.canRedo());
    EXPECT_EQ(texts.redo(), u"Redo Confirm All"_s);
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(texts.undo(), u"Undo"_s);
    EXPECT_FALSE(texts.canUndo());
    EXPECT_FALSE(texts.canRedo());
}

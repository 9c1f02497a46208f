#include "screens/bins/BinChoices.h"

#include <QtTest/QSignalSpy>

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

using BinChoicesTest = ModelTest;

} // namespace

TEST_F(BinChoicesTest, OfferEveryBinAndStayTheSameListWhileTheBinsInUseDo)
{
    makeClips({"kitchen 1", "barn 2"});
    BinChoices choices;
    choices.setEngine(&engine);
    sortShoot();
    EXPECT_TRUE(choices.names().contains(u"Barn"_s));
    EXPECT_TRUE(choices.names().contains(u"Unsorted"_s));
    QSignalSpy changed(&choices, &BinChoices::namesChanged);
    engine.reassign(engine.clips().front()->id, u"Pool"_s);
    EXPECT_EQ(changed.count(), 0);
    engine.reassign(engine.clips().back()->id, u"Pool"_s);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(choices.names().contains(u"Barn"_s));
}

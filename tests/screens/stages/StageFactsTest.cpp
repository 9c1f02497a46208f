// The list of the tool's stages.
#include "screens/stages/StageFacts.h"

#include <set>

#include <gmock/gmock.h>
#include <QtCore/QFile>
#include <QtCore/QMetaEnum>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

using StageKind = SortEngine::StageKind;

// The stages of which a fact is true, in their order.
std::vector<StageKind> stagesThat(bool StageFacts::*fact)
{
    const auto names = QMetaEnum::fromType<StageKind>();
    std::vector<StageKind> found;
    for (int i = 0; i < names.keyCount(); ++i) {
        if (const auto stage = static_cast<StageKind>(names.value(i)); factsOf(stage).*fact) {
            found.push_back(stage);
        }
    }
    return found;
}

} // namespace

TEST(StageFacts, EachStageHasAViewOfItsOwnThatIsInTheProgram)
{
    const auto names = QMetaEnum::fromType<StageKind>();
    std::set<QString> views;
    for (int i = 0; i < names.keyCount(); ++i) {
        const QString view = Stages::view(static_cast<StageKind>(names.value(i)));
        EXPECT_TRUE(QFile::exists(u":/qt/qml/Larkspan/Screens/"_s + view)) << names.key(i);
        views.insert(view);
    }
    EXPECT_EQ(views.size(), static_cast<std::size_t>(names.keyCount()));
    EXPECT_TRUE(views.contains(u"BinnacleLandingView.qml"_s));
}

TEST(StageFacts, ASortAndTheCopyOfAnExportAreWork)
{
    EXPECT_THAT(stagesThat(&StageFacts::isBusy), ElementsAre(StageKind::working, StageKind::organizing));
}

TEST(StageFacts, AShootIsAtHandOnceItIsSortedAndAfterItsExport)
{
    EXPECT_THAT(stagesThat(&StageFacts::hasShoot), ElementsAre(StageKind::results, StageKind::done));
}

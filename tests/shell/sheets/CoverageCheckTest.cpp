// The state of the sheet "Check Coverage…", without a window.
#include "shell/sheets/CoverageCheck.h"

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class CoverageCheckTest : public SortEngineTest
{
protected:
    void sort(std::initializer_list<const char *> names)
    {
        makeClips(names);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    QVariantMap row(const CoverageCheck &check, const QString &bin) const
    {
        return check.rows().at(CoverageCheck::names().indexOf(bin)).toMap();
    }

    // The row as {needed, status, missing, doubtful}.
    static QVariantMap rowOf(bool needed, const QString &status, bool missing, bool doubtful)
    {
        return {{u"needed"_s, needed}, {u"status"_s, status}, {u"missing"_s, missing}, {u"doubtful"_s, doubtful}};
    }

    const TempFolder desk;
    SettingsStore store{QString::fromStdString((desk / "settings.ini").string())};
    SortEngine engine{seams()};
};

} // namespace

TEST_F(CoverageCheckTest, ThereIsNothingToCheckBeforeAShootIsSortedAndAfterItIsGone)
{
    CoverageCheck check(engine, store);
    check.open();
    EXPECT_FALSE(check.isAvailable());
    EXPECT_FALSE(check.isShown());
    sort({"kitchen 1"});
    check.open();
    EXPECT_TRUE(check.isShown());
    engine.reset();
    EXPECT_FALSE(check.isShown());
    EXPECT_FALSE(check.isAvailable());
}

TEST_F(CoverageCheckTest, AnExportedShootCanBeCheckedToo)
{
    sort({"kitchen 1"});
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    CoverageCheck check(engine, store);
    EXPECT_TRUE(check.isAvailable());
}

TEST_F(CoverageCheckTest, SaysWhatIsMissingWhatHasOneTakeAndWhatIsInDoubt)
{
    sort({"kitchen 1", "kitchen 2", "bathroom 3", "pool 4", "dark 5"});
    engine.toggleExtraBin(engine.clips()[0]->id, u"Living Room"_s);
    engine.toggleExtraBin(engine.clips()[1]->id, u"Bathroom"_s);
    CoverageCheck check(engine, store);
    check.open();
    EXPECT_FALSE(check.isWhole());
    EXPECT_EQ(check.missing(), u"Missing: Bedroom, Exterior Front, Exterior Back"_s);
    EXPECT_TRUE(check.hasSingleTakes());
    EXPECT_EQ(check.singleTakes(), u"One take only: Bathroom"_s);
    EXPECT_EQ(row(check, u"Kitchen"_s), rowOf(true, u"2 clips"_s, false, false));
    EXPECT_EQ(row(check, u"Bathroom"_s), rowOf(true, u"2 clips, 1 as second bin"_s, false, false));
    EXPECT_EQ(row(check, u"Bedroom"_s), rowOf(true, u"Missing"_s, true, false));
    EXPECT_EQ(row(check, u"Living Room"_s), rowOf(true, u"1 clip, as second bin"_s, false, true));
    EXPECT_EQ(row(check, u"Pool"_s), rowOf(false, u"1 clip"_s, false, false));
    EXPECT_EQ(row(check, u"Garage"_s), rowOf(false, u"No clips"_s, false, false));
}

TEST_F(CoverageCheckTest, FollowsTheEditorsEditsWhileItIsShown)
{
    sort({"kitchen 1", "dark 2"});
    CoverageCheck check(engine, store);
    check.open();
    int changed = 0;
    QObject::connect(&check, &CoverageCheck::changed, [&] { ++changed; });
    const ClipPtr dark = engine.clips()[1];
    engine.reassign(dark->id, u"Bedroom"_s);
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(row(check, u"Bedroom"_s), rowOf(true, u"1 clip"_s, false, false));
    dark->needsReview = true;
    Q_EMIT engine.clipsChanged();
    EXPECT_EQ(row(check, u"Bedroom"_s), rowOf(true, u"1 clip, 1 to look at"_s, false, true));
    engine.reassign(engine.clips()[0]->id, u"Bedroom"_s);
    EXPECT_EQ(row(check, u"Bedroom"_s), rowOf(true, u"2 clips, 1 to look at"_s, false, false));
}

TEST_F(CoverageCheckTest, TheNeededBinsAreTheEditorsAndAreThereAgainNextTime)
{
    sort({"kitchen 1", "kitchen 2"});
    {
        CoverageCheck check(engine, store);
        check.open();
        for (const QString &bin : CoverageCheck::names()) {
            check.setNeeded(bin, bin == u"Kitchen"_s);
        }
        EXPECT_TRUE(check.isWhole());
        EXPECT_EQ(check.missing(), u"Every bin that a listing needs has clips."_s);
        EXPECT_FALSE(check.hasSingleTakes());
        EXPECT_EQ(check.singleTakes(), u"No room of these has one take only."_s);
        check.setNeeded(u"Pool"_s, true);
        EXPECT_EQ(check.missing(), u"Missing: Pool"_s);
    }
    CoverageCheck check(engine, store);
    check.open();
    EXPECT_EQ(check.missing(), u"Missing: Pool"_s);
    EXPECT_EQ(store.data(u"lkNeededBins"_s), R"(["Kitchen","Pool"])");
    check.setNeeded(u"Kitchen"_s, false);
    check.setNeeded(u"Pool"_s, false);
    EXPECT_EQ(check.missing(), u"No bin is ticked as needed."_s);
    EXPECT_EQ(store.data(u"lkNeededBins"_s), "[]");
    CoverageCheck third(engine, store);
    third.open();
    EXPECT_EQ(third.missing(), u"No bin is ticked as needed."_s) << "none is a choice too";
}

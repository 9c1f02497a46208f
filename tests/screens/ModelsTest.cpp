#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

#include "core/RoomLabel.h"
#include "screens/BinChoices.h"
#include "screens/BinColors.h"
#include "screens/BinListModel.h"
#include "screens/ClipListModel.h"
#include "screens/ClipThumbnails.h"
#include "screens/DurationText.h"
#include "screens/ExportTexts.h"
#include "screens/PreviewClip.h"
#include "screens/ProjectListModel.h"
#include "tests/core/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class ModelsTest : public SortEngineTest
{
protected:
    void sortShoot()
    {
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    static std::vector<QString> column(const QAbstractItemModel &model, int role)
    {
        std::vector<QString> texts;
        for (int row = 0; row < model.rowCount(); ++row) {
            texts.push_back(model.index(row, 0).data(role).toString());
        }
        return texts;
    }

    static std::vector<std::pair<QString, int>> rowsOf(const BinListModel &bins)
    {
        std::vector<std::pair<QString, int>> rows;
        for (int row = 0; row < bins.rowCount(); ++row) {
            const QModelIndex index = bins.index(row);
            rows.emplace_back(index.data(BinListModel::LabelRole).toString(),
                              index.data(BinListModel::CountRole).toInt());
        }
        return rows;
    }

    SortEngine engine{seams()};
};

QImage filled(QSize size, const QColor &color)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) < 4 && std::abs(a.green() - b.green()) < 4 && std::abs(a.blue() - b.blue()) < 4;
}

using BinListModelTest = ModelsTest;
using ClipListModelTest = ModelsTest;
using ClipThumbnailsTest = ModelsTest;
using ExportTextsTest = ModelsTest;
using ProjectListModelTest = ModelsTest;
using PreviewClipTest = ModelsTest;
using BinChoicesTest = ModelsTest;

} // namespace

TEST_F(BinListModelTest, ListsTheClipsToLookAtFirstThenTheBinsTheFullestFirst)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3", "dark 4"});
    BinListModel bins;
    const QAbstractItemModelTester tester(&bins, QAbstractItemModelTester::FailureReportingMode::Warning);
    bins.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(rowsOf(bins), ElementsAre(Pair(u"Needs a look"_s, 1), Pair(u"Kitchen"_s, 2), Pair(u"Pool"_s, 1),
                                          Pair(u"Unsorted"_s, 1)));
    EXPECT_EQ(bins.index(0).data(BinListModel::BinRole).toString(), reviewKey());
    EXPECT_TRUE(bins.index(0).data(BinListModel::IsReviewRole).toBool());
    EXPECT_EQ(bins.selectedRow(), 0);
}

TEST_F(BinListModelTest, HasNoRowToLookAtWithoutClipsUnderReview)
{
    makeClips({"kitchen 1"});
    BinListModel bins;
    bins.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(rowsOf(bins), ElementsAre(Pair(u"Kitchen"_s, 1)));
}

TEST_F(BinListModelTest, SelectingARowShowsItsBinAndARowThatIsNotThereChangesNothing)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    BinListModel bins;
    bins.setEngine(&engine);
    sortShoot();
    bins.select(1);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    EXPECT_EQ(bins.selectedRow(), 1);
    bins.select(2);
    bins.select(-1);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
}

TEST_F(BinListModelTest, TellsWhenCountsAreNotToBeShown)
{
    BinListModel bins;
    bins.setEngine(&engine);
    QSignalSpy changed(&bins, &BinListModel::showsCountsChanged);
    EXPECT_TRUE(bins.showsCounts());
    engine.setOptions({.showClipCounts = false});
    EXPECT_FALSE(bins.showsCounts());
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(BinListModelTest, IsEmptyAfterAReset)
{
    makeClips({"kitchen 1", "dark 2"});
    BinListModel bins;
    const QAbstractItemModelTester tester(&bins, QAbstractItemModelTester::FailureReportingMode::Warning);
    bins.setEngine(&engine);
    sortShoot();
    engine.reset();
    EXPECT_EQ(bins.rowCount(), 0);
    EXPECT_EQ(bins.selectedRow(), -1);
}

TEST_F(ClipListModelTest, ShowsTheClipsOfTheSelectedBinByDate)
{
    makeClips({"kitchen 2", "pool 3", "kitchen 1"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"kitchen 1"_s, u"kitchen 2"_s));
    EXPECT_THAT(column(clips, ClipListModel::FileNameRole), ElementsAre(u"kitchen 1.mov"_s, u"kitchen 2.mov"_s));
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"pool 3"_s));
    EXPECT_EQ(clips.rowCount(), 1);
    engine.setSelectedBin(std::nullopt);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), IsEmpty());
}

TEST_F(ClipListModelTest, SaysWhyAClipIsUnderReview)
{
    makeClips({"dark 1", "pool 2"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    ASSERT_EQ(engine.selectedBin(), reviewKey());
    EXPECT_THAT(column(clips, ClipListModel::ReviewReasonRole), ElementsAre(u"couldn't read any frames"_s));
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::ReviewReasonRole), ElementsAre(QString()));
}

TEST_F(ClipListModelTest, ShowsAllClipsAsTheyLandAndMovesThemIntoOrderAtTheEnd)
{
    makeClips({"a 9", "b 8", "c 1"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setSource(ClipListModel::AllClips);
    clips.setEngine(&engine);
    QSignalSpy inserted(&clips, &QAbstractItemModel::rowsInserted);
    QSignalSpy moved(&clips, &QAbstractItemModel::rowsMoved);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    sortShoot();
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"c 1"_s, u"b 8"_s, u"a 9"_s));
    EXPECT_EQ(inserted.count(), 2) << "one for each batch of two";
    EXPECT_GT(moved.count(), 0);
    EXPECT_EQ(removed.count(), 0) << "a clip that stays keeps its delegate";
}

TEST_F(ClipListModelTest, AClipThatChangesIsToldToHaveChangedAndNothingElseHappens)
{
    makeClips({"kitchen 1", "kitchen 2"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    QSignalSpy changed(&clips, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&clips, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    engine.clips()[1]->extraBins = {u"Pool"_s};
    Q_EMIT engine.clipsChanged();
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(reset.count() + removed.count(), 0);
    EXPECT_EQ(clips.index(1).data(ClipListModel::ExtraBinRole).toString(), u"Pool"_s);
}

TEST_F(ClipListModelTest, ActsOnTheClipOfARowAndOnNoneForARowThatIsNotThere)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    for (const int row : {-1, 2}) {
        clips.open(row);
        clips.reassign(row, u"Pool"_s);
        clips.toggleExtraBin(row, u"Pool"_s);
        clips.confirm(row);
        clips.reveal(row);
    }
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_EQ(clips.previewRow(), -1);
    EXPECT_THAT(revealed, IsEmpty());
    clips.open(1);
    EXPECT_EQ(engine.previewClip(), engine.clips()[1]);
    EXPECT_EQ(clips.previewRow(), 1);
    clips.toggleExtraBin(1, u"Pool"_s);
    EXPECT_EQ(clips.index(1).data(ClipListModel::ExtraBinsRole).toStringList(), QStringList(u"Pool"_s));
    clips.reveal(1);
    EXPECT_THAT(revealed, ElementsAre(FileUrl(folder / "kitchen 2.mov")));
    clips.reassign(0, u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"kitchen 2"_s));
}

TEST_F(ClipListModelTest, AnotherBinIsAnotherListAndAClipThatLeavesIsOneRemoval)
{
    makeClips({"kitchen 1", "kitchen 2", "kitchen 3", "pool 4", "pool 5"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setEngine(&engine);
    sortShoot();
    QSignalSpy reset(&clips, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_EQ(reset.count(), 1);
    EXPECT_EQ(removed.count(), 0);
    engine.setSelectedBin(u"Kitchen"_s);
    clips.reassign(1, u"Pool"_s);
    EXPECT_EQ(reset.count(), 2);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 1);
}

TEST(DetailsText, TellsLengthPictureAndRate)
{
    MediaClip clip(FileUrl("/a.mov"));
    clip.duration = 12.34;
    clip.displaySize = {3840, 2160};
    clip.frameDurationValue = 1001;
    clip.frameDurationScale = 60000;
    EXPECT_EQ(detailsText(clip), u"12.3s · 3840 × 2160 · 59.94 fps"_s);
    clip.frameDurationValue = 0;
    clip.frameDurationScale = 25;
    EXPECT_EQ(detailsText(clip), u"12.3s · 3840 × 2160 · 25.00 fps"_s);
}

TEST_F(PreviewClipTest, LeavesTheClipWithOneSecondBinOrNoneWhateverItHeldBefore)
{
    makeClips({"kitchen 1"});
    PreviewClip preview;
    preview.setEngine(&engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->extraBins = {u"Garage"_s, u"Office"_s};
    engine.setPreviewClip(clip);
    EXPECT_TRUE(preview.isPresent());
    EXPECT_EQ(preview.secondBin(), u"Garage"_s);
    preview.setSecondBin(u"Pool"_s);
    EXPECT_THAT(clip->extraBins, ElementsAre(u"Pool"_s));
    preview.setSecondBin(u"Kitchen"_s);
    EXPECT_THAT(clip->extraBins, IsEmpty()) << "its primary bin is no second one";
    preview.setSecondBin(u"Pool"_s);
    preview.setSecondBin(QString());
    EXPECT_THAT(clip->extraBins, IsEmpty());
    EXPECT_THAT(saved()->clips.front().extraBins, IsEmpty());
    preview.reassign(u"Pool"_s);
    EXPECT_EQ(clip->primaryBin, u"Pool"_s);
    engine.closePreview();
    EXPECT_FALSE(preview.isPresent());
    EXPECT_EQ(preview.name(), u"kitchen 1.mov"_s) << "it may be fading out";
}

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

TEST(DurationText, ReadsAsMinutesAndSecondsOrHours)
{
    EXPECT_EQ(durationText(0), u"0:00"_s);
    EXPECT_EQ(durationText(7.4), u"0:07"_s);
    EXPECT_EQ(durationText(59.6), u"1:00"_s);
    EXPECT_EQ(durationText(725), u"12:05"_s);
    EXPECT_EQ(durationText(3723), u"1:02:03"_s);
    EXPECT_EQ(durationText(-5), u"0:00"_s);
    EXPECT_EQ(durationText(std::numeric_limits<double>::quiet_NaN()), u"0:00"_s);
}

TEST(BinColors, AreTheSameForANameEverywhereAndDark)
{
    // "AB": 65 × 31 + 66 = 2081 of 3600.
    const auto [first, second] = binGradientColors(u"AB"_s);
    EXPECT_NEAR(first.hsvHueF(), 2081.0 / 3600, 1e-4);
    EXPECT_NEAR(first.hsvSaturationF(), 0.22, 1e-4);
    EXPECT_NEAR(first.valueF(), 0.34, 1e-4);
    EXPECT_NEAR(second.hsvHueF(), 2081.0 / 3600, 1e-4);
    EXPECT_NEAR(second.hsvSaturationF(), 0.26, 1e-4);
    EXPECT_NEAR(second.valueF(), 0.14, 1e-4);
    EXPECT_NEAR(binGradientColors(QString()).first.hsvHueF(), 0.0, 1e-4);
    // One scalar beyond the basic plane, not two halves: 0x1F3E0 = 127968 is 1968 of 3600.
    EXPECT_NEAR(binGradientColors(u"\U0001F3E0"_s).first.hsvHueF(), 1968.0 / 3600, 1e-4);
}

TEST_F(ClipThumbnailsTest, GivesAClipsFirstFrameFillingTheSizeAskedFor)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->thumbnail = Thumbnail(filled({40, 20}, Qt::red));
    Q_EMIT engine.clipsChanged();
    QSize size;
    const QImage picture = pictures.requestImage(ClipThumbnails::urlOf(*clip).path().mid(1), &size, {16, 9});
    EXPECT_EQ(size, QSize(16, 9));
    EXPECT_EQ(picture.size(), QSize(16, 9));
    EXPECT_TRUE(isNear(picture.pixelColor(0, 0), Qt::red));
    EXPECT_TRUE(isNear(picture.pixelColor(15, 8), Qt::red));
}

TEST_F(ClipThumbnailsTest, RoundsTheCornersAskedFor)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const QString path = ClipThumbnails::urlOf(*engine.clips().front()).path().mid(1);
    const QImage all = pictures.requestImage(path + u"?radius=8"_s, nullptr, {100, 50});
    EXPECT_EQ(all.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(all.pixelColor(99, 49).alpha(), 0);
    EXPECT_EQ(all.pixelColor(50, 0).alpha(), 255);
    const QImage top = pictures.requestImage(path + u"?radius=8&top"_s, nullptr, {100, 50});
    EXPECT_EQ(top.pixelColor(99, 0).alpha(), 0);
    EXPECT_EQ(top.pixelColor(0, 49).alpha(), 255);
}

TEST_F(ClipThumbnailsTest, StandsInTheBinsColoursForAClipWithoutAFrame)
{
    makeClips({"dark 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const QString path = ClipThumbnails::urlOf(*engine.clips().front()).path().mid(1);
    const QImage picture = pictures.requestImage(path, nullptr, {160, 90});
    const auto [first, second] = binGradientColors(u"Unsorted"_s);
    EXPECT_TRUE(isNear(picture.pixelColor(0, 0), first));
    EXPECT_TRUE(isNear(picture.pixelColor(159, 89), second));
}

TEST_F(ClipThumbnailsTest, ForgetsThePicturesOfClipsThatAreGone)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->thumbnail = Thumbnail(filled({4, 4}, Qt::red));
    Q_EMIT engine.clipsChanged();
    const QString path = ClipThumbnails::urlOf(*clip).path().mid(1);
    ASSERT_TRUE(isNear(pictures.requestImage(path, nullptr, {8, 8}).pixelColor(4, 4), Qt::red));
    engine.reset();
    EXPECT_FALSE(isNear(pictures.requestImage(path, nullptr, {8, 8}).pixelColor(4, 4), Qt::red));
}

TEST_F(ExportTextsTest, SayWhatAnExportDoesWithTheFootageAndHaveNoSingular)
{
    makeClips({"kitchen 1"});
    ExportTexts texts;
    texts.setEngine(&engine);
    sortShoot();
    const QString name = shoot.lastPathComponent();
    EXPECT_EQ(texts.outcome(), u"Your footage was not moved or copied."_s);
    engine.setOptions({.fileHandling = FileHandling::copy});
    EXPECT_EQ(texts.title(), u"Copying "_s + name + u" into folders"_s);
    EXPECT_EQ(texts.progress(), u"Copying "_s + name);
    EXPECT_THAT(texts.steps(), ElementsAre(u"Copying into folders…"_s, u"Building 1 bins…"_s, u"Almost there…"_s));
    EXPECT_EQ(texts.promise(), u"Originals are left exactly where they are."_s);
    EXPECT_EQ(texts.outcome(), u"Copied 1 clips into 1 folders. Your originals are untouched."_s);
    engine.setOptions({.fileHandling = FileHandling::move});
    EXPECT_EQ(texts.title(), u"Moving "_s + name + u" into folders"_s);
    EXPECT_EQ(texts.progress(), u"Moving "_s + name);
    EXPECT_THAT(texts.steps(), ElementsAre(u"Moving into folders…"_s, u"Building 1 bins…"_s, u"Almost there…"_s));
    EXPECT_EQ(texts.promise(), u"Originals are only deleted once every copy verifies clean."_s);
    EXPECT_EQ(texts.outcome(), u"Moved 1 clips into 1 folders."_s);
}

TEST_F(ProjectListModelTest, ListsTheShootsTheLatestFirstAndWithNothingToReviewInTwoParts)
{
    ProjectListModel projects;
    const QAbstractItemModelTester tester(&projects, QAbstractItemModelTester::FailureReportingMode::Warning);
    projects.setEngine(&engine);
    EXPECT_EQ(projects.rowCount(), 0);
    makeClips({"kitchen 1", "dark 2"});
    (void)folder.write("second/pool 1.mov");
    engine.sortFolder(FileUrl(folder / "second"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    sortShoot();
    EXPECT_THAT(column(projects, ProjectListModel::NameRole), ElementsAre(shoot.lastPathComponent(), u"second"_s));
    EXPECT_THAT(column(projects, ProjectListModel::DetailRole),
                ElementsAre(u"3 clips · 3 bins · 1 to review"_s, u"1 clips · 1 bins"_s));
    engine.deleteProject(projectID(shoot));
    EXPECT_THAT(column(projects, ProjectListModel::NameRole), ElementsAre(u"second"_s));
}

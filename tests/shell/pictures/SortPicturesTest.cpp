// The sort tool but for its results: the way in, the work, what fails, and the event written.
#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>

#include "tests/shell/pictures/ScreenPictures.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr CopyProgress halfACopy{.phase = CopyPhase::verifying,
                                 .verifies = true,
                                 .totalBytes = 34'560'000'000,
                                 .copiedBytes = 18'200'000'000,
                                 .verifiedBytes = 16'900'000'000,
                                 .copyingSeconds = 80.0,
                                 .verifyingSeconds = 44.0};

} // namespace

TEST_F(ScreenPictures, TheLanding)
{
    openInCorner();
    picture(u"landing"_s);
    window->setProperty(
        "classifierProblem",
        u"The vision models can't be read (/usr/share/larkspan/models/objects.onnx), so no clip can be recognised: all "
        u"will "
        u"be filed under “Unsorted”. Run script/fetch-models, or install Larkspan again, and restart it."_s);
    picture(u"landing-no-models"_s);
    window->setProperty("classifierProblem", QString());

    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path()))});
    QDragEnterEvent enter(QPoint(490, 320), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    picture(u"landing-drop"_s);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(window, &leave);

    Desktop::click(shown(u"What this model does"_s));
    (void)shown(u"Local: On This Mac"_s);
    picture(u"model-note-local"_s);
    engine.setModelTier(ModelTier::cloud);
    (void)shown(u"Skyreader"_s);
    picture(u"model-note-cloud"_s);
}

TEST_F(ScreenPictures, TheSortAtWork)
{
    makeShoot();
    isHeldBack = true;
    openInCorner();
    engine.sortFolder(maple());
    (void)shown(u"Sorting 2026-11-20 Maple Street 14"_s);
    picture(u"working-first"_s);
    engine.copyHistory()->setProgress(halfACopy);
    (void)shown(u"about 2 minutes"_s);
    picture(u"working-copy"_s);
    engine.copyHistory()->setProgress(std::nullopt);
    sampling.open(14);
    ASSERT_TRUE(waitUntil([this] { return engine.clips().size() >= 12; }));
    picture(u"working"_s);
}

TEST_F(ScreenPictures, TheFailures)
{
    openInCorner();
    engine.sortFolder(FileUrl(world.path()));
    (void)shown(u"Choose Another Folder"_s);
    mayBeElided = {};
    picture(u"empty-folder"_s);
    engine.setImportRoot(FileUrl(world / "gone"));
    engine.importCard(FileUrl(world.path()), u"CARD"_s);
    (void)shown(u"Back to the Clips"_s);
    picture(u"failed"_s);
    Desktop::click(shown(u"Back to the Clips"_s));
    picture(u"results-empty"_s);
}

TEST_F(ScreenPictures, TheCardThatCouldNotBeReadWhole)
{
    const auto closed = world.write("card/DCIM/101MEDIA/pool 2.mov").parent_path();
    std::filesystem::create_directory(world / "Shoots");
    std::filesystem::permissions(world.path(), std::filesystem::perms::all);
    std::filesystem::permissions(world / "Shoots", std::filesystem::perms::all);
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    openInCorner();
    engine.setImportRoot(FileUrl(world / "Shoots"));
    {
        const Unprivileged user;
        engine.importCard(FileUrl(world / "card"), u"EOS_DIGITAL"_s);
        ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    }
    std::filesystem::permissions(closed, std::filesystem::perms::all);
    (void)shown(u"Dismiss"_s);
    mayBeElided = {};
    picture(u"card-note-empty-folder"_s);
    sortSample();
    (void)shown(u"Dismiss"_s);
    picture(u"card-note-results"_s);
    window->setProperty("classifierProblem", u"The vision models can't be read."_s);
    picture(u"card-note-below-problem"_s);
}

TEST_F(ScreenPictures, TheCopyThatWasStopped)
{
    for (int i = 0; i < 12; ++i) {
        (void)world.write("EOS_DIGITAL/DCIM/100/C" + std::to_string(1000 + i) + ".MP4");
    }
    std::filesystem::create_directory(world / "Shoots");
    openInCorner();
    engine.setImportRoot(FileUrl(world / "Shoots"));
    engine.importCard(FileUrl(world / "EOS_DIGITAL"), u"EOS_DIGITAL"_s);
    copying.awaitArrival();
    engine.reset();
    copying.open();
    (void)shown(u"Dismiss"_s);
    (void)shown(u"Choose Folder"_s);
    mayBeElided = {};
    picture(u"stopped-copy-landing"_s);
    sortSample();
    (void)shown(u"Dismiss"_s);
    picture(u"stopped-copy-results"_s);
}

TEST_F(ScreenPictures, TheExport)
{
    openInCorner();
    sortSample();
    startCopy();
    (void)shown(u"Copying 2026-11-20 Maple Street 14"_s);
    picture(u"organizing"_s);
    engine.copyHistory()->setProgress(halfACopy);
    (void)shown(u"about 2 minutes"_s);
    picture(u"organizing-figures"_s);
    window->close();
    (void)shown(u"Footage is still being copied"_s);
    picture(u"close-question"_s);
    Desktop::click(shown(u"Finish, Then Close"_s));
    (void)shown(u"Closing when the copy is done…"_s);
    picture(u"close-waiting"_s);
}

TEST_F(ScreenPictures, TheEventWritten)
{
    openInCorner();
    sortSample();
    SortOptions options = engine.options();
    options.openEditorAfterExport = false;
    engine.setOptions(options);
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    picture(u"done"_s);
    engine.copyHistory()->add({});
    (void)shown(u"Copy Report…"_s);
    picture(u"done-copied"_s);
}

TEST_F(ScreenPictures, CoverageOfTheShoot)
{
    openInCorner();
    sortSample();
    coverage.open();
    (void)shown(u"Coverage"_s);
    picture(u"coverage"_s);
    for (const QString &bin : CoverageCheck::names()) {
        coverage.setNeeded(bin, true);
    }
    picture(u"coverage-all"_s);
}

TEST_F(ScreenPictures, ExportFor)
{
    openInCorner();
    sortSample();
    handoff.open();
    (void)shown(u"Writes "_s + handoff.file());
    mayBeElided.insert(u"Writes "_s + handoff.file());
    mayBeElided.insert(u"Clips as "_s + handoff.example());
    picture(u"export-for"_s);
    handoff.setFormat(u"otio"_s);
    holdsTimecodes = true;
    handoff.write();
    reading.open(5);
    (void)shown(u"5 of %1"_s.arg(engine.clipCount()));
    picture(u"export-for-reading"_s);
    holdsTimecodes = false;
    reading.open(1);
    ASSERT_TRUE(waitUntil([this] { return handoff.isWritten(); }));
    handoff.setFormat(u"kdenlive"_s);
    handoff.write();
    (void)shown(u"Written: "_s + handoff.file());
    mayBeElided.insert(u"Written: "_s + handoff.file());
    picture(u"export-for-written"_s);
}

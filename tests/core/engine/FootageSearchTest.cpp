// The search for footage that an export has moved: where it looks first, and when it ends.
#include "core/engine/FootageSearch.h"

#include <gmock/gmock.h>

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

class FootageSearchTest : public testing::Test
{
protected:
    static ClipPtr shot(const FileUrl &url)
    {
        auto clip = std::make_shared<MediaClip>(url);
        clip->duration = 2.0;
        clip->naturalSize = {16, 9};
        return clip;
    }

    static std::vector<FileUrl> places(const FileUrl &clip, const FileUrl &root, const QString &bin)
    {
        const FileUrl place = root.appending(bin).appending(clip.lastPathComponent());
        return fs::exists(place.path()) ? std::vector{place} : std::vector<FileUrl>();
    }

    // A clip whose file is in its bin's folder by now.
    ClipPtr movedClip(const char *name, const QString &bin) const
    {
        (void)folder.write(bin.toStdString() + "/" + name);
        const ClipPtr clip = shot(FileUrl(folder / name));
        clip->primaryBin = bin;
        return clip;
    }

    SortSeams seams() const
    {
        SortSeams parts;
        parts.probeClip = shot;
        parts.placesInBin = places;
        return parts;
    }

    const TempFolder folder;
    const std::vector<FileUrl> roots{FileUrl(folder.path())};
};

} // namespace

TEST_F(FootageSearchTest, TakesTheFileInTheClipsOwnBinWhereAnotherBinHoldsOneToo)
{
    const std::vector clips{movedClip("pool.mov", u"Pool"_s), movedClip("attic.mov", u"Attic"_s)};
    (void)folder.write("Attic/pool.mov");
    EXPECT_THAT(findMovedFootage(clips, roots, seams(), {}),
                ElementsAre(FileUrl(folder / "Pool/pool.mov"), FileUrl(folder / "Attic/attic.mov")));
}

TEST_F(FootageSearchTest, EndsBehindTheClipInHandWhenItIsStopped)
{
    const std::vector clips{movedClip("pool 1.mov", u"Pool"_s), movedClip("pool 2.mov", u"Pool"_s)};
    std::stop_source stop;
    SortSeams parts = seams();
    parts.placesInBin = [&stop](const FileUrl &clip, const FileUrl &root, const QString &bin) {
        stop.request_stop();
        return places(clip, root, bin);
    };
    EXPECT_THAT(findMovedFootage(clips, roots, parts, stop.get_token()),
                ElementsAre(FileUrl(folder / "Pool/pool 1.mov"), std::nullopt));
}

#include "output/PlacesInBin.h"

#include <gmock/gmock.h>

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

TEST(PlacesInBin, AreTheFilesOfAClipsNameAndItsNumberedSuccessors)
{
    const TempFolder folder;
    const fs::path shoots = folder / "Shoots";
    fs::create_directory(shoots);
    const auto places = [&shoots](const char *clip, const QString &bin) {
        std::vector<std::string> names;
        for (const FileUrl &place : placesInBin(FileUrl(fs::path("/gone") / clip), FileUrl(shoots), bin)) {
            names.push_back(fs::relative(place.path(), shoots).native());
        }
        return names;
    };
    EXPECT_THAT(places("a.mov", u"Pool"_s), IsEmpty());
    for (const char *name : {"a.mov", "a 3.mov", "a 4.mov", "a 7.mov", "b.mov", "a 2.MOV"}) {
        (void)folder.write(fs::path("Shoots/Hallway - Stairs") / name);
    }
    fs::create_directory(shoots / "Hallway - Stairs/b 2.mov");
    EXPECT_THAT(places("a.mov", u"Hallway / Stairs"_s),
                ElementsAre("Hallway - Stairs/a.mov", "Hallway - Stairs/a 3.mov", "Hallway - Stairs/a 4.mov"));
    EXPECT_THAT(places("b.mov", u"Hallway / Stairs"_s), ElementsAre("Hallway - Stairs/b.mov"));
    (void)folder.write("Shoots/c.mov");
    EXPECT_THAT(places("c.mov", QString()), ElementsAre("c.mov"));
}

#include "screens/stages/ExportTexts.h"

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

using ExportTextsTest = ModelTest;

} // namespace

TEST_F(ExportTextsTest, BuildOneBinAtLeast)
{
    ExportTexts texts;
    texts.setEngine(&engine);
    EXPECT_EQ(texts.steps().at(1), u"Building 1 bins…"_s);
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

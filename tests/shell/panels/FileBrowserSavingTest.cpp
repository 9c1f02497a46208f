// Our own file panel when it asks for a file to write.
#include "tests/shell/panels/FileBrowserFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

using FileBrowserSavingTest = FileBrowserTest;

TEST_F(FileBrowserSavingTest, AFileIsNamedInTheOpenFolderWithItsSuffixAdded)
{
    fs::create_directory(folder / "texts");
    (void)folder.write("old.CSV");
    (void)folder.write("clip.mov");
    openToSave(folder / "binnacle.csv");
    EXPECT_TRUE(browser.isSaving());
    EXPECT_EQ(browser.prompt(), u"Save"_s);
    EXPECT_EQ(browser.fileName(), u"binnacle.csv"_s);
    EXPECT_EQ(browser.status(), QString());
    EXPECT_THAT(files(), ElementsAre("old.CSV"));
    browser.enter(0);
    ASSERT_TRUE(shows(folder / "texts"));
    browser.setFileName(u" report "_s);
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre(folder / "texts/report.csv"));

    openToSave(folder / "binnacle.csv");
    EXPECT_EQ(browser.fileName(), u"binnacle.csv"_s) << "the suggestion, not what was written last";
    browser.setFileName(u"report.txt"_s);
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen.back(), folder / "report.txt") << "a suffix of one's own is kept";
}

TEST_F(FileBrowserSavingTest, AFileThatIsThereIsReplacedOnlyWhenTheEditorSaysSo)
{
    (void)folder.write("report.csv");
    openToSave(folder / "report.csv");
    browser.accept();
    ASSERT_TRUE(waitUntil([this] { return browser.fileToReplace() == u"report.csv"_s; }));
    browser.keepFile();
    EXPECT_EQ(browser.fileToReplace(), QString());
    EXPECT_TRUE(browser.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
    browser.accept();
    ASSERT_TRUE(waitUntil([this] { return browser.fileToReplace() == u"report.csv"_s; }));
    browser.replaceFile();
    EXPECT_FALSE(browser.isOpen());
    EXPECT_THAT(chosen, ElementsAre(folder / "report.csv"));
}

TEST_F(FileBrowserSavingTest, ANameThatNoFileCanHaveIsReported)
{
    fs::create_directory(folder / "texts.csv");
    openToSave(folder / "a.csv");
    browser.setFileName(u"texts"_s);
    browser.accept();
    EXPECT_TRUE(says(u"There is a folder named “texts.csv” already."_s));
    for (const QString &name : {u"a/b"_s, u".."_s, u"."_s}) {
        browser.setFileName(name);
        browser.accept();
        EXPECT_TRUE(says(u"“%1” can't be the name of a file."_s.arg(name)));
    }
    browser.setFileName(u"  "_s);
    EXPECT_FALSE(browser.canAccept());
    EXPECT_TRUE(browser.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
}

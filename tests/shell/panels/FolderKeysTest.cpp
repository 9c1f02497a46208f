// Keys in the list of a file panel, without a window.
#include "shell/panels/FolderKeys.h"

#include <gmock/gmock.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Collects what a key leads to, as text: "select 2", "enter 2", "up", "accept", "path ~".
class FolderKeysTest : public testing::Test
{
protected:
    FolderKeysTest()
    {
        entries.show({.folders = {"Ash", "Birch", "Cedar", "Cherry", "Elm"}, .files = {"clip 1.mov"}});
        keys.setProperty("entries", QVariant::fromValue(&entries));
        keys.setProperty("pageRows", 3);
        QObject::connect(&keys, &FolderKeys::selected, [this](int row) { done.push_back(u"select %1"_s.arg(row)); });
        QObject::connect(&keys, &FolderKeys::entered, [this](int row) { done.push_back(u"enter %1"_s.arg(row)); });
        QObject::connect(&keys, &FolderKeys::upDue, [this] { done.push_back(u"up"_s); });
        QObject::connect(&keys, &FolderKeys::acceptDue, [this] { done.push_back(u"accept"_s); });
        QObject::connect(&keys, &FolderKeys::pathBegun,
                         [this](const QString &text) { done.push_back(u"path "_s + text); });
    }

    QStringList press(int key, int row, const QString &text = {}, int modifiers = 0)
    {
        done.clear();
        isUsed = keys.take(key, modifiers, text, false, row);
        return done;
    }

    QStringList repeat(int key, int row)
    {
        done.clear();
        isUsed = keys.take(key, 0, {}, true, row);
        return done;
    }

    FolderEntries entries;
    FolderKeys keys;
    QStringList done;
    bool isUsed = false;
};

} // namespace

TEST_F(FolderKeysTest, ArrowsAndPageKeysSelectFoldersAndStayAmongThem)
{
    EXPECT_THAT(press(Qt::Key_Down, -1), ElementsAre(u"select 0"_s));
    EXPECT_THAT(press(Qt::Key_Down, 1), ElementsAre(u"select 2"_s));
    EXPECT_THAT(press(Qt::Key_Down, 4), ElementsAre(u"select 4"_s)) << "below are files";
    EXPECT_THAT(press(Qt::Key_Up, 1), ElementsAre(u"select 0"_s));
    EXPECT_THAT(press(Qt::Key_Up, 0), ElementsAre(u"select 0"_s));
    EXPECT_THAT(press(Qt::Key_Home, 3), ElementsAre(u"select 0"_s));
    EXPECT_THAT(press(Qt::Key_End, 1), ElementsAre(u"select 4"_s));
    EXPECT_THAT(press(Qt::Key_PageDown, -1), ElementsAre(u"select 3"_s));
    EXPECT_THAT(press(Qt::Key_PageDown, 3), ElementsAre(u"select 4"_s));
    EXPECT_THAT(press(Qt::Key_PageUp, 4), ElementsAre(u"select 1"_s));
    EXPECT_TRUE(isUsed);
}

TEST_F(FolderKeysTest, AFolderIsOpenedByReturnOnTheKeypadTooAndByRight)
{
    EXPECT_THAT(press(Qt::Key_Return, 2, u"\r"_s), ElementsAre(u"enter 2"_s));
    EXPECT_THAT(press(Qt::Key_Enter, 2, u"\r"_s, Qt::KeypadModifier), ElementsAre(u"enter 2"_s));
    EXPECT_THAT(press(Qt::Key_Right, 2), ElementsAre(u"enter 2"_s));
}

TEST_F(FolderKeysTest, WithoutASelectedFolderReturnChoosesTheOpenOneAndRightDoesNothing)
{
    EXPECT_THAT(press(Qt::Key_Return, -1, u"\r"_s), ElementsAre(u"accept"_s));
    EXPECT_THAT(press(Qt::Key_Right, -1), IsEmpty());
    EXPECT_TRUE(isUsed);
}

TEST_F(FolderKeysTest, LeftAndBackspaceGoUp)
{
    EXPECT_THAT(press(Qt::Key_Left, 2), ElementsAre(u"up"_s));
    EXPECT_THAT(press(Qt::Key_Backspace, -1, u"\b"_s), ElementsAre(u"up"_s));
}

TEST_F(FolderKeysTest, AKeyThatIsHeldMovesTheSelectionAndOpensNothing)
{
    EXPECT_THAT(repeat(Qt::Key_Down, 1), ElementsAre(u"select 2"_s));
    for (const int key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Backspace, Qt::Key_Return}) {
        EXPECT_THAT(repeat(key, 1), IsEmpty());
    }
}

TEST_F(FolderKeysTest, KeysWithAModifierAreLeftToThePanel)
{
    EXPECT_THAT(press(Qt::Key_Up, 1, {}, Qt::AltModifier), IsEmpty());
    EXPECT_FALSE(isUsed);
    EXPECT_THAT(press(Qt::Key_Return, 1, u"\r"_s, Qt::ControlModifier), IsEmpty());
    EXPECT_FALSE(isUsed);
    EXPECT_THAT(press(Qt::Key_C, 1, u"c"_s, Qt::ControlModifier), IsEmpty());
    EXPECT_FALSE(isUsed);
    EXPECT_THAT(press(Qt::Key_Right, 1, {}, Qt::ControlModifier), IsEmpty());
}

TEST_F(FolderKeysTest, TypedLettersSelectTheFolderThatBeginsWithThem)
{
    EXPECT_THAT(press(Qt::Key_C, 0, u"c"_s), ElementsAre(u"select 2"_s));
    EXPECT_THAT(press(Qt::Key_H, 2, u"h"_s), ElementsAre(u"select 3"_s));
    EXPECT_THAT(press(Qt::Key_X, 3, u"x"_s), IsEmpty());
    EXPECT_TRUE(isUsed);
}

TEST_F(FolderKeysTest, ASlashOrATildeBeginsAPath)
{
    EXPECT_THAT(press(Qt::Key_Slash, 1, u"/"_s), ElementsAre(u"path /"_s));
    EXPECT_THAT(press(Qt::Key_AsciiTilde, -1, u"~"_s), ElementsAre(u"path ~"_s));
    EXPECT_TRUE(isUsed);
}

TEST_F(FolderKeysTest, OtherKeysAreLeftToTheList)
{
    for (const auto &[key, text] : {std::pair{Qt::Key_Space, u" "_s}, {Qt::Key_Tab, u"\t"_s}, {Qt::Key_F2, {}}}) {
        EXPECT_THAT(press(key, 1, text), IsEmpty());
        EXPECT_FALSE(isUsed);
    }
}

TEST_F(FolderKeysTest, InAFolderWithoutFoldersNoRowIsLeft)
{
    entries.show({.folders = {}, .files = {"clip 1.mov"}});
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown}) {
        EXPECT_THAT(press(key, -1), ElementsAre(u"select 0"_s)) << "which deselects";
    }
    EXPECT_THAT(press(Qt::Key_A, -1, u"a"_s), IsEmpty());
}

// A screen reader in the moments that the blind walk over the bus can't hold: a copy under way, the
// question that closing then raises, and a failure.
#include <QtGui/QAccessible>

#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;

namespace {

class ScreenReaderTest : public ShellWindowTest
{
protected:
    ~ScreenReaderTest() override { QAccessible::setActive(false); }

    void openToScreenReader()
    {
        open();
        QAccessible::setActive(true);
    }

    void startCopying()
    {
        sort();
        chooseCopying();
        Desktop::click(shown(u"Export"_s));
        copying.awaitArrival();
    }

    static void visit(QAccessibleInterface *node, const std::function<void(QAccessibleInterface &)> &see)
    {
        for (int i = 0; i < node->childCount(); ++i) {
            QAccessibleInterface *child = node->child(i);
            if (child != nullptr && !child->state().invisible) {
                see(*child);
                visit(child, see);
            }
        }
    }

    // Waits until such an item is told, and returns whether it came.
    [[nodiscard]] bool tells(QAccessible::Role role, const QString &name, const QString &description = {}) const
    {
        return waitUntil([&] {
            bool found = false;
            visit(QAccessible::queryAccessibleInterface(window), [&](const QAccessibleInterface &node) {
                found = found || (node.role() == role && node.text(QAccessible::Name) == name &&
                                  (description.isEmpty() || node.text(QAccessible::Description) == description));
            });
            return found;
        });
    }

    // Returns the items that can be pressed or chosen and aren't told as such, or not by a name.
    std::vector<QString> wrongs() const
    {
        std::vector<QString> found;
        visit(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface &node) {
            const auto *actions = node.actionInterface();
            const bool acts =
                actions != nullptr && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
            const bool isGroup = node.role() == QAccessible::Client || node.role() == QAccessible::Grouping;
            if (acts && (node.text(QAccessible::Name).isEmpty() || isGroup)) {
                found.push_back(node.text(QAccessible::Name) + u" as "_s + QString::number(node.role()));
            }
        });
        return found;
    }
};

} // namespace

TEST_F(ScreenReaderTest, ACopyTellsHowFarItIsAndWhatItPromises)
{
    openToScreenReader();
    startCopying();
    EXPECT_TRUE(tells(QAccessible::ProgressBar, u"Copying "_s + shoot.lastPathComponent(), u"0 of 2"_s));
    EXPECT_TRUE(tells(QAccessible::StaticText, u"Originals are left exactly where they are."_s));
    EXPECT_THAT(wrongs(), IsEmpty());
    copying.open();
    EXPECT_TRUE(reaches(engine, StageKind::done));
}

TEST_F(ScreenReaderTest, TheQuestionOnClosingIsADialogWithItsAnswers)
{
    openToScreenReader();
    startCopying();
    window->close();
    EXPECT_TRUE(tells(QAccessible::Dialog, u"Footage is still being copied"_s));
    for (const QString &answer : {u"Stop and Close"_s, u"Keep Open"_s, u"Finish, Then Close"_s}) {
        EXPECT_TRUE(tells(QAccessible::Button, answer)) << answer.toStdString();
    }
    EXPECT_THAT(wrongs(), IsEmpty());
    Desktop::click(shown(u"Keep Open"_s));
    copying.open();
    EXPECT_TRUE(reaches(engine, StageKind::done));
}

TEST_F(ScreenReaderTest, AFailureIsToldWithItsReasonAndTheWayBack)
{
    openToScreenReader();
    engine.setImportRoot(FileUrl(desk / "gone"));
    engine.importCard(shoot, u"CARD"_s);
    EXPECT_TRUE(tells(QAccessible::Grouping, u"Couldn't write the event"_s,
                      u"Your Shoots folder isn't available right now — check it's connected, then try again."_s));
    EXPECT_TRUE(tells(QAccessible::Button, u"Back to the Clips"_s));
    EXPECT_THAT(wrongs(), IsEmpty());
}

TEST_F(ScreenReaderTest, ThePanelForAFolderTellsItsPartsTheChoiceAndAProblem)
{
    openToScreenReader();
    (void)folder.write("Shoots/Elm Road 4/kitchen 1.mov");
    fileRequest.askForFolder({.prompt = u"Sort This Folder"_s, .message = u"Choose the folder."_s},
                             FileUrl(folder / "Shoots"), [](const FileUrl &) {});
    EXPECT_TRUE(tells(QAccessible::Dialog, u"Choose the folder."_s));
    EXPECT_TRUE(tells(QAccessible::List, u"Places"_s));
    EXPECT_TRUE(tells(QAccessible::ListItem, u"Home"_s));
    EXPECT_TRUE(tells(QAccessible::EditableText, u"Path"_s));
    EXPECT_TRUE(tells(QAccessible::List, u"Shoots"_s));
    EXPECT_TRUE(tells(QAccessible::ListItem, u"Elm Road 4"_s));
    EXPECT_TRUE(tells(QAccessible::StaticText, u"“Shoots” · 1 clip"_s));
    for (const QString &button : {u"Up"_s, u"Cancel"_s, u"Sort This Folder"_s}) {
        EXPECT_TRUE(tells(QAccessible::Button, button)) << button.toStdString();
    }
    EXPECT_THAT(wrongs(), IsEmpty());
    fileRequest.browser()->goTo(u"nowhere"_s);
    EXPECT_TRUE(tells(QAccessible::AlertMessage, u"“nowhere” isn't there."_s));
}

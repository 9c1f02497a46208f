#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include "design/LK.h"
#include "screens/copies/ImportOffer.h"
#include "tests/screens/copies/HeldCopy.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class ImportPromptViewTest : public HeldCopy
{
protected:
    void show(const QString &name = u"CARD"_s, std::optional<int> clips = 74)
    {
        scene.emplace(R"(
            import QtQuick
            import Larkspan.Design
            import Larkspan.Screens
            Rectangle {
                id: page
                required property SortEngine engine
                property string cardName
                property bool isCounted
                property int clipCount
                property var answers: []
                width: 600; height: 400
                color: LK.palette.surfaceWindow
                TapHandler { onTapped: page.answers = page.answers.concat("below") }
                ImportPromptView {
                    objectName: "prompt"
                    anchors.centerIn: parent
                    focus: true
                    engine: page.engine
                    displayName: page.cardName
                    isCounted: page.isCounted
                    clipCount: page.clipCount
                    onAccept: page.answers = page.answers.concat("accept")
                    onDecline: page.answers = page.answers.concat("decline")
                    onOpenPreferences: page.answers = page.answers.concat("preferences")
                }
            })",
                      QVariantMap{{u"engine"_s, QVariant::fromValue(&engine)},
                                  {u"cardName"_s, name},
                                  {u"isCounted"_s, clips.has_value()},
                                  {u"clipCount"_s, clips.value_or(0)}},
                      QSize(600, 400));
    }

    QQuickItem *find(const QString &text) { return findShown(scene->root(), text); }
    QQuickItem *prompt() { return findNamed(scene->root(), u"prompt"_s); }
    QStringList answers() { return scene->root()->property("answers").toStringList(); }

    void awaitKeys()
    {
        ASSERT_TRUE(waitUntil([this] { return prompt()->property("answersKeys").toBool(); }));
    }

    QString body() { return prompt()->property("body").toString(); }

    std::optional<Scene> scene;
    const QString warning = u"Importing this card stops the copy that is running."_s;
};

} // namespace

TEST_F(ImportPromptViewTest, DuringACopySaysThatAcceptingStopsIt)
{
    show();
    EXPECT_FALSE(find(warning));
    startCopy();
    ASSERT_TRUE(waitUntil([this] { return find(warning) != nullptr; }));
    EXPECT_TRUE(find(u"CARD · 74 clips found. Import and sort it into your Shoots folder?"_s));
    QAccessibleInterface *card = QAccessible::queryAccessibleInterface(prompt());
    EXPECT_TRUE(card->text(QAccessible::Description).endsWith(u' ' + warning));
}

TEST_F(ImportPromptViewTest, TheButtonsStandStillWhenTheCopyEndsWhileTheCardIsAskedAbout)
{
    startCopy();
    show();
    ASSERT_TRUE(waitUntil([this] { return find(warning) != nullptr; }));
    const QQuickItem *button = find(u"Import & Sort"_s);
    const QPointF before = button->mapToScene(QPointF());
    copying.open();
    ASSERT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    ASSERT_TRUE(waitUntil([this] { return find(warning) == nullptr; }));
    EXPECT_EQ(button->mapToScene(QPointF()), before);
    scene->root()->setProperty("cardName", u"NEXT"_s);
    EXPECT_TRUE(waitUntil([&] { return button->mapToScene(QPointF()) != before; })) << "the next card needs no room";
}

TEST_F(ImportPromptViewTest, WhereNothingCanBeImportedNothingIsStopped)
{
    startCopy();
    engine.setImportRoot(std::nullopt);
    show();
    EXPECT_TRUE(find(u"Set a Shoots folder first"_s));
    EXPECT_FALSE(find(warning));
}

TEST_F(ImportPromptViewTest, SaysThatItLooksForClipsUntilTheyAreCounted)
{
    show(u"CARD"_s, std::nullopt);
    EXPECT_TRUE(find(u"SD card detected"_s));
    EXPECT_TRUE(find(u"CARD — looking for clips…"_s));
    scene->root()->setProperty("clipCount", 3);
    scene->root()->setProperty("isCounted", true);
    EXPECT_TRUE(find(u"CARD · 3 clips found. Import and sort it into your Shoots folder?"_s));
}

TEST_F(ImportPromptViewTest, WithoutAShootsFolderNeitherTheVolumeNorItsCountIsMentioned)
{
    engine.setImportRoot(std::nullopt);
    show();
    EXPECT_TRUE(find(u"Set a Shoots folder first"_s));
    EXPECT_TRUE(
        find(u"Choose a Shoots folder in Preferences so Binnacle knows where to organize footage from a card."_s));
    EXPECT_TRUE(find(u"Open Preferences"_s));
    EXPECT_TRUE(find(u"Not Now"_s));
    EXPECT_FALSE(body().contains(u"CARD"_s) || body().contains(u"74"_s));
    scene->click(u"Open Preferences"_s);
    EXPECT_THAT(answers(), ElementsAre(u"preferences"_s));
    engine.setImportRoot(FileUrl(folder / "Shoots")); // chosen in the meantime
    EXPECT_TRUE(find(u"SD card detected"_s));
    scene->click(u"Import & Sort"_s);
    EXPECT_THAT(answers(), ElementsAre(u"preferences"_s, u"accept"_s));
}

TEST_F(ImportPromptViewTest, BothButtonsAnswerByMouse)
{
    show();
    scene->click(u"Not Now"_s);
    scene->click(u"Import & Sort"_s);
    EXPECT_THAT(answers(), ElementsAre(u"decline"_s, u"accept"_s));
}

TEST_F(ImportPromptViewTest, NoKeyAnswersBeforeItHasBeenTopmostForHalfASecond)
{
    show();
    const auto *patience = prompt()->findChild<ImportOffer *>()->findChild<QTimer *>();
    ASSERT_NE(patience, nullptr);
    const auto expectNoAnswerByKey = [&] { // no time goes by for the window in between
        EXPECT_FALSE(prompt()->property("answersKeys").toBool());
        EXPECT_TRUE(patience->isActive());
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Return}) {
            scene->key(key);
        }
        EXPECT_THAT(answers(), IsEmpty());
        EXPECT_FALSE(prompt()->property("answersKeys").toBool());
    };
    prompt()->setProperty("isTopmost", false);
    EXPECT_FALSE(patience->isActive());
    prompt()->setProperty("isTopmost", true);
    expectNoAnswerByKey();
    EXPECT_TRUE(waitUntil([this] { return prompt()->property("answersKeys").toBool(); }));
    scene->root()->setProperty("cardName", u"NEXT"_s); // another card is asked about anew
    expectNoAnswerByKey();
    EXPECT_TRUE(waitUntil([this] { return prompt()->property("answersKeys").toBool(); }));
    scene->key(Qt::Key_Return);
    EXPECT_THAT(answers(), ElementsAre(u"accept"_s));
}

TEST_F(ImportPromptViewTest, AKeyThatWasPressedTooEarlyDoesNotAnswerWhenItIsLetGo)
{
    show();
    prompt()->setProperty("isTopmost", false);
    prompt()->setProperty("isTopmost", true);
    QTest::keyPress(&scene->window(), Qt::Key_Space);
    EXPECT_TRUE(waitUntil([this] { return prompt()->property("answersKeys").toBool(); }));
    QTest::keyRelease(&scene->window(), Qt::Key_Space);
    EXPECT_THAT(answers(), IsEmpty());
    scene->key(Qt::Key_Space);
    EXPECT_THAT(answers(), ElementsAre(u"accept"_s));
}

TEST_F(ImportPromptViewTest, ReturnAcceptsAndTabReachesTheOtherButton)
{
    show();
    awaitKeys();
    scene->key(Qt::Key_Return);
    EXPECT_THAT(answers(), ElementsAre(u"accept"_s));
    scene->key(Qt::Key_Tab);
    scene->key(Qt::Key_Return);
    scene->key(Qt::Key_Backtab);
    scene->key(Qt::Key_Space);
    EXPECT_THAT(answers(), ElementsAre(u"accept"_s, u"decline"_s, u"accept"_s));
}

TEST_F(ImportPromptViewTest, EscapeIsLeftToTheWindow)
{
    show();
    awaitKeys();
    scene->key(Qt::Key_Escape);
    EXPECT_THAT(answers(), IsEmpty());
}

TEST_F(ImportPromptViewTest, TheAmpersandOfTheButtonIsNoShortcut)
{
    show();
    awaitKeys();
    scene->key(Qt::Key_Backtab); // to "Not Now"
    scene->key(Qt::Key_Space, Qt::AltModifier);
    EXPECT_THAT(answers(), Not(Contains(u"accept"_s)));
}

TEST_F(ImportPromptViewTest, AClickOnTheCardReachesNothingBelowIt)
{
    show();
    scene->click(u"SD card detected"_s);
    EXPECT_THAT(answers(), IsEmpty());
    QTest::mouseClick(&scene->window(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_THAT(answers(), ElementsAre(u"below"_s));
}

TEST_F(ImportPromptViewTest, IsMadeToMeasure)
{
    show();
    const auto font = [&](const QString &text) { return find(text)->property("font").value<QFont>(); };
    EXPECT_EQ(prompt()->width(), 360);
    EXPECT_EQ(font(u"SD card detected"_s), LK::instance().font(15, QFont::DemiBold));
    const QQuickItem *text = find(body());
    EXPECT_EQ(font(body()), LK::instance().font(12.5));
    EXPECT_EQ(text->width(), 300);
    const QQuickItem *first = find(u"Not Now"_s);
    const QQuickItem *second = find(u"Import & Sort"_s)->parentItem();
    EXPECT_EQ(second->x() - first->x() - first->width(), 8);
    EXPECT_EQ(text->y() - find(u"SD card detected"_s)->y() - find(u"SD card detected"_s)->height(), 14);
    EXPECT_EQ(find(u"SD card detected"_s)->y(), 44 + 14);
}

TEST_F(ImportPromptViewTest, TheButtonsStandStillWhenTheCountComes)
{
    show(u"EOS_DIGITAL"_s, std::nullopt);
    const QPoint before = middleOf(find(u"Import & Sort"_s));
    scene->root()->setProperty("clipCount", 74);
    scene->root()->setProperty("isCounted", true);
    EXPECT_TRUE(find(u"EOS_DIGITAL · 74 clips found. Import and sort it into your Shoots folder?"_s));
    EXPECT_EQ(middleOf(find(u"Import & Sort"_s)), before);
}

TEST_F(ImportPromptViewTest, ALongNameAndAnEmptyOneLeaveTheButtonsInThePlace)
{
    show(QString(2000, u'W'), 3);
    EXPECT_LT(prompt()->height(), 400);
    EXPECT_TRUE(find(u"Import & Sort"_s));
    show(u""_s, 3);
    EXPECT_TRUE(find(u" · 3 clips found. Import and sort it into your Shoots folder?"_s));
    show(u"<b>A</b> & \u202e/ %1 %2"_s, 3);
    EXPECT_TRUE(
        find(u"\u2068<b>A</b> & \u202e/ %1 %2\u2069 · 3 clips found. Import and sort it into your Shoots folder?"_s));
}

TEST_F(ImportPromptViewTest, SaysHowTheCopyWillBeChecked)
{
    show();
    EXPECT_TRUE(find(u"Copies will be checked by size only."_s));
    engine.setOptions({.verifyLevel = VerifyLevel::checksum});
    EXPECT_TRUE(find(u"Each copy will be read back and compared byte for byte."_s));
    EXPECT_FALSE(find(u"Copies will be checked by size only."_s));
    engine.setImportRoot(std::nullopt); // nothing can be copied
    EXPECT_FALSE(find(u"Each copy will be read back and compared byte for byte."_s));
}

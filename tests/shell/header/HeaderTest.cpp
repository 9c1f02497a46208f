// The header's popovers.
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::SizeIs;

namespace {

class HeaderTest : public ShellWindowTest
{
protected:
    void openSwitcher()
    {
        Desktop::click(shown(u"Projects"_s));
        (void)shown(u"Reopen a sorted shoot, or start a new one."_s);
        ASSERT_TRUE(hasKeyboard(u"New Project"_s));
        ASSERT_TRUE(waitUntil([this] { return isSwitcherOpen(); }));
    }

    // False from the moment that it begins to close.
    bool isSwitcherOpen() const { return window->findChild<QObject *>(u"projects"_s)->property("opened").toBool(); }

    // Waits for the field of the name, with all of the name selected.
    [[nodiscard]] bool isRenaming(const QString &project) const
    {
        return waitUntil([&] {
            const QQuickItem *field = window->activeFocusItem();
            return field != nullptr && field->property("selectedText").toString() == project;
        });
    }

    QString name() const { return shoot.lastPathComponent(); }

    // The tool tip of this text that is up.
    static QQuickItem *findByTip(QQuickItem *root, const QString &text)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->property("told").toBool() && child->property("text") == text) {
                return child;
            }
            if (QQuickItem *found = findByTip(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    static QQuickItem *findByHelp(QQuickItem *root, const QString &help)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->isVisible() && child->property("help").toString() == help) {
                return child;
            }
            if (QQuickItem *found = findByHelp(child, help)) {
                return found;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(HeaderTest, TheSwitcherSaysWhenThereIsNothingToReopen)
{
    open();
    openSwitcher();
    (void)shown(u"Sorted shoots are saved here so you can reopen them without re-running."_s);
    (void)shown(u"Sort results are cached on this Mac. Footage and thumbnails are not."_s);
    EXPECT_FALSE(isShown(u"RECENT"_s));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(goes(u"New Project"_s));
}

TEST_F(HeaderTest, NewProjectClearsTheWorkspaceAndTheProjectIsReopenedFromTheSwitcher)
{
    open();
    sort();
    openSwitcher();
    (void)shown(u"2 clips · 2 bins · 1 to review"_s);
    Desktop::key(u"Return"_s); // New Project has the keyboard at once
    EXPECT_TRUE(waitUntil([this] { return engine.stage().kind == StageKind::empty; }));
    ASSERT_TRUE(goes(u"New Project"_s));
    openSwitcher();
    Desktop::click(shown(name()));
    EXPECT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(engine.clips(), SizeIs(2));
}

TEST_F(HeaderTest, AProjectWithNothingToReviewShowsTwoPartsOnly)
{
    open();
    sort();
    engine.confirmAll();
    openSwitcher();
    (void)shown(u"2 clips · 2 bins"_s);
}

TEST_F(HeaderTest, AProjectIsRenamedAndARenameToBlanksLeavesTheName)
{
    open();
    sort();
    const auto clips = engine.clips();
    openSwitcher();
    Desktop::click(shown(u"Rename"_s));
    ASSERT_TRUE(isRenaming(name()));
    Desktop::key(u"V"_s);
    ASSERT_TRUE(hasKeyboard(u"V"_s));
    Desktop::click(shown(u"Save name"_s));
    ASSERT_TRUE(goes(u"Save name"_s));
    EXPECT_EQ(engine.projects().front().name, u"V"_s);
    Desktop::click(shown(u"Rename"_s));
    ASSERT_TRUE(isRenaming(u"V"_s));
    Desktop::key(u"space"_s);
    ASSERT_TRUE(hasKeyboard(u" "_s));
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(goes(u"Save name"_s));
    EXPECT_TRUE(hasKeyboard(u"V"_s));
    drain();
    EXPECT_EQ(engine.projects().front().name, u"V"_s);
    EXPECT_TRUE(isSwitcherOpen());
    EXPECT_EQ(engine.clips(), clips); // of a project that is opened they are others
}

TEST_F(HeaderTest, DeletingTheCurrentProjectLeavesTheClipsOnScreen)
{
    open();
    sort();
    openSwitcher();
    Desktop::click(shown(u"Remove from recents"_s));
    EXPECT_TRUE(waitUntil([this] { return engine.projects().empty(); }));
    EXPECT_THAT(engine.clips(), SizeIs(2));
    EXPECT_EQ(engine.stage().kind, StageKind::results);
}

TEST_F(HeaderTest, TheSwitcherIsWorkedByKeyboard)
{
    open();
    for (const char *name : {"first", "second", "third"}) {
        (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
        engine.sortFolder(FileUrl(folder / name));
        ASSERT_TRUE(reaches(engine, StageKind::working));
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    openSwitcher();
    (void)shown(u"third"_s);
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"third"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"second"_s));
    Desktop::key(u"Delete"_s);
    ASSERT_TRUE(goes(u"second"_s));
    ASSERT_TRUE(hasKeyboard(u"first"_s)); // the one that took its place
    EXPECT_EQ(engine.projects().size(), 2U);
    Desktop::key(u"Up"_s);
    ASSERT_TRUE(hasKeyboard(u"third"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"first"_s));
    Desktop::key(u"F2"_s);
    ASSERT_TRUE(isRenaming(u"first"_s));
    Desktop::key(u"V"_s);
    ASSERT_TRUE(hasKeyboard(u"V"_s));
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(goes(u"Save name"_s));
    EXPECT_TRUE(hasKeyboard(u"V"_s));
    drain();
    EXPECT_EQ(engine.projects().back().name, u"V"_s);
    EXPECT_TRUE(isSwitcherOpen());
    EXPECT_EQ(engine.folder(), FileUrl(folder / "third"));
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.folder() == FileUrl(folder / "first"); }));
    EXPECT_TRUE(goes(u"New Project"_s));
}

TEST_F(HeaderTest, TheFirstClickOnTheProfilesRowOpensPreferences)
{
    open();
    Desktop::click(shown(u"My Account"_s));
    Desktop::click(shown(u"General App Settings"_s));
    EXPECT_TRUE(waitUntil([this] { return app.property("showPreferences").toBool(); }));
    EXPECT_TRUE(goes(u"General App Settings"_s));
}

TEST_F(HeaderTest, AnEmptyAccountNameShowsAnEmptyLabelThatStillOpens)
{
    app.setAccountName(QString());
    open();
    EXPECT_FALSE(isShown(u"My Account"_s));
    QQuickItem *profile = findByHelp(window->contentItem(), u"Settings and account"_s);
    ASSERT_NE(profile, nullptr);
    EXPECT_EQ(profile->property("title"), QString());
    Desktop::click(*profile);
    Desktop::click(shown(u"General App Settings"_s));
    EXPECT_TRUE(waitUntil([this] { return app.property("showPreferences").toBool(); }));
}

TEST_F(HeaderTest, BackLeadsToTheLauncher)
{
    open();
    Desktop::click(shown(u"Back to Larkspan"_s));
    EXPECT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
}

TEST_F(HeaderTest, ALongNameIsToldInFullUnderThePointerAndByKeyboard)
{
    const QString longName = u"Harbour View 3, penthouse with the roof terrace and both guest apartments"_s;
    app.setAccountName(longName);
    open();
    sort();
    engine.renameProject(*engine.currentProjectID(), longName);
    openSwitcher();
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(longName));
    const QQuickItem *row = window->activeFocusItem();
    EXPECT_TRUE(waitUntil([&] { return isTold(*row); }));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"New Project"_s));
    QQuickItem *profile = findByHelp(window->contentItem(), u"Settings and account"_s);
    ASSERT_NE(profile, nullptr);
    Desktop::moveTo(*profile);
    EXPECT_TRUE(waitUntil([&] { return findByTip(profile, longName + u"\nSettings and account"_s) != nullptr; }));
}

TEST_F(HeaderTest, AProjectOpenedByMouseFromTheResultsHasTheKeyboard)
{
    open();
    for (const char *name : {"first", "second"}) {
        (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
        (void)folder.write(std::filesystem::path(name) / "kitchen 2.mov");
        engine.sortFolder(FileUrl(folder / name));
        ASSERT_TRUE(reaches(engine, StageKind::working));
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    openSwitcher();
    Desktop::click(shown(u"first"_s));
    ASSERT_TRUE(waitUntil([this] { return engine.folder() == FileUrl(folder / "first"); }));
    ASSERT_TRUE(goes(u"New Project"_s));
    ASSERT_TRUE(waitUntil([this] { return window->activeFocusItem() != nullptr; }));
    const auto before = engine.selectedBin();
    Desktop::key(u"Down"_s); // in the bins
    EXPECT_TRUE(waitUntil([&] { return engine.selectedBin() != before; }));
}

TEST_F(HeaderTest, TheListOfProjectsIs244PointsHighAtMostAndMarksTheCurrentOne)
{
    for (int i = 0; i < 12; ++i) {
        (void)cache.save({.summary = {.id = QString::number(i + 1),
                                      .name = u"Shoot %1"_s.arg(i),
                                      .folderPath = FileUrl(folder / std::to_string(i)),
                                      .clipCount = 1,
                                      .binCount = 1,
                                      .savedAt = Date(std::chrono::hours(i))},
                          .clips = {}});
    }
    open();
    sort();
    openSwitcher();
    EXPECT_EQ(findNamed(window->contentItem(), u"projectList"_s)->height(), 244);
    const auto symbolOf = [this](const QString &project) {
        return shown(project).property("contentItem").value<QQuickItem *>()->property("symbol").toString();
    };
    EXPECT_EQ(symbolOf(name()), u"checkmark.circle.fill"_s);
    EXPECT_EQ(symbolOf(u"Shoot 11"_s), u"rectangle.stack"_s);
}

TEST_F(HeaderTest, OnAPlaceholdersPageThereIsTheWayBackAndNoProjects)
{
    open();
    app.openTool(u"huelock"_s);
    (void)shown(u"Tell me when it ships"_s);
    (void)shown(u"Larkspan"_s);
    (void)shown(u"Preferences"_s);
    (void)shown(u"My Account"_s);
    EXPECT_TRUE(goes(u"Projects"_s));
    Desktop::click(shown(u"Back to Larkspan"_s));
    EXPECT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
}

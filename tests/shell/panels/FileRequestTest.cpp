// The choice between the desktop's file panel and our own.
#include "shell/panels/FileRequest.h"

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <QtTest/QSignalSpy>

#include "shell/panels/FileChooserPortal.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FileRequestTest : public testing::Test
{
protected:
    std::function<void(FileUrl)> remember()
    {
        return [this](const FileUrl &url) { chosen.push_back(url); };
    }

    const FolderPanel shoot{.prompt = u"Sort This Folder"_s, .message = u"Choose."_s};
    const FilePanel text{
        .title = u"Export"_s, .suggestion = FileUrl("/texts/a.csv"), .typeName = u"CSV files"_s, .suffix = u"csv"_s};
    bool hasDesktopPanel = true;
    FileRequest request{[this] { return hasDesktopPanel; }};
    QSignalSpy folders{&request, &FileRequest::desktopFolderAsked};
    QSignalSpy files{&request, &FileRequest::desktopFileAsked};
    std::vector<FileUrl> chosen;
};

// The desktop's portal with a file panel of the given version. It answers as soon as it is on the bus.
class PanelPortal : public QDBusVirtualObject
{
public:
    explicit PanelPortal(uint version) : m_version(version)
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this));
        EXPECT_TRUE(m_bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    ~PanelPortal() override { QDBusConnection::disconnectFromBus(m_bus.name()); }
    PanelPortal(const PanelPortal &) = delete;
    PanelPortal &operator=(const PanelPortal &) = delete;

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &question, const QDBusConnection &bus) override
    {
        return bus.send(question.createReply(QVariant::fromValue(QDBusVariant(m_version))));
    }

private:
    const uint m_version;
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
};

} // namespace

TEST_F(FileRequestTest, TheDesktopsPanelIsShownWithTheWordsOfTheRequest)
{
    request.askForFolder(shoot, FileUrl("/shoots 50%"), remember());
    EXPECT_EQ(folders.size(), 1);
    EXPECT_EQ(request.title(), u"Choose."_s);
    EXPECT_EQ(request.prompt(), u"Sort This Folder"_s);
    EXPECT_EQ(request.start(), QUrl(u"file:///shoots%2050%25"_s));
    EXPECT_EQ(request.suggestion(), QUrl());
    request.askForFile(text, remember());
    EXPECT_EQ(files.size(), 1);
    EXPECT_EQ(request.title(), u"Export"_s);
    EXPECT_EQ(request.prompt(), QString());
    EXPECT_EQ(request.start(), QUrl(u"file:///texts"_s));
    EXPECT_EQ(request.suggestion(), QUrl(u"file:///texts/a.csv"_s));
    EXPECT_EQ(request.nameFilter(), u"CSV files (*.csv)"_s);
    EXPECT_EQ(request.suffix(), u"csv"_s);
    EXPECT_FALSE(request.browser()->isOpen());
}

TEST_F(FileRequestTest, AChosenUrlIsHandedOnOnceAsAPath)
{
    request.askForFolder(shoot, FileUrl("/shoots 50%"), remember());
    request.choose(QUrl(u"file:///gone/for%20good/"_s));
    request.choose(QUrl(u"file:///another"_s));
    EXPECT_THAT(chosen, ElementsAre(FileUrl("/gone/for good")));
}

TEST_F(FileRequestTest, AUrlOfAnotherMachineIsNotChosen)
{
    request.askForFolder(shoot, FileUrl("/shoots 50%"), remember());
    request.choose(QUrl(u"smb://nas/shoots"_s));
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(FileRequestTest, OurOwnPanelIsShownWhenTheDesktopHasNone)
{
    hasDesktopPanel = false;
    request.askForFolder(shoot, FileUrl("/shoots 50%"), remember());
    EXPECT_TRUE(request.browser()->isOpen());
    EXPECT_EQ(request.browser()->prompt(), u"Sort This Folder"_s);
    request.askForFile(text, remember());
    EXPECT_TRUE(request.browser()->isSaving());
    EXPECT_EQ(folders.size() + files.size(), 0);
}

TEST(FileChooserPortal, IsThereFromItsAnswerUntilItLeavesTheBus)
{
    auto portal = std::make_unique<PanelPortal>(3);
    const FileChooserPortal panel;
    EXPECT_FALSE(panel.isThere()) << "nobody waits for it";
    EXPECT_TRUE(waitUntil([&] { return panel.isThere(); }));
    portal.reset();
    EXPECT_TRUE(waitUntil([&] { return !panel.isThere(); }));
    portal = std::make_unique<PanelPortal>(4);
    EXPECT_TRUE(waitUntil([&] { return panel.isThere(); }));
}

TEST(FileChooserPortal, IsNotThereInAVersionThatCannotChooseFolders)
{
    const PanelPortal old(2);
    const FileChooserPortal panel;
    // Questions are answered in turn, so this answer arrives after the panel's.
    const QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    const QDBusPendingCall answer = QDBusConnection::sessionBus().asyncCall(question);
    EXPECT_TRUE(waitUntil([&] { return answer.isFinished(); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(panel.isThere());
}

TEST(FileChooserPortal, IsNotThereOnABusWithoutOne)
{
    const FileChooserPortal panel(QDBusConnection(u"no such bus"_s));
    EXPECT_FALSE(panel.isThere());
}

#include "design/WindowFilter.h"

#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

// Not the first of their range, which the window has a use for.
constexpr auto shownKind = static_cast<QEvent::Type>(QEvent::User + 100);
constexpr auto keptKind = static_cast<QEvent::Type>(QEvent::User + 101);

// Counts the events of either kind that reach its window.
class CountingWindow : public QQuickWindow
{
public:
    int received = 0;

    void send(QEvent::Type type)
    {
        QEvent event(type);
        QCoreApplication::sendEvent(this, &event);
    }

protected:
    bool event(QEvent *event) override
    {
        received += event->type() == shownKind || event->type() == keptKind ? 1 : 0;
        return QQuickWindow::event(event);
    }
};

class WindowFilterTest : public testing::Test
{
protected:
    CountingWindow window;
    QQuickItem item{window.contentItem()};
    int seen = 0;
    WindowFilter filter{item, [this](const QEvent &event) {
                            seen += event.type() == shownKind || event.type() == keptKind ? 1 : 0;
                            return event.type() == keptKind;
                        }};
};

} // namespace

TEST_F(WindowFilterTest, ShowsAnEventAndKeepsFromTheWindowWhatItsOwnerTakes)
{
    window.send(shownKind);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(window.received, 1);
    window.send(keptKind);
    EXPECT_EQ(seen, 2);
    EXPECT_EQ(window.received, 1);
}

TEST_F(WindowFilterTest, FollowsItsItemToAnotherWindowAndOutOfAll)
{
    CountingWindow other;
    item.setParentItem(other.contentItem());
    EXPECT_EQ(filter.window(), &other);
    window.send(keptKind);
    EXPECT_EQ(seen, 0);
    EXPECT_EQ(window.received, 1);
    other.send(keptKind);
    EXPECT_EQ(seen, 1);
    item.setParentItem(nullptr);
    EXPECT_EQ(filter.window(), nullptr);
    other.send(shownKind);
    EXPECT_EQ(seen, 1);
}

TEST_F(WindowFilterTest, ForgetsAWindowThatIsGone)
{
    auto other = std::make_unique<CountingWindow>();
    item.setParentItem(other->contentItem());
    other.reset();
    EXPECT_EQ(filter.window(), nullptr);
    item.setParentItem(window.contentItem());
    EXPECT_EQ(filter.window(), &window);
}

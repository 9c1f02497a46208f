// The size that a picture asks its provider for, at any scale of the display.
#include <mutex>

#include <gmock/gmock.h>
#include <QtQuick/QQuickImageProvider>

#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Remembers what it was asked for: the options, and how many pixels.
class AskedProvider : public QQuickImageProvider
{
public:
    AskedProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override
    {
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(u"%1 %2x%3"_s.arg(id).arg(requestedSize.width()).arg(requestedSize.height()));
        *size = requestedSize;
        return {requestedSize, QImage::Format_RGB32};
    }
    std::vector<QString> asked()
    {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

private:
    std::mutex m_mutex;
    std::vector<QString> m_asked;
};

} // namespace

TEST(ClipPicture, AsksForThePixelsOfItsPlaceAndForGlassBeforeThatVeryPart)
{
    Scene scene(R"(
        import QtQuick
        import Larkspan.Screens
        Item {
            property url shown
            width: 200
            height: 100
            ClipPicture { width: 100; height: 50; cornerRadius: 8; roundsBottom: false; picture: parent.shown }
            ClipPicture {
                width: 40
                height: 16
                picture: parent.shown
                isFrosted: true
                whole: Qt.size(100, 50)
                place: Qt.point(6, 28)
            }
        })");
    auto *provider = new AskedProvider;
    scene.engine().addImageProvider(u"asked"_s, provider); // owned by the engine
    scene.root()->setProperty("shown", QUrl(u"image://asked/clip"_s));
    ASSERT_TRUE(waitUntil([&] { return provider->asked().size() >= 2; }));
    const int dots = static_cast<int>(scene.window().effectiveDevicePixelRatio());
    const QString size = u" %1x%2"_s.arg(100 * dots).arg(50 * dots);
    EXPECT_THAT(
        provider->asked(),
        testing::UnorderedElementsAre(
            u"clip?radius=%1&top"_s.arg(8 * dots) + size,
            u"clip?radius=%1&frosted=%2,%3,%4,%5"_s.arg(4 * dots).arg(6 * dots).arg(28 * dots).arg(40 * dots).arg(
                16 * dots) +
                size));
}

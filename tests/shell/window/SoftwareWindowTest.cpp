// The window where graphics draw no shaders, as on a machine without OpenGL.
#include <QtQml/QQmlProperty>

#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class SoftwareWindowTest : public ShellWindowTest
{
protected:
    void SetUp() override
    {
        if (qEnvironmentVariable("QT_QUICK_BACKEND") != u"software"_s) {
            GTEST_SKIP() << "run with QT_QUICK_BACKEND=software";
        }
    }
};

} // namespace

TEST_F(SoftwareWindowTest, WhatLiesBelowAnOverlayIsStillSeen)
{
    open();
    sort();
    QQuickItem &bin = shown(u"Kitchen"_s);
    const QRect place = bin.mapRectToScene(bin.boundingRect()).toAlignedRect();
    const auto contrast = [&] {
        const QImage picture = window->grabWindow().copy(place).convertToFormat(QImage::Format_Grayscale8);
        const auto [darkest, brightest] =
            std::minmax_element(picture.constBits(), picture.constBits() + picture.sizeInBytes());
        return *brightest - *darkest;
    };
    ASSERT_TRUE(waitUntil([&] { return contrast() > 60; }));
    app.openPreferences();
    ASSERT_TRUE(waitUntil(
        [this] { return window->findChild<QObject *>(u"preferencesOverlay"_s)->property("opened").toBool(); }));
    EXPECT_GT(contrast(), 30); // what the scrim leaves
}

TEST_F(SoftwareWindowTest, AToolThatClosesIsNotTakenForAnEffect)
{
    open();
    const QQuickItem *tool = findNamed(window->contentItem(), u"tool"_s);
    ASSERT_NE(tool, nullptr);
    bool wasLayered = false;
    const QObject watch; // goes before what it writes to
    QObject::connect(window, &QQuickWindow::afterAnimating, &watch,
                     [&] { wasLayered = wasLayered || QQmlProperty::read(tool, u"layer.enabled"_s).toBool(); });
    app.closeTool();
    EXPECT_TRUE(waitUntil([&] { return !tool->isVisible(); }));
    EXPECT_FALSE(wasLayered);
}

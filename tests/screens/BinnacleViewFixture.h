#pragma once

#include <QtTest/QTest>

#include "screens/clips/ClipThumbnails.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/Scene.h"
#include "tests/support/WindowDriver.h"

namespace larkspan::test {

using namespace Qt::Literals::StringLiterals;

// The screen with an engine on made clips, driven as an editor would.
class BinnacleViewTest : public SortEngineTest, protected WindowDriver
{
protected:
    static constexpr const char *screen = R"(
        import QtQuick
        import Larkspan.Screens
        BinnacleView {
            width: 980; height: 640; buildNumber: 7; focus: true
            property string problem
            classifierProblem: problem
            ClipPreviewModal { engine: parent.engine; anchors.centerIn: parent; visible: engine.hasPreview }
        })";

    // Two clips at a time, whatever the machine.
    explicit BinnacleViewTest(SortSeams with) : engine(std::move(with), 4) {}
    BinnacleViewTest() : BinnacleViewTest(seams()) {}

    void show()
    {
        scene.emplace(screen, QVariantMap{{u"engine"_s, QVariant::fromValue(&engine)}}, QSize(980, 640));
        scene->engine().addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(engine));
    }

    void sortAndShow()
    {
        show();
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    QQuickWindow &driven() const override { return scene->window(); }
    QQuickItem *searched() const override { return scene->root(); }
    void press(const QQuickItem &item) override
    {
        QTest::mouseClick(&scene->window(), Qt::LeftButton, {}, middleOf(&item));
    }

    SortEngine engine;
    std::optional<Scene> scene;
};

// The same with clips that land only when they are let through.
class GatedViewTest : public BinnacleViewTest
{
protected:
    GatedViewTest() : BinnacleViewTest(gatedSeams()) {}

    SortSeams gatedSeams()
    {
        SortSeams gated = seams();
        gated.sampleFrames = [this](const MediaClip &clip, int, double) {
            gate.pass();
            return sample(clip);
        };
        return gated;
    }

    Gate gate;
};

} // namespace larkspan::test

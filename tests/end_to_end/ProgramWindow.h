#pragma once

#include <map>
#include <optional>

#include <gmock/gmock.h>
#include <QtQuick/QQuickWindow>

#include "shell/LarkspanApp.h"
#include "tests/support/Desktop.h"
#include "tests/support/Items.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowDriver.h"

namespace larkspan::test {

// The whole program with its real parts on a real display, and what a person sees of it.
class ProgramWindow : public testing::Test, protected WindowDriver
{
protected:
    using StageKind = SortEngine::StageKind;

    // As a new user finds it: what a test sets and opens is not there for the next.
    ProgramWindow()
    {
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            m_outer[variable] = qgetenv(variable);
            qputenv(variable, QByteArray::fromStdString((m_home / variable).string()));
        }
    }
    ~ProgramWindow() override
    {
        for (const auto &[variable, value] : m_outer) {
            qputenv(variable.c_str(), value);
        }
    }

    void TearDown() override
    {
        program.reset(); // before the footage that it shows
    }

    // Opens the program at the launcher.
    void start(const VolumeWatcher::System &volumes = {})
    {
        program.emplace(std::nullopt, volumes);
        ASSERT_TRUE(program->open());
        ASSERT_TRUE(Desktop::awaitWindow(*program->window()));
        program->state().finishIntro();
    }

    // Opens the program at the sort tool.
    void startSorting()
    {
        start();
        program->state().openTool(QStringLiteral("binnacle"));
    }

    SortEngine &engine() { return program->engine(); }
    QQuickWindow &driven() const override { return *program->window(); }
    void press(const QQuickItem &item) override { Desktop::click(item); }

    [[nodiscard]] bool reaches(StageKind stage)
    {
        const bool reached = waitUntil([&] { return engine().stage().kind == stage; });
        EXPECT_TRUE(reached) << "still at stage " << static_cast<int>(engine().stage().kind) << ' '
                             << engine().stage().text.toStdString();
        return reached;
    }

    std::optional<LarkspanApp> program;

private:
    const TempFolder m_home;
    std::map<std::string, QByteArray> m_outer;
};

} // namespace larkspan::test

#pragma once

#include "tests/core/engine/SortEngineFixture.h"

namespace larkspan::test {

// Engines that share one cache of sorted shoots.
class ProjectsTest : public SortEngineTest
{
protected:
    void sortShoot(SortEngine &engine) const
    {
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    static bool hasAllThumbnails(const SortEngine &engine)
    {
        return std::ranges::none_of(engine.clips(), [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
    }

    const QString id = projectID(shoot);
};

} // namespace larkspan::test

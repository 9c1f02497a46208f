#pragma once

#include <memory>

#include <QtCore/QTemporaryDir>

#include "core/engine/SortEngine.h"
#include "core/engine/SortSeams.h"

namespace larkspan::bench {

// A sorted shoot of made-up clips with pictures, in a cache of its own, to be opened by the real engine.
class MadeUpShoot
{
public:
    // bins: how many the clips are spread over evenly.
    MadeUpShoot(int clips, int bins);

    [[nodiscard]] SortEngine &engine() { return *m_engine; }
    // Opens the shoot: the engine goes to its results, and samples the pictures in the background.
    void open();
    [[nodiscard]] bool hasAllPictures() const;

private:
    QTemporaryDir m_folder;
    QString m_id;
    std::unique_ptr<ProjectCache> m_cache;
    std::unique_ptr<SortEngine> m_engine;
};

} // namespace larkspan::bench

#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QtCore/QTemporaryDir>

#include "core/engine/SortEngine.h"
#include "core/engine/SortSeams.h"

namespace larkspan::bench {

// Resources that this process holds at this moment.
struct Footprint
{
    double megabytes = 0.0; // resident
    int threads = 0;
    int openFiles = 0;

    static Footprint now();
};

// Works on one shoot after the other with one engine, as an editor does who never quits: imports a card of real clips,
// sorts it, settles the bins, copies or moves the footage into folders, writes the event, and opens the project again.
// All folders are its own and in the end gone. Main thread.
class LongRun
{
public:
    using MakeClassifier = std::function<std::shared_ptr<const FrameClassifier>()>;

    explicit LongRun(MakeClassifier makeClassifier);

    // From the card to the reopened project. Returns the first thing that wasn't as it should be, or "".
    [[nodiscard]] std::string shoot();
    int shoots() const { return m_shoots; }

private:
    SortSeams seams(MakeClassifier makeClassifier);
    void makeCard() const;
    std::string import();
    void edit();
    std::string exportAll();
    std::string reopen();
    // Until the engine is there, or somewhere it shouldn't be. False then.
    bool reaches(SortEngine::StageKind stage) const;
    int thumbnails() const;

    QTemporaryDir m_folder;
    const std::filesystem::path m_card;
    const std::filesystem::path m_shootsFolder;
    SettingsStore m_settings;
    ProjectCache m_projects;
    SortEngine m_engine;
    int m_shoots = 0;
};

} // namespace larkspan::bench

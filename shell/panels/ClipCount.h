#pragma once

#include <functional>
#include <optional>

#include <QtCore/QCoreApplication>

#include "core/files/FileUrl.h"
#include "shell/panels/LatestTask.h"

namespace larkspan {

// The number of clips in one folder, counted on a thread pool. Main thread.
class ClipCount
{
    Q_DECLARE_TR_FUNCTIONS(larkspan::ClipCount)

public:
    // counted is called when the number is known. For owner and pool see LatestTask.
    ClipCount(QObject &owner, QThreadPool &pool, std::function<void()> counted);

    // Begins to count the clips of another folder, or of the same one anew.
    void begin(const FileUrl &folder);
    // Drops the count; the number is unknown from then on.
    void forget();
    // Drops a count that is under way; a number that is known stays.
    void stop() { m_counting.stop(); }

    [[nodiscard]] bool isKnown() const { return m_clips.has_value(); }
    // Returns the number as a phrase: "1 clip", or "counting clips…".
    [[nodiscard]] QString text() const;

private:
    const std::function<void()> m_counted;
    std::optional<qsizetype> m_clips;
    LatestTask m_counting;
};

} // namespace larkspan

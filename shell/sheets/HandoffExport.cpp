#include "shell/sheets/HandoffExport.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <QtConcurrent/QtConcurrentRun>
#include <QtCore/QPromise>

#include "core/files/AtomicFile.h"
#include "output/Handoff.h"
#include "output/MountTable.h"
#include "screens/stages/StageFacts.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto formatKey = u"lkHandoffFormat"_s;
const auto placeKey = u"lkHandoffPlace"_s;
const auto thisComputer = u"thisComputer"_s;
const auto mac = u"mac"_s;

QVariant choiceOf(const QString &value, const QString &label, const QString &detail = {})
{
    return QVariantMap{{u"value"_s, value}, {u"label"_s, label}, {u"detail"_s, detail}};
}

QString labelOf(HandoffFormat format)
{
    switch (format) {
    case HandoffFormat::kdenlive:
        return HandoffExport::tr("Kdenlive project");
    case HandoffFormat::fcpxmlTimeline:
        return HandoffExport::tr("Timeline, FCPXML");
    case HandoffFormat::otio:
        return HandoffExport::tr("Timeline, OpenTimelineIO");
    case HandoffFormat::fcpxmlTimecode:
        return HandoffExport::tr("Event with camera timecode");
    case HandoffFormat::csv:
        return HandoffExport::tr("Keywords as a table (CSV)");
    }
    Q_UNREACHABLE();
}

QString detailOf(HandoffFormat format)
{
    switch (format) {
    case HandoffFormat::kdenlive:
        return HandoffExport::tr("A folder per bin, tags, and all clips on one video track.");
    case HandoffFormat::fcpxmlTimeline:
        return HandoffExport::tr("All clips in the order of a tour, a marker at each bin. Not tried in Resolve.");
    case HandoffFormat::otio:
        return HandoffExport::tr("The same timeline for editors that read .otio.");
    case HandoffFormat::fcpxmlTimecode:
        return HandoffExport::tr("The event for cameras that stamp the time of day on their clips.");
    case HandoffFormat::csv:
        return HandoffExport::tr("For Resolve's metadata import, which could not be tried here.");
    }
    Q_UNREACHABLE();
}

} // namespace

HandoffExport::HandoffExport(SortEngine &engine, SettingsStore &settings, std::function<void(const FileUrl &)> reveal,
                             System system)
    : m_engine(engine)
    , m_settings(settings)
    , m_reveal(std::move(reveal))
    , m_system(std::move(system))
    , m_format(handoffFromRawValue(settings.string(formatKey).value_or(QString())).value_or(HandoffFormat::kdenlive))
    , m_isForMac(settings.string(placeKey) == mac)
{
    connect(&engine, &SortEngine::stageChanged, this, &HandoffExport::followEngine);
    connect(&engine, &SortEngine::clipsChanged, this, &HandoffExport::followEngine);
    connect(&engine, &SortEngine::folderChanged, this, &HandoffExport::forgetOutcome);
    connect(&engine, &SortEngine::optionsChanged, this, &HandoffExport::changed);
    connect(&m_reading, &QFutureWatcherBase::resultReadyAt, this, &HandoffExport::takeTimecode);
    connect(&m_reading, &QFutureWatcherBase::finished, this, [this] {
        if (!m_reading.isCanceled()) {
            m_unread.clear();
            writeFile();
        }
    });
}

HandoffExport::~HandoffExport()
{
    stopReading();
}

bool HandoffExport::isAvailable() const
{
    return !m_engine.clips().empty() && m_engine.folder() && factsOf(m_engine.stage().kind).hasShoot;
}

QVariantList HandoffExport::formats()
{
    QVariantList options;
    for (const HandoffFormat format : allHandoffFormats) {
        options.append(choiceOf(handoffRawValue(format), labelOf(format), detailOf(format)));
    }
    return options;
}

void HandoffExport::setFormat(const QString &format)
{
    const auto chosen = handoffFromRawValue(format);
    if (chosen && *chosen != m_format) {
        m_format = *chosen;
        m_settings.setString(formatKey, format);
        forgetOutcome();
    }
}

QVariantList HandoffExport::places()
{
    return {choiceOf(thisComputer, tr("This computer")), choiceOf(mac, tr("A Mac"))};
}

QString HandoffExport::place() const
{
    return m_isForMac ? mac : thisComputer;
}

void HandoffExport::setPlace(const QString &place)
{
    if (place != this->place()) {
        m_isForMac = place == mac;
        m_settings.setString(placeKey, this->place());
        forgetOutcome();
    }
}

QString HandoffExport::file() const
{
    const auto file = m_engine.handoffFile(m_format);
    return file ? file->displayPath() : QString();
}

QString HandoffExport::example() const
{
    return m_engine.clips().empty() ? QString() : paths().of(*m_engine.clips().front()).displayPath();
}

QString HandoffExport::outcome() const
{
    if (!m_problem.isEmpty()) {
        return tr("The file couldn't be written: %1").arg(m_problem);
    }
    return isWritten() ? tr("Written: %1").arg(file()) : tr("Writes %1").arg(file());
}

void HandoffExport::open()
{
    if (isAvailable() && !m_isShown) {
        m_volumes = namedVolumes(MountTable(m_system.mountTable).read(), m_system.deviceTree, m_system.labels);
        m_isShown = true;
        forgetOutcome();
        Q_EMIT shownChanged();
    }
}

void HandoffExport::close()
{
    if (m_isShown) {
        m_isShown = false;
        stopReading();
        Q_EMIT shownChanged();
    }
}

void HandoffExport::write()
{
    if (!isAvailable() || isReading()) {
        return;
    }
    if (holdsTimecode(m_format)) {
        std::ranges::copy_if(m_engine.clips(), std::back_inserter(m_unread),
                             [](const ClipPtr &clip) { return !clip->isTimecodeRead; });
    }
    if (m_unread.empty()) {
        writeFile();
    } else {
        readTimecodes();
    }
}

void HandoffExport::readTimecodes()
{
    // The clips themselves may change meanwhile, so the reader gets copies.
    std::vector<MediaClip> copies;
    copies.reserve(m_unread.size());
    std::ranges::transform(m_unread, std::back_inserter(copies), [](const ClipPtr &clip) { return *clip; });
    m_readCount = 0;
    m_written.reset();
    m_problem.clear();
    m_reading.setFuture(QtConcurrent::run(&m_readers, [copies = std::move(copies), read = m_system.readTimecode](
                                                          QPromise<std::optional<Timecode>> &promise) {
        for (const MediaClip &clip : copies) {
            if (promise.isCanceled()) {
                return;
            }
            promise.addResult(read(clip.footageURL()));
        }
    }));
    Q_EMIT changed();
}

void HandoffExport::takeTimecode(int index)
{
    MediaClip &clip = *m_unread[static_cast<std::size_t>(index)];
    clip.timecode = m_reading.resultAt(index);
    clip.isTimecodeRead = true;
    ++m_readCount;
    Q_EMIT changed();
}

void HandoffExport::stopReading()
{
    m_reading.cancel();
    m_unread.clear();
}

void HandoffExport::writeFile()
{
    const auto file = m_engine.handoffFile(m_format);
    m_engine.closeGapsInBins();
    const QByteArray text = handoffText(m_format, m_engine.clips(), m_engine.folder()->lastPathComponent(), paths());
    const auto written =
        writeFileAtomically(file->path(), std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    m_written = written ? file : std::nullopt;
    m_problem = written ? QString() : QString::fromStdString(written.error().message());
    Q_EMIT changed();
}

void HandoffExport::reveal() const
{
    if (m_written) {
        m_reveal(*m_written);
    }
}

void HandoffExport::followEngine()
{
    if (!isAvailable()) {
        close();
    }
    Q_EMIT availableChanged();
    Q_EMIT changed();
}

void HandoffExport::forgetOutcome()
{
    stopReading();
    m_written.reset();
    m_problem.clear();
    Q_EMIT changed();
}

MediaPaths HandoffExport::paths() const
{
    return m_isForMac ? MediaPaths::onMac(m_volumes) : MediaPaths();
}

} // namespace larkspan

#include "shell/desktop/WorkNotice.h"

#include <utility>

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

#include "screens/stages/StageFacts.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto service = u"org.freedesktop.Notifications"_s;
const auto path = u"/org/freedesktop/Notifications"_s;

constexpr int asLongAsUsual = -1;

} // namespace

WorkNotice::WorkNotice(SortEngine &engine, std::function<bool()> isInFront, std::chrono::milliseconds longWork,
                       QDBusConnection bus)
    : m_engine(engine)
    , m_isInFront(std::move(isInFront))
    , m_longWork(longWork)
    , m_bus(std::move(bus))
{
    m_notes.setEngine(&m_engine);
    connect(&m_engine, &SortEngine::stageChanged, this, &WorkNotice::followStage);
    m_bus.connect(service, path, service, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString)));
}

void WorkNotice::actionInvoked(uint id, const QString &action)
{
    if (id == m_notice && action == "default"_L1) {
        Q_EMIT pressed();
    }
}

void WorkNotice::followStage()
{
    using Kind = SortEngine::StageKind;
    const SortEngine::Stage &stage = m_engine.stage();
    if (factsOf(stage.kind).isBusy) {
        m_work.start();
        return;
    }
    const bool wasLong = m_work.isValid() && std::chrono::milliseconds(m_work.elapsed()) >= m_longWork;
    m_work.invalidate();
    if (!wasLong || m_isInFront()) {
        return;
    }
    switch (stage.kind) {
    case Kind::results:
        tell(tr("%1 is sorted").arg(m_engine.displayName()), withNote(tr("%1 clips · %2 bins · %3 to review")
                                                                          .arg(m_engine.clipCount())
                                                                          .arg(m_engine.binCount())
                                                                          .arg(m_engine.reviewCount())));
        break;
    case Kind::done:
        tell(tr("%1 · event created").arg(m_engine.displayName()), m_engine.eventPath());
        break;
    case Kind::emptyFolder:
        tell(tr("No video files found in %1").arg(stage.text), withNote(QString()));
        break;
    case Kind::failed:
        tell(tr("Couldn't write the event"), stage.text);
        break;
    default: // the editor dropped the work
        break;
    }
}

QString WorkNotice::withNote(const QString &text) const
{
    const QString note = m_notes.unreadable();
    return text.isEmpty() || note.isEmpty() ? text + note : text + u'\n' + note;
}

void WorkNotice::tell(const QString &summary, const QString &body)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, service, u"Notify"_s);
    call << u"Larkspan"_s << m_notice << u"larkspan"_s << summary << body.toHtmlEscaped()
         << QStringList{u"default"_s, tr("Show")} << QVariantMap{{u"desktop-entry"_s, u"larkspan"_s}} << asLongAsUsual;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (const QDBusPendingReply<uint> reply = *watcher; !reply.isError()) {
            m_notice = reply.value();
        }
        watcher->deleteLater();
    });
}

} // namespace larkspan

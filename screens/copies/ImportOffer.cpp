#include "screens/copies/ImportOffer.h"

#include "screens/copies/Verification.h"
#include "screens/engine/Wording.h"
#include "screens/stages/StageFacts.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

ImportOffer::ImportOffer(QObject *parent) : EngineObject(parent)
{
    m_look.setSingleShot(true);
    m_look.setInterval(patience);
    connect(&m_look, &QTimer::timeout, this, [this] {
        m_answersKeys = true;
        Q_EMIT changed();
        Q_EMIT lookedAt();
    });
}

void ImportOffer::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &ImportOffer::changed);
    for (const auto signal :
         {&SortEngine::isCopyingChanged, &SortEngine::stageChanged, &SortEngine::importRootChanged}) {
        connect(&engine, signal, this, &ImportOffer::followCopy);
    }
    m_hasWarned = warns();
}

void ImportOffer::followCopy()
{
    m_hasWarned = m_hasWarned || warns();
    Q_EMIT changed();
}

void ImportOffer::setDisplayName(const QString &name)
{
    if (m_displayName == name) {
        return;
    }
    // Every card is asked about anew, whatever was pressed for the one before.
    m_displayName = name;
    m_hasWarned = warns();
    lookAgain();
}

void ImportOffer::setInReach(bool isInReach)
{
    if (m_isInReach != isInReach) {
        m_isInReach = isInReach;
        lookAgain();
    }
}

void ImportOffer::lookAgain()
{
    m_answersKeys = false;
    if (m_isInReach) {
        m_look.start();
    } else {
        m_look.stop();
    }
    Q_EMIT changed();
    Q_EMIT lookBegan();
}

bool ImportOffer::needsFolder() const
{
    return !m_engine || !m_engine->importRoot();
}

bool ImportOffer::warns() const
{
    return !needsFolder() && m_engine->isCopying() && factsOf(m_engine->stage().kind).isBusy;
}

QString ImportOffer::title() const
{
    return needsFolder() ? tr("Set a Shoots folder first") : tr("SD card detected");
}

QString ImportOffer::body() const
{
    if (needsFolder()) {
        return tr("Choose a Shoots folder in Preferences so Binnacle knows where to organize footage from a card.");
    }
    if (!m_isCounted) {
        return Wording::of(tr("%1 — looking for clips…"), {m_displayName});
    }
    const QString found = m_clipCount == 1 ? tr("1 clip found.") : tr("%1 clips found.").arg(m_clipCount);
    return Wording::of(tr("%1 · %2 Import and sort it into your Shoots folder?"), {m_displayName, found});
}

QString ImportOffer::symbol() const
{
    return needsFolder() ? u"folder"_s : u"sdcard"_s;
}

QString ImportOffer::answer() const
{
    return needsFolder() ? tr("Open Preferences") : tr("Import & Sort");
}

QString ImportOffer::checking() const
{
    return needsFolder() ? QString() : Verification::note(m_engine->options());
}

QString ImportOffer::warning()
{
    return tr("Importing this card stops the copy that is running.");
}

QString ImportOffer::description() const
{
    QStringList parts{body(), checking(), warns() ? warning() : QString()};
    parts.removeAll(QString());
    return parts.join(u' ');
}

void ImportOffer::accept()
{
    if (needsFolder()) {
        Q_EMIT preferencesDue();
    } else {
        Q_EMIT accepted();
    }
}

} // namespace larkspan

#pragma once

#include <set>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include "core/bins/Coverage.h"
#include "core/engine/SortEngine.h"

namespace larkspan {

// The state of the sheet "Check Coverage…", which compares the shoot with the bins that a listing needs. The choice of
// those stays in the settings. Main thread.
class CoverageCheck : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY availableChanged) // there are sorted clips on show
    Q_PROPERTY(bool isShown READ isShown NOTIFY shownChanged)
    Q_PROPERTY(QStringList names READ names CONSTANT)       // of all bins, in the table's order
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed)  // for each of them {needed, status, missing, doubtful}
    Q_PROPERTY(bool isWhole READ isWhole NOTIFY changed)    // no needed bin is missing
    Q_PROPERTY(QString missing READ missing NOTIFY changed) // sentences
    Q_PROPERTY(bool hasSingleTakes READ hasSingleTakes NOTIFY changed)
    Q_PROPERTY(QString singleTakes READ singleTakes NOTIFY changed)

public:
    // engine and settings outlive it.
    CoverageCheck(SortEngine &engine, SettingsStore &settings);

    bool isAvailable() const;
    bool isShown() const { return m_isShown; }
    static QStringList names();
    QVariantList rows() const;
    bool isWhole() const { return m_coverage.missing.empty(); }
    QString missing() const;
    bool hasSingleTakes() const { return !m_coverage.singleTakes.empty(); }
    QString singleTakes() const;

    // Does nothing while there are no clips to check.
    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    Q_INVOKABLE void setNeeded(const QString &bin, bool isNeeded);

Q_SIGNALS:
    void availableChanged();
    void shownChanged();
    void changed();

private:
    void followEngine();
    void compare();

    SortEngine &m_engine;
    SettingsStore &m_settings;
    std::set<QString> m_needed;
    Coverage m_coverage; // as of the last look while the sheet was shown
    bool m_isShown = false;
};

} // namespace larkspan

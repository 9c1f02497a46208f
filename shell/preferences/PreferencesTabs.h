#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The tabs of Preferences, and the words around them that depend on the open tool. Main thread.
class PreferencesTabs : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString wanted MEMBER m_wanted NOTIFY changed)            // the tab that is asked for
    Q_PROPERTY(bool isForSortTool MEMBER m_isForSortTool NOTIFY changed) // the sort tool is open
    Q_PROPERTY(QList<QString> names READ names CONSTANT)                 // from the first to the last
    Q_PROPERTY(QString current READ current NOTIFY changed)              // one of them, whatever is asked for
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString scope READ scope NOTIFY changed) // says what the settings apply to

public:
    using QObject::QObject;

    [[nodiscard]] static QStringList names();
    [[nodiscard]] QString current() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString scope() const;

Q_SIGNALS:
    void changed();

private:
    QString m_wanted;
    bool m_isForSortTool = false;
};

} // namespace larkspan

#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtQml/qqmlregistration.h>

class QQmlEngine;

namespace larkspan {

// Tells assistive technology of a control or a popup what QML's Accessible can't:
// - whether what a control opens is open;
// - a popup's name and role, since Accessible attaches to items only;
// - a role that stays: a template replaces that of Accessible by its own once assistive technology is active.
// Attached: LKAccessible.role. Main thread.
class LKAccessible : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It is only attached.")
    QML_ATTACHED(larkspan::LKAccessible)
    Q_PROPERTY(int role MEMBER m_role NOTIFY changed)     // one of Accessible's; the template's if it isn't set
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed) // of a popup
    // True while what the control opens is open. A control that never sets it opens nothing.
    Q_PROPERTY(bool expanded READ expanded WRITE setExpanded NOTIFY changed)

public:
    explicit LKAccessible(QObject *attachee);

    static LKAccessible *qmlAttachedProperties(QObject *attachee) { return new LKAccessible(attachee); }
    // Has items report what is attached to them. Items that the engine created before may not do so.
    static void install(QQmlEngine &engine);

    [[nodiscard]] int role() const { return m_role; }
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] bool expandable() const { return m_expandable; }
    [[nodiscard]] bool expanded() const { return m_expanded; }
    void setExpanded(bool expanded);

Q_SIGNALS:
    void changed();

private:
    Q_SLOT void findBody();

    int m_role = 0;
    QString m_name;
    bool m_expandable = false;
    bool m_expanded = false;
};

} // namespace larkspan

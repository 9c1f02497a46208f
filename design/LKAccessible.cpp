#include "design/LKAccessible.h"

#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

void tellChange(QObject *object, const QAccessible::State &changed)
{
    QAccessibleStateChangeEvent event(object, changed);
    QAccessible::updateAccessibility(&event);
}

// The property of a popup's body that holds the popup's attached object.
constexpr const char *ofThePopup = "larkspanAccessible";

LKAccessible *attachedTo(QQuickItem *item)
{
    if (QObject *attached = qmlAttachedPropertiesObject<LKAccessible>(item, false)) {
        return qobject_cast<LKAccessible *>(attached);
    }
    return qobject_cast<LKAccessible *>(item->property(ofThePopup).value<QPointer<QObject>>());
}

// Qt Quick's interface of an item, with the role and state attached to it, or to the popup whose body it is.
class ToldItem : public QAccessibleQuickItem
{
public:
    explicit ToldItem(QQuickItem *item) : QAccessibleQuickItem(item)
    {
        QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
            QAccessible::State changed;
            changed.disabled = true;
            tellChange(item, changed);
        });
    }

    QAccessible::Role role() const override
    {
        const LKAccessible *more = attachedTo(item());
        return more != nullptr && more->role() != 0 ? static_cast<QAccessible::Role>(more->role())
                                                    : QAccessibleQuickItem::role();
    }

    QString text(QAccessible::Text text) const override
    {
        const LKAccessible *more = attachedTo(item());
        return text == QAccessible::Name && more != nullptr && !more->name().isEmpty()
                   ? more->name()
                   : QAccessibleQuickItem::text(text);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleQuickItem::state();
        state.disabled = !item()->isEnabled();
        if (const LKAccessible *more = attachedTo(item()); more != nullptr && more->expandable()) {
            state.expandable = true;
            state.expanded = more->expanded();
            state.collapsed = !more->expanded();
        }
        return state;
    }

    // Names each action once: a button's own press and its control's press handler both count as one.
    QStringList actionNames() const override
    {
        QStringList names = QAccessibleQuickItem::actionNames();
        names.removeDuplicates();
        return names;
    }
};

QAccessibleInterface *tell(const QString &className, QObject *object)
{
    // Qt calls this for each class of the object in turn. A popup's body has a class with an interface of its own,
    // which only knows headers and footers.
    if (className != "QQuickItem"_L1 && className != "QQuickPopupItem"_L1) {
        return nullptr;
    }
    auto *item = static_cast<QQuickItem *>(object);
    // An item without accessible properties has no interface.
    return QQuickItemPrivate::get(item)->isAccessible ? new ToldItem(item) : nullptr; // owned by QAccessible
}

} // namespace

LKAccessible::LKAccessible(QObject *attachee) : QObject(attachee)
{
    QAccessible::installFactory(tell); // an engine may attach this before anything has called install
    if (attachee->inherits("QQuickPopup")) {
        connect(attachee, SIGNAL(aboutToShow()), this, SLOT(findBody())); // which is made late
    }
}

void LKAccessible::findBody()
{
    if (const auto *content = parent()->property("contentItem").value<QQuickItem *>()) {
        content->parentItem()->setProperty(ofThePopup, QVariant::fromValue(QPointer<QObject>(this)));
    }
}

void LKAccessible::install(QQmlEngine &engine)
{
    // Qt Quick has a factory of its own, and the last one is asked first.
    QQmlComponent(&engine).setData("import QtQuick\nQtObject {}", {});
    QAccessible::installFactory(tell); // once, however often it is called
}

void LKAccessible::setExpanded(bool expanded)
{
    if (m_expandable && m_expanded == expanded) {
        return;
    }
    m_expandable = true;
    m_expanded = expanded;
    Q_EMIT changed();
    QAccessible::State changed;
    changed.expanded = true;
    tellChange(parent(), changed);
}

} // namespace larkspan

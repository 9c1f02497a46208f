#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

#include "shell/window/FieldChange.h"

namespace larkspan {

// The form on the page of a tool in development that asks for an e-mail address, to tell when the tool ships. The
// address is kept while the program runs and sent nowhere. Main thread.
class ShipForm : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("AppState has one.")
    Q_PROPERTY(bool asks READ asks NOTIFY changed)     // the field is shown
    Q_PROPERTY(bool offers READ offers NOTIFY changed) // the button that opens the form is shown
    Q_PROPERTY(bool canSend READ canSend NOTIFY changed)

public:
    explicit ShipForm(QObject *parent = nullptr);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    void setOpen(bool isOpen) { changeField(*this, m_isOpen, isOpen, &ShipForm::isOpenChanged); }
    [[nodiscard]] const QString &email() const { return m_email; }
    void setEmail(const QString &email) { changeField(*this, m_email, email, &ShipForm::emailChanged); }
    [[nodiscard]] bool isSent() const { return m_isSent; }
    void setSent(bool isSent) { changeField(*this, m_isSent, isSent, &ShipForm::isSentChanged); }

    [[nodiscard]] bool asks() const { return m_isOpen && !m_isSent; }
    [[nodiscard]] bool offers() const { return !m_isOpen && !m_isSent; }
    // Blanks are no address.
    [[nodiscard]] bool canSend() const { return !m_email.trimmed().isEmpty(); }

    // Does nothing without an address.
    Q_INVOKABLE void send();
    // Closes and empties the form, for the next page.
    void clear();

Q_SIGNALS:
    void isOpenChanged();
    void emailChanged();
    void isSentChanged();
    void changed(); // any of them

private:
    bool m_isOpen = false;
    QString m_email;
    bool m_isSent = false;
};

} // namespace larkspan

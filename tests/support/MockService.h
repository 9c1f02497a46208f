#pragma once

#include <QtCore/QProcess>
#include <QtCore/QVariant>

namespace larkspan::test {

// A service of the desktop, played on the session bus by a process of its own for as long as the object lives. Needs
// python3-dbusmock and a session bus of the test's own (dbus-run-session).
class MockService
{
public:
    // Fails the test when the service doesn't come up.
    MockService(const QString &name, const QString &path, const QString &interface);
    ~MockService();

    // code: Python, with arg1, arg2, … for the arguments and ret for the answer.
    void addMethod(const QString &method, const QString &in, const QString &out, const QString &code);
    void emitSignal(const QString &signal, const QString &signature, const QVariantList &arguments);
    // Returns the calls since, as "Method argument argument"; only text and numbers among the arguments.
    QStringList calls() const;

private:
    QVariantList mock(const QString &method, const QVariantList &arguments) const;

    const QString m_name;
    const QString m_path;
    const QString m_interface;
    QProcess m_process;
};

} // namespace larkspan::test

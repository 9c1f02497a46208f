#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QProcess>
#include <QtCore/QStringList>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

// A real keyring, unlocked, in a folder of the test's own, on the session bus. It takes the place of any that is there,
// so the bus must be the test's own too.
class Keyring
{
public:
    Keyring();
    ~Keyring();
    Keyring(const Keyring &) = delete;
    Keyring &operator=(const Keyring &) = delete;

    // Puts a secret in, as people do it. Attributes: names and values in turns. False when it couldn't be done.
    [[nodiscard]] bool store(const QByteArray &secret, const QStringList &attributes = cloudKey());
    [[nodiscard]] bool lock();
    // Holds the service in its place, deaf and mute, or lets it go on.
    void freeze();
    void thaw();

    // The attributes of the cloud model's key.
    static QStringList cloudKey();

private:
    void signal(int number) const;

    TempFolder m_folder;
    QProcess m_daemon;
};

// Runs a program to its end; true if that was a success.
[[nodiscard]] bool runProgram(const QString &program, const QStringList &arguments, const QByteArray &input = {});

} // namespace larkspan::test

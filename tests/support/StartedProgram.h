#pragma once

#include <string_view>

#include <QtCore/QMap>
#include <QtCore/QProcess>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

// The program as its user has it: a process of its own, on the display, with a home of its own. Ends with the object.
class StartedProgram
{
public:
    // Starts it. settings: what its settings file holds. variables: of its environment, beside the test's own.
    explicit StartedProgram(const QString &program, std::string_view settings = "",
                            const QMap<QString, QString> &variables = {});
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    [[nodiscard]] const TempFolder &home() const { return m_home; }
    [[nodiscard]] QProcess &process() { return m_process; }

    // Waits for its window; false when none is ever shown.
    [[nodiscard]] bool showsItsWindow();
    // Waits until the intro is over, from when on the program looks out for cards.
    [[nodiscard]] bool leavesItsIntro() const;
    // As from the keyboard. Waits for the end; false when it doesn't come.
    [[nodiscard]] bool isClosed();

private:
    TempFolder m_home;
    QProcess m_process;
    QByteArray m_window; // as the display calls it
};

} // namespace larkspan::test

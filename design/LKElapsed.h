#pragma once

#include <chrono>

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The time since the object was made, as text. The text follows the clock, ten times a second, only while
// it is running; the time passes all the same.
class LKElapsed : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    explicit LKElapsed(QObject *parent = nullptr);

    [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }
    void setRunning(bool running);
    [[nodiscard]] QString text() const;

Q_SIGNALS:
    void runningChanged();
    void textChanged();

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    QTimer m_timer;
};

} // namespace larkspan

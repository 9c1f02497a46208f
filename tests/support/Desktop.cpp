#include "tests/support/Desktop.h"

#include <cmath>
#include <csignal>
#include <fstream>
#include <stdexcept>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>

#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::test {

namespace {

QStringList placeOf(const QQuickItem &item)
{
    const QPointF points = item.mapToGlobal(QPointF(item.width() / 2, item.height() / 2));
    // The display counts pixels.
    const QPoint middle = (points * item.window()->effectiveDevicePixelRatio()).toPoint();
    return {QString::number(middle.x()), QString::number(middle.y())};
}

// Counts the keys and buttons whose release reaches a window of this program.
class Releases : public QObject
{
public:
    Releases() { QGuiApplication::instance()->installEventFilter(this); }

    // Waits for so many. By then the program has handled each press and release, so that what comes next can't overtake
    // them. A window that a press closes takes the release with it.
    void await(qsizetype count, const QString &what) const
    {
        if (!waitUntil([&] { return m_count >= count || QGuiApplication::focusWindow() == nullptr; })) {
            throw std::runtime_error("no window receives " + what.toStdString());
        }
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object->isWindowType() &&
            (event->type() == QEvent::KeyRelease || event->type() == QEvent::MouseButtonRelease)) {
            ++m_count;
        }
        return false;
    }

private:
    qsizetype m_count = 0;
};

// Programs run beside the event loop: the window must answer while the pointer moves over it.
void await(QProcess &process)
{
    if (!waitUntil([&] { return process.state() == QProcess::NotRunning; })) {
        process.kill();
        process.waitForFinished();
        throw std::runtime_error(process.program().toStdString() + " does not end");
    }
}

// Counts how often a key that is held is pressed again, before anyone else hears of it.
class RepeatCount : public QObject
{
public:
    RepeatCount() { qGuiApp->installEventFilter(this); }

    int counted() const { return m_counted; }
    bool isLetGo() const { return m_isLetGo; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!watched->isWindowType() || (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)) {
            return false;
        }
        const auto *key = static_cast<QKeyEvent *>(event);
        if (event->type() == QEvent::KeyRelease) {
            m_isLetGo = !key->isAutoRepeat();
            m_released = key->timestamp();
        } else if (key->isAutoRepeat() || key->timestamp() == m_released) { // Qt doesn't mark every one
            m_isLetGo = false;
            ++m_counted;
        }
        return false;
    }

private:
    int m_counted = 0;
    bool m_isLetGo = false;
    quint64 m_released = 0; // when
};

} // namespace

bool Desktop::awaitWindow(QQuickWindow &window)
{
    return waitUntil([&] { return window.isExposed() && window.isActive(); });
}

void Desktop::moveTo(const QQuickItem &item)
{
    const QPoint target = item.mapToGlobal(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    // Not its own --sync, which waits for a change that never comes where the pointer is there already.
    xdotool(QStringList{u"mousemove"_s} + placeOf(item));
    if (!waitUntil([&] { return (QCursor::pos() - target).manhattanLength() <= 2; })) {
        throw std::runtime_error("the pointer doesn't move");
    }
}

void Desktop::click(const QQuickItem &item)
{
    press(item, {u"1"_s}, 1);
}

void Desktop::rightClick(const QQuickItem &item)
{
    press(item, {u"3"_s}, 1);
}

void Desktop::doubleClick(const QQuickItem &item)
{
    press(item, {u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s}, 2);
}

void Desktop::press(const QQuickItem &item, const QStringList &buttons, int releases)
{
    const Releases released;
    xdotool(QStringList{u"mousemove"_s} + placeOf(item) + QStringList{u"sleep"_s, u"0.05"_s, u"click"_s} + buttons);
    released.await(releases, u"the click"_s);
}

void Desktop::glide(QPoint from, QPoint to)
{
    constexpr int steps = 40;
    QStringList moves;
    for (int step = 0; step <= steps; ++step) {
        const QPoint at = from + (to - from) * step / steps;
        moves += {u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"sleep"_s, u"0.02"_s};
    }
    xdotool(moves);
}

void Desktop::drag(QPoint from, QPoint to)
{
    const auto at = [](QPoint point) {
        return QStringList{u"mousemove"_s, QString::number(point.x()), QString::number(point.y()), u"sleep"_s,
                           u"0.15"_s};
    };
    xdotool(at(from) + QStringList{u"mousedown"_s, u"1"_s, u"sleep"_s, u"0.15"_s} + at(from + (to - from) / 4) +
            at(from + (to - from) / 2) + at(to) + at(to) + QStringList{u"mouseup"_s, u"1"_s});
}

void Desktop::key(const QString &name)
{
    const Releases released;
    xdotool({u"key"_s, name});
    released.await(name.split(u'+').size(), name);
}

void Desktop::type(const QString &text)
{
    const Releases released;
    xdotool({u"type"_s, u"--delay"_s, u"20"_s, u"--"_s, text});
    released.await(text.size(), text);
}

void Desktop::hold(const QString &name, int repeats)
{
    RepeatCount count;
    xdotool({u"keydown"_s, name});
    const bool repeated = waitUntil([&] { return count.counted() >= repeats; });
    xdotool({u"keyup"_s, name});
    if (!repeated) {
        throw std::runtime_error("the display doesn't repeat a key that is held");
    }
    if (!waitUntil([&] { return count.isLetGo(); })) {
        throw std::runtime_error("the key isn't let go");
    }
}

bool Desktop::drop(const QStringList &what, const QQuickItem &onto)
{
    QProcess source;
    source.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    source.start(QStringLiteral(LARKSPAN_DRAG_SOURCE), what);
    // It says where its window is once that is shown.
    if (!waitUntil([&] { return source.canReadLine() || source.state() == QProcess::NotRunning; }) ||
        !source.canReadLine()) {
        throw std::runtime_error("the window to drag from does not come up");
    }
    const QStringList handle = QString::fromLatin1(source.readLine()).trimmed().split(u' ');
    const QStringList target = placeOf(onto);
    const QString pause = u"0.15"_s; // as a hand takes; the two programs talk at every step
    const int x = target[0].toInt();
    const int y = target[1].toInt();
    const auto near = [&](int away) { return QStringList{QString::number(x - away), QString::number(y - away)}; };
    xdotool(QStringList{u"mousemove"_s} + handle +
            QStringList{u"sleep"_s, pause, u"mousedown"_s, u"1"_s, u"sleep"_s, pause} +
            QStringList{u"mousemove_relative"_s, u"--"_s, u"15"_s, u"0"_s, u"sleep"_s, pause, u"mousemove_relative"_s,
                        u"--"_s, u"15"_s, u"0"_s, u"sleep"_s, pause} +
            QStringList{u"mousemove"_s} + near(60) + QStringList{u"sleep"_s, pause, u"mousemove"_s} + near(20) +
            QStringList{u"sleep"_s, pause, u"mousemove"_s} + target +
            QStringList{u"sleep"_s, pause, u"mouseup"_s, u"1"_s});
    await(source); // it ends when its drag has
    if (source.exitStatus() != QProcess::NormalExit) {
        throw std::runtime_error("the window to drag from crashed");
    }
    return source.exitCode() == 0;
}

void Desktop::dragFiles(const QList<std::filesystem::path> &files, const QQuickItem &onto)
{
    QStringList paths;
    for (const auto &file : files) {
        paths.push_back(QString::fromStdString(file.string()));
    }
    if (!drop(paths, onto)) {
        throw std::runtime_error("the drop was not taken");
    }
}

void Desktop::setScale(double scale)
{
    // 96 dots per inch are one pixel to a point; the setting counts 1024ths of a dot.
    std::ofstream(qEnvironmentVariable("LARKSPAN_DESKTOP_SETTINGS").toStdString())
        << "Xft/DPI " << std::lround(scale * 96 * 1024) << '\n';
    const int daemon = qEnvironmentVariableIntValue("LARKSPAN_DESKTOP_SETTINGS_DAEMON");
    if (daemon <= 0 || kill(daemon, SIGHUP) != 0) {
        throw std::runtime_error("the desktop has no settings daemon (script/with-display)");
    }
    if (!waitUntil([scale] { return QGuiApplication::primaryScreen()->devicePixelRatio() == scale; })) {
        throw std::runtime_error("the desktop's scale is not heard of");
    }
}

void Desktop::xdotool(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(u"xdotool"_s, arguments);
    await(process);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        throw std::runtime_error("xdotool failed: " + arguments.join(u' ').toStdString());
    }
}

} // namespace larkspan::test

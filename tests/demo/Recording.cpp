#include "tests/demo/Recording.h"

#include <stdexcept>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace larkspan::demo {

namespace {

QString sizeText(QSize size)
{
    return u"%1x%2"_s.arg(size.width()).arg(size.height());
}

void awaitEnd(QProcess &ffmpeg)
{
    if (!test::waitUntil([&] { return ffmpeg.state() == QProcess::NotRunning; }, std::chrono::seconds(300)) ||
        ffmpeg.exitStatus() != QProcess::NormalExit || ffmpeg.exitCode() != 0) {
        throw std::runtime_error("ffmpeg fails: " + ffmpeg.readAllStandardError().toStdString());
    }
}

} // namespace

Recording::Recording()
{
    // Quickly and without loss, for it takes its processor time from what it films.
    const QSize screen = QGuiApplication::primaryScreen()->size();
    m_ffmpeg.start(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-progress"_s, u"pipe:1"_s, u"-f"_s, u"x11grab"_s,
                                 u"-framerate"_s, u"30"_s, u"-video_size"_s, sizeText(screen), u"-i"_s,
                                 qEnvironmentVariable("DISPLAY"), u"-c:v"_s, u"libx264"_s, u"-preset"_s, u"ultrafast"_s,
                                 u"-qp"_s, u"0"_s, QString::fromStdString((m_folder / "screen.mkv").string())});
    if (!test::waitUntil([this] {
            return m_ffmpeg.state() == QProcess::NotRunning || m_ffmpeg.readAllStandardOutput().contains("progress=");
        }) ||
        m_ffmpeg.state() == QProcess::NotRunning) {
        throw std::runtime_error("ffmpeg can't film the display: " + m_ffmpeg.readAllStandardError().toStdString());
    }
}

void Recording::save(const QRect &part, const fs::path &file)
{
    m_ffmpeg.write("q");
    awaitEnd(m_ffmpeg);
    QProcess cutter;
    cutter.start(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-y"_s, u"-i"_s,
                               QString::fromStdString((m_folder / "screen.mkv").string()), u"-vf"_s,
                               u"crop=%1:%2:%3:%4"_s
                                   .arg(part.width() & ~1) // H.264 halves the colours' sides
                                   .arg(part.height() & ~1)
                                   .arg(part.x())
                                   .arg(part.y()),
                               u"-c:v"_s, u"libx264"_s, u"-crf"_s, u"18"_s, u"-pix_fmt"_s, u"yuv420p"_s,
                               QString::fromStdString(file.string())});
    awaitEnd(cutter);
}

} // namespace larkspan::demo

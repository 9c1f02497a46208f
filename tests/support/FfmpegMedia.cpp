#include "tests/support/FfmpegMedia.h"

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <QtCore/QProcess>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

void makeMedia(const std::filesystem::path &target, std::string_view arguments)
{
    QStringList list{QStringLiteral("-nostdin"), QStringLiteral("-loglevel"), QStringLiteral("error"),
                     QStringLiteral("-y")};
    list += QString::fromUtf8(arguments.data(), static_cast<qsizetype>(arguments.size()))
                .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    list += QString::fromStdString(target.native());
    QProcess ffmpeg;
    ffmpeg.setProcessChannelMode(QProcess::MergedChannels);
    ffmpeg.start(QStringLiteral("ffmpeg"), list);
    // Without a limit: on a busy machine a minute isn't enough, and a test has a limit of its own.
    if (!ffmpeg.waitForFinished(-1) || ffmpeg.exitStatus() != QProcess::NormalExit || ffmpeg.exitCode() != 0) {
        throw std::runtime_error("ffmpeg could not make " + target.native() + ": " + ffmpeg.readAll().toStdString() +
                                 ffmpeg.errorString().toStdString());
    }
}

const std::filesystem::path &sharedMedia(const std::string &name, std::string_view arguments)
{
    static const TempFolder folder;
    static std::map<std::pair<std::string, std::string>, std::filesystem::path> made;
    const std::pair key(name, std::string(arguments));
    auto found = made.find(key);
    if (found == made.end()) {
        // A folder each: what two tests call alike need not be the same.
        const auto path = folder / std::to_string(made.size()) / name;
        std::filesystem::create_directories(path.parent_path());
        makeMedia(path, arguments);
        found = made.emplace(key, path).first;
    }
    return found->second;
}

std::string bytesOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("could not open " + file.native());
    }
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return std::move(bytes).str();
}

} // namespace larkspan::test

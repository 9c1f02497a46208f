#include "shell/desktop/LoginItem.h"

#include <fstream>
#include <string_view>
#include <system_error>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include "core/files/AtomicFile.h"

namespace larkspan {

namespace {

// A path as the command of a desktop file: quoted for the command line, then escaped as every text of such a file.
std::string command(const std::string &path)
{
    std::string text = "\"";
    for (const char letter : path) {
        switch (letter) {
        case '"':
        case '`':
        case '$':
            text += "\\\\";
            text += letter;
            break;
        case '\\':
            text += "\\\\\\\\";
            break;
        case '%':
            text += "%%";
            break;
        case '\n':
            text += "\\n";
            break;
        default:
            text += letter;
        }
    }
    return text + '"';
}

bool isSwitchedOff(std::string_view line)
{
    return line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false";
}

} // namespace

LoginItem::LoginItem(std::filesystem::path folder, std::filesystem::path program)
    : m_folder(std::move(folder))
    , m_program(std::move(program))
{}

std::filesystem::path LoginItem::defaultFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::filesystem::path(QFile::encodeName(config).toStdString()) / "autostart";
}

std::filesystem::path LoginItem::ownProgram()
{
    return QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString();
}

bool LoginItem::isEnabled() const
{
    std::error_code unreadable;
    if (!std::filesystem::is_regular_file(file(), unreadable)) {
        return false;
    }
    std::ifstream stream(file());
    bool hasGroup = false;
    for (std::string line; std::getline(stream, line);) {
        hasGroup = hasGroup || line == "[Desktop Entry]";
        if (isSwitchedOff(line)) {
            return false;
        }
    }
    return hasGroup;
}

bool LoginItem::setEnabled(bool enabled) const
{
    std::error_code failure;
    if (!enabled) {
        std::filesystem::remove(file(), failure);
        return !failure;
    }
    std::filesystem::create_directories(m_folder, failure);
    return !failure && writeFileAtomically(file(), entry()).has_value();
}

std::string LoginItem::entry() const
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Larkspan\n"
           "Exec=" +
           command(m_program.native()) +
           "\n"
           "Icon=larkspan\n"
           "Terminal=false\n";
}

} // namespace larkspan

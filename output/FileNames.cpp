#include "output/FileNames.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// The longest name that the usual file systems take, in bytes.
constexpr std::size_t longestFolderName = 255;

std::string_view shortened(std::string_view text, std::size_t longest)
{
    if (text.size() <= longest) {
        return text;
    }
    std::size_t end = longest;
    // A byte of the form 10xxxxxx continues a character that began before it.
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    // Bytes that are no characters at all have no boundaries to respect.
    return text.substr(0, end > 0 ? end : longest);
}

} // namespace

std::string numberedName(const std::string &name, int n, std::size_t longest)
{
    const std::filesystem::path path(name);
    std::string ending;
    if (n > 1) {
        ending.append(" ").append(std::to_string(n));
    }
    std::string stem = path.stem().native();
    if (ending.size() + path.extension().native().size() < longest) {
        ending += path.extension().native();
    } else {
        stem = name; // so long behind its last dot that it is no extension
    }
    return std::string(shortened(stem, longest - std::min(longest, ending.size()))).append(ending);
}

std::string binFolderName(const QString &bin)
{
    QString name = bin;
    for (const QChar separator : {u'/', u':', u'\0'}) {
        name.replace(separator, u'-');
    }
    if (name == u"."_s || name == u".."_s) {
        name.replace(u'.', u'-'); // would lead out of the root, or nowhere
    }
    return std::string(shortened(name.toStdString(), longestFolderName));
}

} // namespace larkspan

#include "screens/engine/Wording.h"

#include <algorithm>

namespace larkspan {

namespace {

constexpr QChar leftToRightMark(0x200E);
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popIsolate(0x2069);

// Letters that run from right to left, and marks that change the direction.
bool turns(QChar::Direction direction)
{
    switch (direction) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

bool isTurned(const QString &text)
{
    const QList<uint> letters = text.toUcs4();
    return std::ranges::any_of(letters, [](uint letter) { return turns(QChar::direction(letter)); });
}

} // namespace

QString Wording::of(const QString &pattern, const QVariantList &parts)
{
    QString sentence;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const int part = pattern[i] == u'%' && i + 1 < pattern.size() ? pattern[i + 1].digitValue() - 1 : -1;
        if (part < 0 || part >= parts.size()) {
            sentence += pattern[i];
            continue;
        }
        sentence += isolated(parts[part].toString());
        ++i;
    }
    return sentence;
}

QString Wording::leftToRight(const QString &sentence)
{
    return isTurned(sentence) ? leftToRightMark + sentence : sentence;
}

QString Wording::isolated(const QString &name)
{
    return isTurned(name) ? firstStrongIsolate + name + popIsolate : name;
}

} // namespace larkspan

#include "output/XmlText.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// No control characters but tab, line feed and return, no halves of surrogate pairs, no U+FFFE and U+FFFF.
bool fitsXml(char16_t unit)
{
    return unit == u'\t' || unit == u'\n' || unit == u'\r' ||
           (unit >= 0x20 && !QChar::isSurrogate(unit) && unit < 0xFFFE);
}

} // namespace

QString xmlEscaped(const QString &text)
{
    QString result;
    result.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        switch (unit) {
        case u'&':
            result += "&amp;"_L1;
            break;
        case u'<':
            result += "&lt;"_L1;
            break;
        case u'>':
            result += "&gt;"_L1;
            break;
        case u'"':
            result += "&quot;"_L1;
            break;
        case u'\'':
            result += "&apos;"_L1;
            break;
        default:
            if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
                result += text.at(i);
                result += text.at(++i);
            } else {
                result += fitsXml(unit) ? QChar(unit) : QChar(QChar::ReplacementCharacter);
            }
        }
    }
    return result;
}

} // namespace larkspan

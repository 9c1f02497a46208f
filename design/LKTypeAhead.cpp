#include "design/LKTypeAhead.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace larkspan {

namespace {

constexpr QChar deleteKey(0x7f);

} // namespace

LKTypeAhead::LKTypeAhead(QObject *parent) : QObject(parent)
{
    m_pause.setInterval(1s);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] { m_typed.clear(); });
}

bool LKTypeAhead::takes(const QString &text, int modifiers)
{
    return (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0 && !text.isEmpty() &&
           text.front() > u' ' && text.front() != deleteKey;
}

int LKTypeAhead::find(const QVariantList &labels, int current, const QString &text)
{
    m_pause.start();
    m_typed += text.toLower();
    if (m_typed.isEmpty()) {
        return -1;
    }
    const bool isSame = m_typed.count(m_typed.front()) == m_typed.size();
    const QString prefix = isSame ? m_typed.first(1) : m_typed;
    const int first = isSame ? current + 1 : std::max(current, 0);
    const int count = static_cast<int>(labels.size());
    for (int i = 0; i < count; ++i) {
        const int row = (first + i) % count;
        if (!labels[row].isNull() && labels[row].toString().toLower().startsWith(prefix)) {
            return row;
        }
    }
    return -1;
}

} // namespace larkspan

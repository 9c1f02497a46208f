#pragma once

#include <QtCore/QString>

namespace larkspan {

// Text for XML content and quoted attributes. What XML can't hold (control characters, halves of pairs) becomes U+FFFD.
[[nodiscard]] QString xmlEscaped(const QString &text);

} // namespace larkspan

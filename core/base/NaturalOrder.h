#pragma once

#include <QtCore/QCollator>

namespace larkspan {

// The order in which people count names: clip2 before clip10, letters before case. Any thread; a collator belongs to
// one.
QCollator naturalOrder();

} // namespace larkspan

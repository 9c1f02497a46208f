#pragma once

#include <QtCore/qobjectdefs.h>

namespace larkspan {

// Sets a field of an object and emits the signal for it. Returns false if the field had that value already.
template <typename Owner, typename Value>
bool changeField(Owner &owner, Value &field, const Value &value, void (Owner::*changed)())
{
    if (field == value) {
        return false;
    }
    field = value;
    Q_EMIT(owner.*changed)();
    return true;
}

} // namespace larkspan

#include "classify/cloud/CloudError.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QString CloudError::errorDescription() const
{
    switch (kind) {
    case Kind::http:
        return u"server said "_s + QString::number(status) + u" — "_s + text;
    case Kind::badEndpoint:
        return u"that endpoint URL isn't valid"_s;
    case Kind::unreadableResponse:
        return u"couldn't read the model's reply"_s;
    case Kind::platform:
        break;
    }
    return text;
}

} // namespace larkspan

#pragma once

#include <vector>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <tl/expected.hpp>

#include "classify/cloud/CloudError.h"

namespace larkspan {

// A cloud model's answer about one clip. Nothing in it is checked: the names need not be bins.
struct CloudVerdict
{
    QString primary;
    std::vector<QString> secondary;
    bool personVisible = false;
    QString note;

    friend bool operator==(const CloudVerdict &, const CloudVerdict &) = default;
};

// The JSON object within a model's text; prose or a code fence around it is forgiven.
[[nodiscard]] tl::expected<CloudVerdict, CloudError> parseVerdict(const QString &text);

// The verdict within the body of a reply: in the first text of its content.
[[nodiscard]] tl::expected<CloudVerdict, CloudError> parseReply(const QByteArray &body);

} // namespace larkspan

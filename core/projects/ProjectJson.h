#pragma once

#include <optional>
#include <vector>

#include <QtCore/QByteArray>

#include "core/projects/Project.h"

namespace larkspan {

// Projects as the cache's files hold them: UTF-8 JSON, "/" escaped, dates as seconds since 2001-01-01 00:00:00 UTC.
// Reading is all or nothing: a missing key, another type or a number that doesn't fit makes the whole text unreadable.
// Numbers that JSON has no form for (infinite ones and NaN) are written as 0.

QByteArray encodeProject(const CachedProject &project);
std::optional<CachedProject> decodeProject(const QByteArray &json);

QByteArray encodeProjectIndex(const std::vector<ProjectSummary> &projects);
std::optional<std::vector<ProjectSummary>> decodeProjectIndex(const QByteArray &json);

} // namespace larkspan

#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/SortEngine.h"

// The engine as QML sees it. core doesn't know QML, so it is registered from here.
namespace larkspan {

// The stages under names that QML can reach, which start in upper case.
namespace SortStages {
Q_NAMESPACE

enum class Name {
    Empty = static_cast<int>(SortEngine::StageKind::empty),
    Working = static_cast<int>(SortEngine::StageKind::working),
    Results = static_cast<int>(SortEngine::StageKind::results),
    Organizing = static_cast<int>(SortEngine::StageKind::organizing),
    Done = static_cast<int>(SortEngine::StageKind::done),
    EmptyFolder = static_cast<int>(SortEngine::StageKind::emptyFolder),
    Failed = static_cast<int>(SortEngine::StageKind::failed),
};
Q_ENUM_NS(Name)

} // namespace SortStages

struct SortEngineForeign
{
    Q_GADGET
    QML_FOREIGN(larkspan::SortEngine)
    QML_NAMED_ELEMENT(SortEngine)
    QML_UNCREATABLE("The program has one engine and hands it to its views.")
    QML_EXTENDED_NAMESPACE(larkspan::SortStages)
};

} // namespace larkspan

#include "screens/stages/StageFacts.h"

namespace larkspan {

StageFacts factsOf(SortEngine::StageKind stage)
{
    using enum SortEngine::StageKind;
    switch (stage) {
    case empty:
        return {.view = "BinnacleLandingView.qml"};
    case working:
        return {.view = "BinnacleWorkingView.qml", .isBusy = true};
    case results:
        return {.view = "BinnacleResultsView.qml", .hasShoot = true};
    case organizing:
        return {.view = "BinnacleOrganizingView.qml", .isBusy = true};
    case done:
        return {.view = "BinnacleDoneView.qml", .hasShoot = true};
    case emptyFolder:
        return {.view = "BinnacleEmptyFolderView.qml"};
    case failed:
        return {.view = "BinnacleFailedView.qml"};
    }
    Q_UNREACHABLE();
}

QString Stages::view(SortEngine::StageKind stage)
{
    return QString::fromLatin1(factsOf(stage).view);
}

} // namespace larkspan

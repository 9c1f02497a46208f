#include "shell/window/CloseRequest.h"

#include "core/copies/UnreadableCard.h"

namespace larkspan {

void CloseRequest::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::isCopyingChanged, this, &CloseRequest::followCopy);
    connect(&engine, &SortEngine::progressChanged, this, &CloseRequest::changed);
}

QString CloseRequest::title() const
{
    switch (m_shown) {
    case State::Finishing:
        return tr("Closing when the copy is done…");
    case State::Stopping:
        return tr("Stopping the copy…");
    default:
        return tr("Footage is still being copied");
    }
}

QString CloseRequest::message() const
{
    switch (m_shown) {
    case State::Finishing:
        return tr("%1 of %2 files are copied. You can leave this window alone.")
            .arg(m_engine ? m_engine->done() : 0)
            .arg(m_engine ? m_engine->total() : 0);
    case State::Stopping:
        return tr("The file that is being copied is finished and checked first, so that nothing half-made stays.");
    default:
        return tr("Larkspan can finish the copy and then close, or stop it after the file that is being copied. "
                  "Nothing half-made stays either way, and no original is deleted before every copy is checked.");
    }
}

QStringList CloseRequest::answers() const
{
    return m_shown == State::Asking ? QStringList{tr("Stop and Close"), tr("Keep Open"), tr("Finish, Then Close")}
                                    : QStringList();
}

bool CloseRequest::allowsClosing()
{
    if (!isCopying()) {
        return true;
    }
    if (m_state == State::Idle) {
        enter(State::Asking);
    }
    return false;
}

void CloseRequest::answer(int index)
{
    const auto answer = static_cast<Answer>(index);
    if (answer == Answer::KeepOpen) {
        keepOpen();
    } else if (!isCopying()) { // it may have ended while the question was fading
        Q_EMIT closeDue();
    } else if (m_state == State::Asking) {
        enter(answer == Answer::Stop ? State::Stopping : State::Finishing);
        if (answer == Answer::Stop) {
            m_engine->resetToQuit();
        }
    }
}

void CloseRequest::keepOpen()
{
    if (m_state == State::Asking) {
        enter(State::Idle);
    }
}

void CloseRequest::enter(State state)
{
    m_state = state;
    if (isShown()) {
        m_shown = state;
    }
    Q_EMIT changed();
}

void CloseRequest::followCopy()
{
    if (isCopying() || m_state == State::Idle) {
        return;
    }
    const bool wasAnswered = m_state != State::Asking;
    enter(State::Idle);
    // A copy that failed, or that lacks clips, is first read about.
    if (wasAnswered && m_engine->stage().kind != SortEngine::StageKind::failed && m_engine->unreadableCards().empty()) {
        Q_EMIT closeDue();
    }
}

} // namespace larkspan

#pragma once

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The request to close the window while footage is copied: asks the editor, and has the window closed once the copy has
// ended in order. Main thread.
class CloseRequest : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    // The texts keep their words after the request has ended, while what shows them fades.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QList<QString> answers READ answers NOTIFY changed) // none while the end of the copy is awaited

public:
    enum class State {
        Idle,      // nobody wants to close the window, or the copy has ended
        Asking,    // the editor is asked what to do about the copy
        Finishing, // the window closes when the copy is done
        Stopping,  // the copy has been told to stop; the window closes when it has
    };
    // In the order of answers().
    enum class Answer { Stop, KeepOpen, Finish };

    using EngineObject::EngineObject;

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] bool isShown() const { return m_state != State::Idle; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] QStringList answers() const;

    // Returns true if nothing is being copied. Otherwise asks the editor, unless that has been answered already.
    Q_INVOKABLE bool allowsClosing();
    // Takes an answer by its place in answers(). A copy that has ended needs none: the window closes, or stays open.
    Q_INVOKABLE void answer(int index);
    // Withdraws the question. A copy whose end is awaited goes on being awaited.
    Q_INVOKABLE void keepOpen();

Q_SIGNALS:
    // The window is to be closed now.
    void closeDue();

private:
    void follow(SortEngine &engine) override;
    [[nodiscard]] bool isCopying() const { return m_engine && m_engine->isCopying(); }
    void enter(State state);
    void followCopy();

    State m_state = State::Idle;
    State m_shown = State::Asking; // the last state that isn't Idle
};

} // namespace larkspan

#pragma once

#include <chrono>

#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The offer to bring in a card: its texts, what its button does, and when keys may press that. Main thread.
class ImportOffer : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString displayName MEMBER m_displayName WRITE setDisplayName NOTIFY changed) // of the card
    Q_PROPERTY(bool isCounted MEMBER m_isCounted NOTIFY changed)                             // clipCount is known
    Q_PROPERTY(int clipCount MEMBER m_clipCount NOTIFY changed)
    // True while there is no Shoots folder, without which nothing can be brought in.
    Q_PROPERTY(bool needsFolder READ needsFolder NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString body READ body NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)           // above the title
    Q_PROPERTY(QString answer READ answer NOTIFY changed)           // on the button that answers
    Q_PROPERTY(QString checking READ checking NOTIFY changed)       // says how copies are checked; "" for none
    Q_PROPERTY(QString description READ description NOTIFY changed) // all of it, for assistive technology
    // True while a copy is running, which accepting would stop, as the warning says. hasWarned stays true when that
    // copy ends: the warning keeps its space, so that the buttons stay in place.
    Q_PROPERTY(bool warns READ warns NOTIFY changed)
    Q_PROPERTY(bool hasWarned READ hasWarned NOTIFY changed)
    Q_PROPERTY(QString warning READ warning CONSTANT)
    // True while the offer is topmost and has keyboard focus.
    Q_PROPERTY(bool isInReach MEMBER m_isInReach WRITE setInReach NOTIFY changed)
    // True once the offer has been in reach for `patience`. Keys before that may be meant for what was on screen when
    // it appeared, and are ignored.
    Q_PROPERTY(bool answersKeys READ answersKeys NOTIFY changed)

public:
    static constexpr std::chrono::milliseconds patience{500};

    explicit ImportOffer(QObject *parent = nullptr);

    void setDisplayName(const QString &name);
    void setInReach(bool isInReach);
    [[nodiscard]] bool needsFolder() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString body() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString answer() const;
    [[nodiscard]] QString checking() const;
    [[nodiscard]] QString description() const;
    [[nodiscard]] bool warns() const;
    [[nodiscard]] static QString warning();
    [[nodiscard]] bool hasWarned() const { return m_hasWarned; }
    [[nodiscard]] bool answersKeys() const { return m_answersKeys; }

    // Accepts the card, or opens Preferences where a folder is missing.
    Q_INVOKABLE void accept();

Q_SIGNALS:
    void accepted();
    void preferencesDue();
    // Keys are ignored from the first signal until the second one.
    void lookBegan();
    void lookedAt();

private:
    void follow(SortEngine &engine) override;
    void followCopy();
    void lookAgain();

    QString m_displayName;
    bool m_isCounted = false;
    int m_clipCount = 0;
    bool m_isInReach = false;
    bool m_hasWarned = false;
    bool m_answersKeys = false;
    QTimer m_look{this};
};

} // namespace larkspan

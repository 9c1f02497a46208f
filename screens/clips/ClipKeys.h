#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// Decides what a key does with the clip that has focus, in the grid of a bin or in the review list. Main thread.
class ClipKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // True in the review list, where C confirms a clip and clips have no menu.
    Q_PROPERTY(bool isReview MEMBER m_isReview NOTIFY isReviewChanged)

public:
    using QObject::QObject;

    // Takes a Qt::Key with its modifiers. row: the clip that has focus, -1 for none. Returns false for a key that means
    // nothing here.
    Q_INVOKABLE bool take(int key, int modifiers, int row);

Q_SIGNALS:
    void isReviewChanged();
    // The preview of the clip is to be opened.
    void openDue();
    // Another bin is to be chosen for the clip.
    void moveDue();
    // The clip is to be confirmed.
    void confirmDue();
    // The menu of the clip is to be opened.
    void menuDue();

private:
    bool m_isReview = false;
};

} // namespace larkspan

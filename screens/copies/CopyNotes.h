#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/copies/UnfinishedCopy.h"
#include "core/copies/UnreadableCard.h"
#include "screens/engine/EngineObject.h"

namespace larkspan {

// The notes about copies that lack something, which stay on every screen of the tool until the editor dismisses them.
class CopyNotes : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    // The cards that couldn't be read as a whole, a card a line; "" for none.
    Q_PROPERTY(QString unreadable READ unreadable NOTIFY changed)
    // The copies that ended before their last file, a copy a line; "" for none.
    Q_PROPERTY(QString unfinished READ unfinished NOTIFY changed)

public:
    using EngineObject::EngineObject;

    QString unreadable() const;
    QString unfinished() const;

    // Names up to three folders, by their places on the card.
    static QString of(const UnreadableCard &card);
    // Names up to five of the files that were left out.
    static QString of(const UnfinishedCopy &copy);

private:
    void follow(SortEngine &engine) override;
};

} // namespace larkspan

#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// Sentences with names in them. A name stays one unit whatever it holds: a "%1" in it is no marker, and letters that
// run from right to left don't turn the words and numbers around it.
class Wording : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // Fills the parts, texts or numbers, in for the pattern's markers: the first for "%1", up to nine.
    Q_INVOKABLE static QString of(const QString &pattern, const QVariantList &parts);
    // Returns a sentence that may begin with a name, made to run from left to right all the same.
    Q_INVOKABLE static QString leftToRight(const QString &sentence);
    // Returns a name for use in a sentence: in isolating marks, which aren't seen, if anything in it runs from right to
    // left.
    Q_INVOKABLE static QString isolated(const QString &name);
};

} // namespace larkspan

#pragma once

#include <vector>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// One tool of the suite.
struct LKTool
{
    Q_GADGET
    QML_VALUE_TYPE(lkTool)
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(bool ready MEMBER ready)
    Q_PROPERTY(QString tagline MEMBER tagline)
    Q_PROPERTY(QString meta MEMBER meta)
    Q_PROPERTY(QString glyph MEMBER glyph)
    Q_PROPERTY(QColor gradientFrom MEMBER gradientFrom)
    Q_PROPERTY(QColor gradientTo MEMBER gradientTo)
    Q_PROPERTY(QString blurb MEMBER blurb)
    Q_PROPERTY(QStringList bullets MEMBER bullets)

public:
    QString id;   // stable; what AppState calls toolID
    QString name; // as it is shown
    bool ready = false;
    QString tagline; // one line on the card
    QString meta;    // small line on the card
    QString glyph;   // one emoji
    QColor gradientFrom;
    QColor gradientTo;
    QString blurb;       // the paragraph of its page; empty for one that is ready
    QStringList bullets; // likewise

    // In the order of the launcher.
    static const std::vector<LKTool> &all();
    // The first for an id that no tool has.
    static const LKTool &current(const QString &id);

    friend bool operator==(const LKTool &, const LKTool &) = default;
};

// The tools, for QML.
class ToolCatalogue : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int count READ count CONSTANT)

public:
    using QObject::QObject;

    [[nodiscard]] static int count() { return static_cast<int>(LKTool::all().size()); }
    // index: from 0, below count.
    Q_INVOKABLE larkspan::LKTool at(int index) const { return LKTool::all().at(static_cast<std::size_t>(index)); }
    Q_INVOKABLE larkspan::LKTool current(const QString &id) const { return LKTool::current(id); }
};

} // namespace larkspan

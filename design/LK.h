#pragma once

#include <optional>

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtGui/QFont>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/LKPalette.h"

class QJSEngine;
class QQmlEngine;

namespace larkspan {

// The durations of motions, in milliseconds, by their purpose. Motions follow the house curve where nothing
// else is said.
struct LKMotionScale
{
    Q_GADGET
    QML_VALUE_TYPE(lkMotionScale)
    Q_PROPERTY(int press MEMBER press CONSTANT)
    Q_PROPERTY(int hover MEMBER hover CONSTANT)
    Q_PROPERTY(int reveal MEMBER reveal CONSTANT)
    Q_PROPERTY(int overlay MEMBER overlay CONSTANT)
    Q_PROPERTY(int step MEMBER step CONSTANT)
    Q_PROPERTY(int toolIn MEMBER toolIn CONSTANT)
    Q_PROPERTY(int toolOut MEMBER toolOut CONSTANT)
    Q_PROPERTY(int afterIntro MEMBER afterIntro CONSTANT)
    Q_PROPERTY(int toolTipDelay MEMBER toolTipDelay CONSTANT)
    Q_PROPERTY(int breath MEMBER breath CONSTANT)
    Q_PROPERTY(int cellPulse MEMBER cellPulse CONSTANT)
    Q_PROPERTY(QVariantList chevron MEMBER chevron CONSTANT)
    Q_PROPERTY(int shimmer MEMBER shimmer CONSTANT)
    Q_PROPERTY(int message MEMBER message CONSTANT)
    Q_PROPERTY(int messageStay MEMBER messageStay CONSTANT)
    Q_PROPERTY(QVariantList curve MEMBER curve CONSTANT)
    Q_PROPERTY(QVariantList easeInOut MEMBER easeInOut CONSTANT)

public:
    int press = 100;        // the fill of a pressed button
    int hover = 120;        // hover and selection of controls
    int reveal = 140;       // small things that come and go, a tile that lands
    int overlay = 180;      // overlays above the screens
    int step = 260;         // one step of a list or a carousel
    int toolIn = 380;       // a tool's screen comes
    int toolOut = 280;      // and goes
    int afterIntro = 650;   // the program comes out from behind the intro
    int toolTipDelay = 600; // from resting on an item to its tool tip
    int breath = 2600;      // a halo's way up, and its way down
    int cellPulse = 325;    // a waiting cell's way up, and its way down
    // When each cell of the waiting mark starts, row by row: the pulse runs from the middle of the left edge outward.
    QVariantList chevron{90, 180, 270, 0, 90, 180, 90, 180, 270};
    int shimmer = 1400;     // a gleam's way across a text
    int message = 350;      // one waiting message gives way to the next
    int messageStay = 2400; // each of them stays this long
    // As Easing.bezierCurve takes it: the two control points, then the end.
    QVariantList curve{0.2, 0.8, 0.2, 1.0, 1.0, 1.0};
    // For what swings to and fro by itself: breath, cellPulse, message. The house curve would jerk at each turn.
    QVariantList easeInOut{0.42, 0.0, 0.58, 1.0, 1.0, 1.0};
};

// The design values that every view reads: the palette of the current theme, whether decoration moves, the motion
// scale and the type scale. One object for the whole program; main thread.
class LK : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // Theme and Appearance share names: QML writes LK.Theme.Dark.
    Q_CLASSINFO("RegisterEnumClassesUnscoped", "false")
    Q_PROPERTY(larkspan::LKPalette palette READ palette NOTIFY themeChanged)
    Q_PROPERTY(larkspan::LK::Theme theme READ theme NOTIFY themeChanged)
    Q_PROPERTY(bool isChangingTheme READ isChangingTheme NOTIFY isChangingThemeChanged)
    Q_PROPERTY(bool boringMode READ boringMode NOTIFY boringModeChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(larkspan::LKMotionScale motion READ motion CONSTANT)

public:
    // QML reaches only names in upper case.
    enum class Theme { Light, Dark };
    Q_ENUM(Theme)
    // The user's choice. Its cases aren't named as the themes are: QML sees the cases of both under LK.
    enum class Appearance { AlwaysDark, AlwaysLight, FollowSystem };
    Q_ENUM(Appearance)

    // The stored form: "dark", "light", "system". None for any other text.
    static QString rawValue(Appearance appearance);
    static std::optional<Appearance> appearanceFromRawValue(const QString &rawValue);

    // The one that QML sees; it lives as long as the process. Dark until the program says otherwise.
    static LK &instance();
    static LK *create(QQmlEngine *, QJSEngine *);

    [[nodiscard]] const LKPalette &palette() const { return paletteOf(m_theme); }
    static const LKPalette &paletteOf(Theme theme);
    [[nodiscard]] Theme theme() const { return m_theme; }
    void setTheme(Theme theme);
    // True while themeChanged is delivered, in which time no colour may move to its new value instead of taking it.
    [[nodiscard]] bool isChangingTheme() const { return m_isChangingTheme; }
    [[nodiscard]] bool boringMode() const { return m_boringMode; }
    void setBoringMode(bool boring);
    // True if the desktop asks for less motion. The program sets it, from SystemMotion.
    [[nodiscard]] bool reducedMotion() const { return m_reducedMotion; }
    void setReducedMotion(bool reduced);
    [[nodiscard]] LKMotionScale motion() const { return {}; }

    // The house face. points: of the type scale, the same length as a point of the layout whatever the display's text
    // resolution; weight: one of Font's.
    Q_INVOKABLE QFont font(double points, int weight = QFont::Normal) const;

    // The text for a template's own text property, in which an ampersand would mark a shortcut.
    Q_INVOKABLE QString literal(QString text) const;

    // Returns the colour that is seen where one is over another; both may be translucent.
    Q_INVOKABLE QColor over(const QColor &top, const QColor &below) const;

    // Writes a control's property as the user's doing. Unlike an assignment in QML it leaves a binding of the property
    // in place, so that what is bound both ways stays bound.
    Q_INVOKABLE void put(QObject *control, const QString &property, const QVariant &value) const;

    // Returns the z for a popup that belongs to an item: that of the popup which contains the item, 0 outside of one.
    Q_INVOKABLE double layerOf(const QQuickItem *item) const;

Q_SIGNALS:
    void themeChanged();
    void isChangingThemeChanged();
    void boringModeChanged();
    void reducedMotionChanged();

private:
    LK(); // not public: QML would make one of its own instead of asking create()

    Theme m_theme = Theme::Dark;
    bool m_isChangingTheme = false;
    bool m_boringMode = false;
    bool m_reducedMotion = false;
    QString m_family; // empty for the desktop's own
};

} // namespace larkspan

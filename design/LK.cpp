#include "design/LK.h"

#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtQml/QQmlEngine>

#include "design/LKAccessible.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr double typographicPointsPerInch = 72.0;
constexpr double usualDotsPerInch = 96.0;

// The desktop's interface font. Where no desktop names one, fontconfig's plain default, which is wide, gives way to a
// face that is drawn for interfaces. Its variable form has a name of its own from version 4 on.
QString interfaceFamily()
{
    const bool isDesktopsChoice = QGuiApplication::font().family() != "Sans Serif"_L1;
    if (isDesktopsChoice) {
        return {};
    }
    for (const QString &family : {u"Inter"_s, u"Inter Variable"_s}) {
        if (QFontDatabase::hasFamily(family)) {
            return family;
        }
    }
    return {};
}

} // namespace

LK::LK() : m_family(interfaceFamily()) {}

LK &LK::instance()
{
    static LK design;
    return design;
}

LK *LK::create(QQmlEngine *engine, QJSEngine *)
{
    LKAccessible::install(*engine);
    QQmlEngine::setObjectOwnership(&instance(), QQmlEngine::CppOwnership);
    return &instance();
}

QString LK::rawValue(Appearance appearance)
{
    switch (appearance) {
    case Appearance::AlwaysDark:
        return u"dark"_s;
    case Appearance::AlwaysLight:
        return u"light"_s;
    case Appearance::FollowSystem:
        return u"system"_s;
    }
    Q_UNREACHABLE();
}

std::optional<LK::Appearance> LK::appearanceFromRawValue(const QString &rawValue)
{
    for (const Appearance appearance : {Appearance::AlwaysDark, Appearance::AlwaysLight, Appearance::FollowSystem}) {
        if (LK::rawValue(appearance) == rawValue) {
            return appearance;
        }
    }
    return std::nullopt;
}

const LKPalette &LK::paletteOf(Theme theme)
{
    return theme == Theme::Light ? LKPalette::light() : LKPalette::dark();
}

void LK::setTheme(Theme theme)
{
    if (m_theme != theme) {
        m_isChangingTheme = true;
        Q_EMIT isChangingThemeChanged();
        m_theme = theme;
        Q_EMIT themeChanged();
        m_isChangingTheme = false;
        Q_EMIT isChangingThemeChanged();
    }
}

void LK::setBoringMode(bool boring)
{
    if (m_boringMode != boring) {
        m_boringMode = boring;
        Q_EMIT boringModeChanged();
    }
}

void LK::setReducedMotion(bool reduced)
{
    if (m_reducedMotion != reduced) {
        m_reducedMotion = reduced;
        Q_EMIT reducedMotionChanged();
    }
}

QFont LK::font(double points, int weight) const
{
    QFont font = QGuiApplication::font();
    if (!m_family.isEmpty()) {
        font.setFamily(m_family);
    }
    // Sizes in whole pixels would lose the half points.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dotsPerInch = screen ? screen->logicalDotsPerInchY() : usualDotsPerInch;
    font.setPointSizeF(points * typographicPointsPerInch / dotsPerInch);
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

QString LK::literal(QString text) const
{
    return text.replace(u'&', u"&&"_s);
}

QColor LK::over(const QColor &top, const QColor &below) const
{
    const float shown = below.alphaF() * (1 - top.alphaF()); // of the lower one
    const float alpha = top.alphaF() + shown;
    if (alpha <= 0) {
        return Qt::transparent;
    }
    const auto mixed = [&](float ofTop, float ofBelow) { return (ofTop * top.alphaF() + ofBelow * shown) / alpha; };
    return QColor::fromRgbF(mixed(top.redF(), below.redF()), mixed(top.greenF(), below.greenF()),
                            mixed(top.blueF(), below.blueF()), alpha);
}

void LK::put(QObject *control, const QString &property, const QVariant &value) const
{
    control->setProperty(property.toUtf8().constData(), value);
}

double LK::layerOf(const QQuickItem *item) const
{
    for (; item != nullptr; item = item->parentItem()) {
        if (item->parentItem() != nullptr && item->parentItem()->inherits("QQuickOverlay")) {
            return item->z();
        }
    }
    return 0;
}

} // namespace larkspan

#include "gallery/Gallery.h"

#include <QtQml/QQmlEngine>

#include "design/Symbols.h"
#include "sound/SoundEngine.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

Gallery &Gallery::instance()
{
    static Gallery gallery;
    return gallery;
}

Gallery *Gallery::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&instance(), QQmlEngine::CppOwnership);
    return &instance();
}

QStringList Gallery::pages()
{
    return {u"Colours"_s,          u"Type"_s,           u"Icons"_s,       u"Marks"_s,         u"Surfaces"_s,
            u"LKText"_s,           u"LKPressable"_s,    u"LKButton"_s,    u"LKBadge"_s,       u"LKDropdown"_s,
            u"LKToggle"_s,         u"LKSegmented"_s,    u"LKTextField"_s, u"LKSettingsRow"_s, u"LKSidebarRow"_s,
            u"LKProgressBar"_s,    u"LKEmptyState"_s,   u"LKMenu"_s,      u"LKToolTip"_s,     u"LKSpotlightCard"_s,
            u"LKAIGlowModifier"_s, u"LKLoadingState"_s, u"Backdrops"_s,   u"Intro"_s,         u"Sound"_s};
}

QStringList Gallery::symbols()
{
    return symbolNames();
}

QUrl Gallery::urlOf(const QString &page)
{
    return QUrl(u"qrc:/qt/qml/Larkspan/Gallery/%1Page.qml"_s.arg(page));
}

void Gallery::show(const GalleryOptions &options)
{
    setDark(options.theme == LK::Theme::Dark);
    setBoring(options.boring);
    setReducedMotion(options.still);
    if (!options.page.isEmpty()) {
        setPage(options.page);
    }
}

void Gallery::setPage(const QString &page)
{
    if (m_page != page && pages().contains(page)) {
        m_page = page;
        Q_EMIT pageChanged();
    }
}

void Gallery::setDark(bool dark)
{
    LK::instance().setTheme(dark ? LK::Theme::Dark : LK::Theme::Light);
    Q_EMIT lookChanged();
}

void Gallery::setBoring(bool boring)
{
    LK::instance().setBoringMode(boring);
    Q_EMIT lookChanged();
}

void Gallery::setReducedMotion(bool reduced)
{
    LK::instance().setReducedMotion(reduced);
    Q_EMIT lookChanged();
}

void Gallery::playTick()
{
    SoundEngine::shared().playTick(SoundCue::tick());
}

void Gallery::playChord()
{
    SoundEngine::shared().play(SoundCue::resultsChord());
}

void Gallery::playChime()
{
    SoundEngine::shared().play(SoundCue::introChime());
}

} // namespace larkspan

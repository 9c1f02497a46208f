#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "gallery/GalleryOptions.h"

class QJSEngine;
class QQmlEngine;

namespace larkspan {

// The gallery's page and look; its switches change the look of the whole program. Main thread.
class Gallery : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QStringList pages READ pages CONSTANT)
    Q_PROPERTY(QStringList symbols READ symbols CONSTANT)
    Q_PROPERTY(QString page READ page WRITE setPage NOTIFY pageChanged)
    Q_PROPERTY(QUrl pageUrl READ pageUrl NOTIFY pageChanged)
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY lookChanged)
    Q_PROPERTY(bool reducedMotion READ isReducedMotion WRITE setReducedMotion NOTIFY lookChanged)
    Q_PROPERTY(bool boring READ isBoring WRITE setBoring NOTIFY lookChanged)

public:
    // The one that QML sees; it lives as long as the process.
    static Gallery &instance();
    static Gallery *create(QQmlEngine *, QJSEngine *);

    // The names of all pages, in the order of the side list.
    [[nodiscard]] static QStringList pages();
    [[nodiscard]] static QStringList symbols();
    [[nodiscard]] static QUrl urlOf(const QString &page);

    // Takes the looks and the page; size and scale are the window's business.
    void show(const GalleryOptions &options);

    [[nodiscard]] QString page() const { return m_page; }
    void setPage(const QString &page);
    [[nodiscard]] QUrl pageUrl() const { return urlOf(m_page); }
    [[nodiscard]] bool isDark() const { return LK::instance().theme() == LK::Theme::Dark; }
    void setDark(bool dark);
    [[nodiscard]] bool isReducedMotion() const { return LK::instance().reducedMotion(); }
    void setReducedMotion(bool reduced);
    [[nodiscard]] bool isBoring() const { return LK::instance().boringMode(); }
    void setBoring(bool boring);

    Q_INVOKABLE void playTick();
    Q_INVOKABLE void playChord();
    Q_INVOKABLE void playChime();

Q_SIGNALS:
    void pageChanged();
    void lookChanged();

private:
    Gallery() = default; // not public: QML would make one of its own instead of asking create()

    QString m_page = pages().constFirst();
};

} // namespace larkspan

// gallery: every control and surface of the house in all its states, for whoever works on them.
#include <cstdio>

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickView>

#include "design/SystemMotion.h"
#include "gallery/Gallery.h"

using namespace Qt::Literals::StringLiterals;

Q_IMPORT_QML_PLUGIN(Larkspan_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_GalleryPlugin)

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const auto options = larkspan::GalleryOptions::parse(arguments);
    if (!options) {
        std::fputs(options.error().toLocal8Bit().constData(), stderr);
        return 2;
    }
    qputenv("QT_SCALE_FACTOR", QByteArray::number(options->scale)); // before the application, which reads it once

    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(u"Larkspan"_s);
    QGuiApplication::setApplicationName(u"Larkspan gallery"_s);
    auto &gallery = larkspan::Gallery::instance();
    gallery.show(*options);
    const larkspan::SystemMotion motion;
    QObject::connect(&motion, &larkspan::SystemMotion::changed, &gallery,
                     [&] { gallery.setReducedMotion(motion.isReduced() || options->still); });
    QQuickView view;
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    view.setTitle(u"Gallery"_s);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(u"qrc:/qt/qml/Larkspan/Gallery/GalleryView.qml"_s));
    if (view.status() != QQuickView::Ready) {
        return 1;
    }
    view.resize(options->size);
    view.show();
    return QGuiApplication::exec();
}

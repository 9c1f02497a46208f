#include "gallery/GalleryOptions.h"

#include <algorithm>

#include <QtCore/QCommandLineParser>

#include "gallery/Gallery.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

tl::expected<GalleryOptions, QString> GalleryOptions::parse(const QStringList &arguments)
{
    const QCommandLineOption page(u"page"_s, u"Opens this page: %1."_s.arg(Gallery::pages().join(u", "_s)), u"NAME"_s);
    const QCommandLineOption theme(u"theme"_s, u"dark or light."_s, u"THEME"_s, u"dark"_s);
    const QCommandLineOption scale(u"scale"_s, u"Scale of the display: 1, 1.25, 1.5, 2."_s, u"N"_s, u"1"_s);
    const QCommandLineOption size(u"size"_s, u"Size of the window in points."_s, u"WxH"_s, u"1040x720"_s);
    const QCommandLineOption boring(u"boring"_s, u"Without decorative motion."_s);
    const QCommandLineOption still(u"still"_s, u"Boring, and with reduced motion: nothing moves by itself."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Prints this."_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Shows every control and surface of the house in all its states."_s);
    parser.addOptions({page, theme, scale, size, boring, still, help});
    if (!parser.parse(QStringList{u"gallery"_s} + arguments)) {
        return tl::unexpected(parser.errorText() + u'\n');
    }
    if (parser.isSet(help)) {
        return tl::unexpected(parser.helpText());
    }

    GalleryOptions options;
    options.page = parser.value(page);
    if (!options.page.isEmpty() && !Gallery::pages().contains(options.page)) {
        return tl::unexpected(u"There is no page %1.\n"_s.arg(options.page));
    }
    if (parser.value(theme) != "dark"_L1 && parser.value(theme) != "light"_L1) {
        return tl::unexpected(u"A theme is dark or light.\n"_s);
    }
    options.theme = parser.value(theme) == "light"_L1 ? LK::Theme::Light : LK::Theme::Dark;
    options.scale = parser.value(scale).toDouble();
    if (options.scale != std::clamp(options.scale, 0.5, 4.0)) { // and so not a number
        return tl::unexpected(u"A scale lies between 0.5 and 4.\n"_s);
    }
    const QStringList sides = parser.value(size).split(u'x');
    options.size = sides.size() == 2 ? QSize(sides.at(0).toInt(), sides.at(1).toInt()) : QSize();
    if (options.size.isEmpty()) {
        return tl::unexpected(u"A size is written as 1040x720.\n"_s);
    }
    options.still = parser.isSet(still);
    options.boring = options.still || parser.isSet(boring);
    return options;
}

} // namespace larkspan

// The gallery is whole: every type of the design that is written in QML is on one of its pages.
#include <gmock/gmock.h>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include "gallery/Gallery.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

// Moves or helps what draws; nothing by itself.
const QSet<QString> parts{u"IntroHalf"_s, u"LKColorBehavior"_s, u"LKColorMotion"_s, u"LKNumberMotion"_s};

QStringList designTypes()
{
    const QRegularExpression line(u"^(\\w+) [\\d.]+ \\w+\\.qml$"_s, QRegularExpression::MultilineOption);
    QStringList types;
    for (const auto &match : line.globalMatch(textOf(u":/qt/qml/Larkspan/Design/qmldir"_s))) {
        types.append(match.captured(1));
    }
    types.removeDuplicates();
    return types;
}

} // namespace

TEST(GalleryPages, ShowEveryTypeOfTheDesign)
{
    QString pages;
    for (const QString &page : Gallery::pages()) {
        pages += textOf(u':' + Gallery::urlOf(page).path());
    }
    const QStringList types = designTypes();
    EXPECT_TRUE(types.contains(u"LKButton"_s));
    for (const QString &type : types) {
        const bool isShown = pages.contains(QRegularExpression(u"\\b%1 \\{"_s.arg(type)));
        EXPECT_NE(isShown, parts.contains(type)) << type.toStdString();
    }
}

#include "tests/design/Pictures.h"

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>
#include <QtCore/QDir>

using namespace Qt::Literals::StringLiterals;

namespace larkspan::test {

namespace {

QString storedAt(const QString &name)
{
    return QStringLiteral(LARKSPAN_PICTURES "/%1.png").arg(name);
}

} // namespace

PictureDifference compare(const QImage &one, const QImage &other)
{
    PictureDifference difference;
    if (one.size() != other.size()) {
        difference.sameSize = false;
        return difference;
    }
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            const int off =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
            difference.largest = std::max(difference.largest, off);
            if (off > PictureDifference::channelTolerance) {
                ++difference.pixels;
                difference.where |= QRect(x, y, 1, 1);
            }
        }
    }
    return difference;
}

QImage storedPicture(const QString &name)
{
    return QImage(storedAt(name));
}

void expectPicture(const QImage &drawn, const QString &name)
{
    if (qEnvironmentVariableIntValue("LARKSPAN_RENEW_PICTURES") == 1) {
        EXPECT_TRUE(drawn.save(storedAt(name), "PNG"));
        return;
    }
    const QImage stored = storedPicture(name);
    if (stored.isNull()) {
        ADD_FAILURE() << "There is no picture " << name.toStdString() << ": store it with LARKSPAN_RENEW_PICTURES=1";
        return;
    }
    const PictureDifference difference = compare(drawn, stored);
    if (!difference.isAlike()) {
        const QString kept = QDir::current().filePath(u"drawn-%1.png"_s.arg(name));
        drawn.save(kept, "PNG");
        const QRect where = difference.where;
        ADD_FAILURE() << name.toStdString() << " is not as stored: "
                      << (difference.sameSize
                              ? std::to_string(difference.pixels) + " pixels within " + std::to_string(where.x()) +
                                    ", " + std::to_string(where.y()) + ", " + std::to_string(where.width()) + "×" +
                                    std::to_string(where.height()) + ", by up to " + std::to_string(difference.largest)
                              : std::string("another size"))
                      << "; what was drawn is in " << kept.toStdString();
    }
}

} // namespace larkspan::test

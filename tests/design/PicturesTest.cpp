// Every page of the gallery against its stored pictures, in both themes: at rest, and what can be touched under the
// pointer, pressed, and with the keyboard's focus. Drawn in memory by Qt's own rasterizer with one font that is named,
// so that neither a graphics driver nor a desktop's settings have a part in them.
#include "tests/design/Pictures.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QVersionNumber>
#include <QtGui/QFontInfo>
#include <QtGui/QPainter>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QTest>

#include "gallery/Gallery.h"
#include "tests/support/Layout.h"
#include "tests/support/Motion.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

Q_IMPORT_QML_PLUGIN(Larkspan_GalleryPlugin)

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize pageSize(760, 640);
constexpr QPoint nowhere(pageSize.width() - 2, pageSize.height() - 2);

std::string documentOf(const QString &page)
{
    return QStringLiteral("import QtQuick\nimport Larkspan.Design\n"
                          "Rectangle { width: %2; height: %3; color: LK.palette.surfaceWindow;"
                          "Loader { x: 20; y: 16; width: 720; source: '%1' } }")
        .arg(Gallery::urlOf(page).toString())
        .arg(pageSize.width())
        .arg(pageSize.height())
        .toStdString();
}

void collect(QQuickItem *item, const auto &matches, QList<QQuickItem *> &found)
{
    if (matches(item)) {
        found.append(item);
    }
    for (QQuickItem *child : item->childItems()) {
        collect(child, matches, found);
    }
}

// True unless a tool tip is wanted that hasn't come yet.
bool hasItsToolTips(const Scene &scene)
{
    QList<QQuickItem *> late;
    collect(
        scene.root(),
        [](const QQuickItem *item) {
            return QByteArrayView(item->metaObject()->className()).startsWith("LKToolTip") &&
                   item->property("wanted").toBool() && !item->property("told").toBool();
        },
        late);
    return late.isEmpty();
}

// Returns the picture once nothing moves any more. The window draws a few frames before: the item under the pointer is
// told between frames, and its motion takes some too.
QImage settled(const Scene &scene)
{
    constexpr int few = 4;
    const FrameCount frames(scene.window());
    QImage now;
    EXPECT_TRUE(waitUntil([&] {
        scene.window().update();
        const QImage last = std::exchange(now, scene.window().grabWindow());
        return frames.drawn() >= few && movingAnimations(scene.window()) == 0 && now == last;
    }));
    return now.convertToFormat(QImage::Format_RGB32);
}

QList<QQuickItem *> touchableSubjects(const Scene &scene)
{
    QList<QQuickItem *> samples;
    collect(
        scene.root(),
        [](const QQuickItem *item) {
            return item->objectName() == "sample"_L1 && item->property("interactive").toBool();
        },
        samples);
    QList<QQuickItem *> subjects;
    for (const QQuickItem *sample : samples) {
        subjects.append(sample->property("subjectItem").value<QQuickItem *>());
    }
    return subjects;
}

// The time that has passed is never the same twice.
void hideClocks(const Scene &scene)
{
    QList<QQuickItem *> states;
    collect(
        scene.root(),
        [](const QQuickItem *item) {
            return QByteArrayView(item->metaObject()->className()).startsWith("LKLoadingState");
        },
        states);
    for (QQuickItem *state : states) {
        QList<QQuickItem *> clocks;
        collect(
            state,
            [](const QQuickItem *item) {
                return QByteArrayView(item->metaObject()->className()).startsWith("LKDigits");
            },
            clocks);
        for (QQuickItem *clock : clocks) {
            clock->setOpacity(0);
        }
    }
}

// Returns the lower end of the last item that is shown, so that a short page makes a small picture.
int bottomOf(const QImage &page)
{
    const QRgb ground = page.pixel(0, 0);
    for (int y = page.height() - 1; y > 0; --y) {
        for (int x = 0; x < page.width(); ++x) {
            if (page.pixel(x, y) != ground) {
                return std::min(page.height(), y + 12);
            }
        }
    }
    return page.height();
}

// One row for each that can be touched: under the pointer, pressed, with the keyboard's focus.
QImage statesOf(Scene &scene, const QList<QQuickItem *> &subjects)
{
    QList<QImage> rows;
    int width = 0;
    int height = 0;
    for (QQuickItem *subject : subjects) {
        constexpr int margin = 8;
        const QRect place =
            QRectF(subject->mapToScene({}), subject->size()).toAlignedRect().adjusted(-margin, -margin, margin, margin);
        QImage row(3 * place.width(), place.height(), QImage::Format_RGB32);
        QPainter painter(&row);
        QQuickWindow &window = scene.window();
        QTest::mouseMove(&window, middleOf(subject));
        painter.drawImage(0, 0, settled(scene), place.x(), place.y(), place.width(), place.height());
        QTest::mousePress(&window, Qt::LeftButton, {}, middleOf(subject));
        painter.drawImage(place.width(), 0, settled(scene), place.x(), place.y(), place.width(), place.height());
        QTest::mouseMove(&window, nowhere);
        QTest::mouseRelease(&window, Qt::LeftButton, {}, nowhere);
        QTest::keyClick(&window, Qt::Key_Escape);
        // Away first: it may have the focus already, by the pointer, which shows no ring.
        QQuickItem *target = subject->activeFocusOnTab() ? subject : subject->nextItemInFocusChain();
        scene.root()->forceActiveFocus();
        target->forceActiveFocus(Qt::TabFocusReason);
        painter.drawImage(2 * place.width(), 0, settled(scene), place.x(), place.y(), place.width(), place.height());
        scene.root()->forceActiveFocus();
        painter.end();
        width = std::max(width, row.width());
        height += row.height();
        rows.append(row);
    }
    QImage states(width, height, QImage::Format_RGB32);
    states.fill(LK::instance().palette().surfaceWindow);
    QPainter painter(&states);
    int y = 0;
    for (const QImage &row : rows) {
        painter.drawImage(0, y, row);
        y += row.height();
    }
    return states;
}

class Pictures : public testing::TestWithParam<std::tuple<QString, LK::Theme>>
{
protected:
    Pictures()
    {
        LK::instance().setTheme(std::get<LK::Theme>(GetParam()));
        LK::instance().setBoringMode(true);
        LK::instance().setReducedMotion(true);
    }
    ~Pictures() override
    {
        LK::instance().setTheme(LK::Theme::Dark);
        LK::instance().setBoringMode(false);
        LK::instance().setReducedMotion(false);
    }
};

QString nameOf(const QString &page, LK::Theme theme)
{
    return page + (theme == LK::Theme::Dark ? "-dark"_L1 : "-light"_L1);
}

// Other versions of Qt and of the font draw other edges.
bool isDrawnAsStored()
{
    return QLibraryInfo::version() < QVersionNumber(6, 5) && QFontInfo(LK::instance().font(12)).family() == u"Inter"_s;
}

std::string testNameOf(const testing::TestParamInfo<Pictures::ParamType> &info)
{
    return nameOf(std::get<QString>(info.param), std::get<LK::Theme>(info.param)).replace(u'-', u'_').toStdString();
}

std::vector<QString> pages()
{
    const QStringList all = Gallery::pages();
    return {all.begin(), all.end()};
}

// The picture that the two tests of the tolerance below start from.
const QString button = u"LKButton-dark"_s;
constexpr QRect firstButton(18, 82, 92, 28); // about: some ground around it

} // namespace

TEST_P(Pictures, AreAsStored)
{
    const auto &[page, theme] = GetParam();
    Scene scene(documentOf(page), {}, pageSize);
    QTest::mouseMove(&scene.window(), nowhere);
    hideClocks(scene);
    EXPECT_THAT(strangeCorners(*scene.root()), testing::IsEmpty());
    EXPECT_TRUE(waitUntil([&] { return hasItsToolTips(scene); }));
    const QImage drawn = settled(scene);
    QImage states;
    if (const QList<QQuickItem *> subjects = touchableSubjects(scene); !subjects.isEmpty()) {
        LK::instance().setBoringMode(false); // decoration under the pointer is part of it
        states = statesOf(scene, subjects);
    }
    if (!isDrawnAsStored()) {
        GTEST_SKIP() << "the pictures are drawn with Qt 6.4 and Inter 3, as Debian 12 has them";
    }
    expectPicture(drawn.copy(0, 0, drawn.width(), bottomOf(drawn)), nameOf(page, theme));
    if (!states.isNull()) {
        expectPicture(states, nameOf(page, theme) + u"-states"_s);
    }
}

INSTANTIATE_TEST_SUITE_P(Gallery, Pictures,
                         testing::Combine(testing::ValuesIn(pages()),
                                          testing::Values(LK::Theme::Dark, LK::Theme::Light)),
                         testNameOf);

TEST(InterfaceFont, IsInterByEitherOfItsNames)
{
    EXPECT_THAT(QFontInfo(LK::instance().font(12)).family(), testing::AnyOf(u"Inter"_s, u"Inter Variable"_s))
        << "is fonts-inter-variable installed?";
}

TEST(PictureTolerance, FailsAShiftOfTwoPixelsOfTheWholeOrOfOneControl)
{
    const QImage stored = storedPicture(button);
    ASSERT_FALSE(stored.isNull());
    EXPECT_TRUE(compare(stored, stored).isAlike());
    const auto shifted = [&stored](QRect part, QPoint by) {
        QImage picture = stored;
        QPainter(&picture).drawImage(part.topLeft() + by, stored, part);
        return picture;
    };
    for (const QPoint by : {QPoint(2, 0), QPoint(-2, 0), QPoint(0, 2), QPoint(0, -2)}) {
        EXPECT_FALSE(compare(shifted(stored.rect(), by), stored).isAlike());
        EXPECT_FALSE(compare(shifted(firstButton, by), stored).isAlike());
    }
}

TEST(PictureTolerance, FailsAColourThatIsTheNextOneOfThePalette)
{
    const QImage stored = storedPicture(button).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(stored.isNull());
    const auto recoloured = [&stored](QColor from, QColor to) {
        QImage picture = stored;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) == from.rgb()) {
                    picture.setPixel(x, y, to.rgb());
                }
            }
        }
        return picture;
    };
    const LKPalette &palette = LKPalette::dark();
    EXPECT_FALSE(compare(recoloured(palette.accentSolid, palette.accentSolidHover), stored).isAlike());
    EXPECT_FALSE(compare(recoloured(palette.textPrimary, LKPalette::light().surfaceSidebar), stored).isAlike());
    // And the same drawn for real: a page of the other theme's accent.
    EXPECT_FALSE(compare(storedPicture(u"LKBadge-dark"_s), storedPicture(u"LKBadge-light"_s)).isAlike());
}

TEST(PictureTolerance, LetsARoundingPass)
{
    QImage picture = storedPicture(button).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(picture.isNull());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const int off = (x + y) % 3 - 1;
            const auto near = [off](int channel) { return std::clamp(channel + off, 0, 255); };
            picture.setPixel(x, y, qRgb(near(qRed(pixel)), near(qGreen(pixel)), near(qBlue(pixel))));
        }
    }
    EXPECT_TRUE(compare(picture, storedPicture(button)).isAlike());
}

TEST(PictureTolerance, FailsAnotherSize)
{
    const QImage stored = storedPicture(button);
    EXPECT_FALSE(compare(stored.copy(0, 0, stored.width() - 1, stored.height()), stored).isAlike());
}

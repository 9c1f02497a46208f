// Drops on the landing.
#include <QtCore/QMimeData>

#include "design/LKPalette.h"
#include "tests/screens/BinnacleViewFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Drops on the landing, as the display server would.
class DropTest : public BinnacleViewTest
{
protected:
    static QUrl local(const std::filesystem::path &path)
    {
        return QUrl::fromLocalFile(QString::fromStdString(path.string()));
    }
    // Returns whether it was taken.
    bool drop(const QMimeData &mime)
    {
        const QPoint at = middleOf(scene->root());
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
        QGuiApplication::sendEvent(&scene->window(), &enter);
        QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
        dropped.ignore();
        QGuiApplication::sendEvent(&scene->window(), &dropped);
        return dropped.isAccepted();
    }
    bool drop(const QList<QUrl> &urls)
    {
        QMimeData mime;
        mime.setUrls(urls);
        return drop(mime);
    }
};

} // namespace

TEST_F(DropTest, OfAPathThatVanishedSortsWhereItLay)
{
    show();
    EXPECT_TRUE(drop({local(folder / "gone.mov")}));
    EXPECT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_TRUE(shows(u"No video files found in "_s + shoot.lastPathComponent()));
}

TEST_F(DropTest, OfNothingAndOfTextIsRefused)
{
    show();
    EXPECT_FALSE(drop(QMimeData()));
    EXPECT_FALSE(drop(QList<QUrl>()));
    QMimeData text;
    text.setText(u"/home"_s);
    EXPECT_FALSE(drop(text));
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
}

TEST_F(DropTest, OfARemoteUrlIsTakenAndLeavesTheLanding)
{
    show();
    EXPECT_TRUE(drop({QUrl(u"https://127.0.0.1/shoot.mov"_s)}));
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    EXPECT_TRUE(shows(u"Drop a shoot folder here"_s));
}

TEST_F(DropTest, HoveringFramesTheLanding)
{
    show();
    QMimeData mime;
    mime.setUrls({local(folder.path())});
    const QPoint at = middleOf(scene->root());
    QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
    QGuiApplication::sendEvent(&scene->window(), &enter);
    const QQuickItem *frame = findNamed(scene->root(), u"dropFrame"_s);
    EXPECT_TRUE(waitUntil([&] { return frame->opacity() == 1; }));
    const auto isAccent = [&](int inside) {
        const QPoint corner = frame->mapToScene(QPointF()).toPoint();
        const QColor color = scene->window().grabWindow().pixelColor(corner + QPoint(inside, inside));
        const QColor accent = LKPalette::dark().accent;
        // A colour that fades in by software may stay a step away.
        return std::abs(color.red() - accent.red()) <= 2 && std::abs(color.green() - accent.green()) <= 2 &&
               std::abs(color.blue() - accent.blue()) <= 2;
    };
    // Square, and two points wide.
    EXPECT_TRUE(waitUntil([&] { return isAccent(0) && isAccent(1) && !isAccent(2); }));
    QDragLeaveEvent leave;
    QGuiApplication::sendEvent(&scene->window(), &leave);
    EXPECT_TRUE(waitUntil([&] { return frame->opacity() == 0; }));
}

TEST_F(DropTest, OfAFolderSortsIt)
{
    makeClips({"kitchen 1"});
    show();
    EXPECT_TRUE(drop({local(folder.path())}));
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

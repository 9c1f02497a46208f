#include "tests/demo/Scenes.h"

#include <functional>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

using namespace Qt::Literals::StringLiterals;

namespace larkspan::demo {

namespace {

constexpr QSize landscape(1280, 720);
constexpr QSize portrait(720, 1280);

QImage drawn(QSize size, const std::function<void(QPainter &)> &draw)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    draw(painter);
    return picture;
}

QLinearGradient shade(const QRectF &area, const QColor &top, const QColor &bottom)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

// A box of furniture: lit from above, with a soft shadow below it.
void box(QPainter &p, const QRectF &area, const QColor &color, double radius = 4)
{
    p.setBrush(QColor(0, 0, 0, 45));
    p.drawEllipse(QRectF(area.left() - 12, area.bottom() - 12, area.width() + 24, 28));
    p.setBrush(shade(area, color.lighter(112), color.darker(118)));
    p.drawRoundedRect(area, radius, radius);
}

void polygon(QPainter &p, const QPolygonF &points, const QBrush &brush)
{
    p.setBrush(brush);
    p.drawPolygon(points);
}

void window(QPainter &p, const QRectF &area)
{
    p.setBrush(Qt::white);
    p.drawRect(area.adjusted(-10, -10, 10, 10));
    p.setBrush(shade(area, QColor(0x9fc9ee), QColor(0xdff0e0)));
    p.drawRect(area);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(area.center().x() - 4, area.top(), 8, area.height()));
}

// A back wall, two side walls in perspective, a ceiling and boards on the floor.
void room(QPainter &p, const QColor &wall, const QColor &floor)
{
    const QRectF back(220, 110, 840, 370);
    p.setBrush(shade(back, wall, wall.darker(106)));
    p.drawRect(back);
    polygon(p, {{0, 0}, {1280, 0}, back.topRight(), back.topLeft()}, wall.lighter(106));
    polygon(p, {{0, 0}, back.topLeft(), back.bottomLeft(), {0, 620}}, wall.darker(112));
    polygon(p, {{1280, 0}, back.topRight(), back.bottomRight(), {1280, 620}}, wall.darker(116));
    polygon(p, {{0, 620}, back.bottomLeft(), back.bottomRight(), {1280, 620}, {1280, 720}, {0, 720}},
            shade(QRectF(0, 480, 1280, 240), floor.darker(112), floor.lighter(108)));
    p.setPen(QPen(floor.darker(125), 2));
    for (int x = -600; x <= 1880; x += 130) {
        p.drawLine(QPointF(640 + (x - 640) * 0.45, 480), QPointF(x, 720));
    }
    p.setPen(Qt::NoPen);
}

void plant(QPainter &p, QPointF foot)
{
    box(p, QRectF(foot.x() - 28, foot.y() - 60, 56, 60), QColor(0xb5673f));
    p.setBrush(QColor(0x3f7d45));
    for (const double angle : {-60.0, -30.0, 0.0, 30.0, 60.0}) {
        p.save();
        p.translate(foot.x(), foot.y() - 55);
        p.rotate(angle);
        p.drawEllipse(QRectF(-16, -130, 32, 130));
        p.restore();
    }
}

void chair(QPainter &p, double x, double y)
{
    const QColor wood(0x8a5a33);
    box(p, QRectF(x, y - 150, 70, 90), wood);
    box(p, QRectF(x - 6, y - 70, 82, 16), wood.lighter(115));
    p.setBrush(wood.darker(120));
    p.drawRect(QRectF(x, y - 56, 9, 60));
    p.drawRect(QRectF(x + 61, y - 56, 9, 60));
}

void kitchen(QPainter &p)
{
    room(p, QColor(0xefe9df), QColor(0xb98b5e));
    for (int i = 0; i < 5; ++i) { // hanging cabinets
        box(p, QRectF(400 + i * 120, 130, 112, 110), QColor(0xf7f7f5));
    }
    p.setBrush(QColor(0xd9d4cb));
    p.drawRect(QRectF(400, 245, 600, 100));
    box(p, QRectF(390, 345, 620, 16), QColor(0x3b3b3f));
    for (int i = 0; i < 5; ++i) {
        box(p, QRectF(400 + i * 120, 361, 112, 150), QColor(0xf2f1ee));
    }
    box(p, QRectF(640, 361, 112, 150), QColor(0x55585d)); // oven
    p.setBrush(QColor(0x1d1f22));
    p.drawRoundedRect(QRectF(655, 405, 82, 80), 6, 6);
    p.setBrush(QColor(0xe8e8ea));
    p.drawRect(QRectF(655, 385, 82, 6));
    box(p, QRectF(240, 150, 150, 400), QColor(0xc9ccd1), 8); // refrigerator
    p.setBrush(QColor(0x8b8e93));
    p.drawRect(QRectF(240, 285, 150, 5));
    p.drawRoundedRect(QRectF(372, 200, 8, 70), 4, 4);
    p.drawRoundedRect(QRectF(372, 305, 8, 110), 4, 4);
    p.setBrush(QColor(0xaeb3b8)); // sink and its tap
    p.drawRoundedRect(QRectF(820, 336, 130, 14), 5, 5);
    p.setPen(QPen(QColor(0x9a9fa4), 8, Qt::SolidLine, Qt::RoundCap));
    p.drawArc(QRectF(868, 280, 50, 60), 0, 180 * 16);
    p.drawLine(QPointF(868, 310), QPointF(868, 340));
    p.setPen(Qt::NoPen);
    box(p, QRectF(430, 560, 520, 130), QColor(0xe9e6e0)); // island
    box(p, QRectF(415, 545, 550, 22), QColor(0x45454a));
}

void livingRoom(QPainter &p)
{
    room(p, QColor(0xe3e0d6), QColor(0xa97c50));
    window(p, QRectF(300, 160, 200, 190));
    box(p, QRectF(700, 190, 250, 145), QColor(0x141517), 6); // television
    box(p, QRectF(660, 400, 330, 70), QColor(0x8a6442));
    box(p, QRectF(260, 400, 520, 150), QColor(0x5c7a99), 26); // sofa
    box(p, QRectF(230, 450, 90, 160), QColor(0x547090), 26);
    box(p, QRectF(720, 450, 90, 160), QColor(0x547090), 26);
    box(p, QRectF(300, 500, 215, 80), QColor(0x6b8aab), 18);
    box(p, QRectF(520, 500, 215, 80), QColor(0x6b8aab), 18);
    box(p, QRectF(320, 445, 90, 80), QColor(0xd9a441), 16);
    box(p, QRectF(640, 445, 90, 80), QColor(0xd9d2c3), 16);
    box(p, QRectF(400, 630, 330, 50), QColor(0x6e4a2c), 8);
    plant(p, QPointF(1060, 620));
}

void bedroom(QPainter &p)
{
    room(p, QColor(0xdfe4ea), QColor(0xc2a07a));
    window(p, QRectF(270, 160, 150, 170));
    box(p, QRectF(430, 250, 520, 210), QColor(0x7b5434), 14); // headboard
    polygon(p, {{450, 420}, {930, 420}, {1030, 660}, {350, 660}},
            shade(QRectF(350, 420, 680, 240), Qt::white, QColor(0xd5dbe3)));
    polygon(p, {{405, 530}, {975, 530}, {1030, 660}, {350, 660}},
            shade(QRectF(350, 530, 680, 130), QColor(0x4f6f96), QColor(0x3d5a7d)));
    box(p, QRectF(350, 655, 680, 45), QColor(0x3a5474), 6);
    box(p, QRectF(475, 380, 190, 80), QColor(0xfafafa), 30);
    box(p, QRectF(715, 380, 190, 80), QColor(0xfafafa), 30);
    box(p, QRectF(980, 430, 120, 130), QColor(0x7b5434), 6);
    p.setBrush(QColor(0xf3e3b5));
    p.drawPolygon(QPolygonF{{1005, 360}, {1075, 360}, {1095, 415}, {985, 415}});
}

void bathroom(QPainter &p)
{
    room(p, QColor(0xd7e5e6), QColor(0x9aa5a8));
    box(p, QRectF(300, 170, 210, 160), QColor(0xeaf4f8), 8); // mirror
    box(p, QRectF(270, 385, 270, 26), QColor(0xfafafa), 10); // sink
    box(p, QRectF(285, 411, 240, 140), QColor(0x9c7a56));
    p.setPen(QPen(QColor(0x8f979c), 9, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(405, 350), QPointF(405, 385));
    p.drawLine(QPointF(405, 352), QPointF(430, 360));
    p.setPen(Qt::NoPen);
    box(p, QRectF(640, 330, 150, 120), QColor(0xfdfdfd), 14); // toilet: cistern, seat, foot
    box(p, QRectF(675, 520, 80, 110), QColor(0xf2f2f2), 20);
    p.setBrush(QColor(0xffffff));
    p.drawEllipse(QRectF(620, 440, 190, 120));
    p.setBrush(QColor(0xc9d3d6));
    p.drawEllipse(QRectF(655, 462, 120, 72));
    box(p, QRectF(860, 420, 330, 190), QColor(0xffffff), 60); // bathtub
    p.setBrush(QColor(0xcfe3ea));
    p.drawEllipse(QRectF(885, 425, 280, 50));
}

void diningRoom(QPainter &p)
{
    room(p, QColor(0xefe4d2), QColor(0x94673f));
    window(p, QRectF(780, 160, 190, 190));
    p.setPen(QPen(QColor(0x3a3a3a), 4));
    p.drawLine(QPointF(620, 60), QPointF(620, 200));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xf6d98a));
    p.drawPolygon(QPolygonF{{580, 200}, {660, 200}, {720, 260}, {520, 260}});
    chair(p, 420, 520);
    chair(p, 560, 510);
    chair(p, 700, 510);
    polygon(p, {{400, 470}, {860, 470}, {980, 570}, {290, 570}}, QColor(0xa4713f));
    box(p, QRectF(290, 568, 690, 22), QColor(0x85592f));
    p.setBrush(QColor(0x6d4826));
    p.drawRect(QRectF(320, 588, 22, 110));
    p.drawRect(QRectF(930, 588, 22, 110));
    for (const double x : {470.0, 600.0, 730.0}) {
        p.setBrush(Qt::white);
        p.drawEllipse(QRectF(x, 500, 90, 34));
    }
    chair(p, 180, 690);
    chair(p, 1030, 690);
}

void sky(QPainter &p)
{
    p.setBrush(shade(QRectF(0, 0, 1280, 420), QColor(0x5aa0e0), QColor(0xd6ebf7)));
    p.drawRect(QRectF(0, 0, 1280, 420));
    p.setBrush(shade(QRectF(0, 420, 1280, 300), QColor(0x6aa84f), QColor(0x4f8a3b)));
    p.drawRect(QRectF(0, 420, 1280, 300));
}

void house(QPainter &p, const QRectF &walls)
{
    p.setBrush(shade(walls, QColor(0xf0e7da), QColor(0xdccfbd)));
    p.drawRect(walls);
    polygon(p,
            {{walls.left() - 50, walls.top()},
             {walls.right() + 50, walls.top()},
             {walls.center().x(), walls.top() - walls.height() * 0.6}},
            QColor(0x7c4a3a));
    window(p, QRectF(walls.left() + 50, walls.top() + 60, 120, 90));
    window(p, QRectF(walls.right() - 170, walls.top() + 60, 120, 90));
    box(p, QRectF(walls.center().x() - 45, walls.bottom() - 150, 90, 150), QColor(0x5a3825));
}

void front(QPainter &p)
{
    sky(p);
    house(p, QRectF(330, 270, 620, 250));
    polygon(p, {{590, 520}, {690, 520}, {860, 720}, {420, 720}}, QColor(0xb9b4ab));
    plant(p, QPointF(290, 560));
    plant(p, QPointF(1000, 560));
}

void pool(QPainter &p)
{
    sky(p);
    house(p, QRectF(760, 230, 420, 200));
    polygon(p, {{180, 470}, {1000, 470}, {1200, 690}, {40, 690}}, QColor(0xd8cfbf));
    polygon(p, {{250, 495}, {930, 495}, {1080, 660}, {150, 660}},
            shade(QRectF(0, 495, 1280, 165), QColor(0x4ec3df), QColor(0x1f8fb8)));
    p.setPen(QPen(QColor(255, 255, 255, 110), 4));
    for (int i = 0; i < 6; ++i) {
        p.drawArc(QRectF(260 + i * 120, 530 + (i % 3) * 35, 110, 22), 20 * 16, 140 * 16);
    }
    p.setPen(Qt::NoPen);
}

void fromAbove(QPainter &p)
{
    p.fillRect(QRect(QPoint(), landscape), QColor(0x6c8f56));
    p.fillRect(QRect(0, 300, 1280, 90), QColor(0x6e6e70));
    for (int i = 0; i < 4; ++i) {
        for (const int y : {60, 450}) {
            const QRectF roof(70 + i * 310, y, 210, 180);
            box(p, roof, QColor(i % 2 ? 0x8c5a44 : 0x6f6259));
            polygon(p, {roof.topLeft(), roof.topRight(), {roof.center().x(), roof.center().y()}},
                    QColor(255, 255, 255, 28));
            p.setBrush(QColor(0x3f6b36));
            p.drawEllipse(QPointF(roof.right() + 45, roof.center().y()), 34, 34);
        }
    }
    p.setBrush(QColor(0x35a7c9));
    p.drawRoundedRect(QRectF(330, 640, 120, 60), 18, 18);
}

void hallway(QPainter &p)
{
    p.setBrush(QColor(0xe9e4da));
    p.drawRect(QRectF(QPointF(), portrait));
    polygon(p, {{0, 1280}, {720, 1280}, {470, 760}, {250, 760}}, QColor(0xa97c50));
    polygon(p, {{0, 0}, {250, 330}, {250, 760}, {0, 1280}}, QColor(0xd5cdbf));
    polygon(p, {{720, 0}, {470, 330}, {470, 760}, {720, 1280}}, QColor(0xcbc3b4));
    box(p, QRectF(300, 430, 120, 330), QColor(0x6b4a2e));
}

} // namespace

std::vector<Scene> sampleShoot()
{
    const QString h264 = u"-c:v libx264 -preset veryfast -pix_fmt yuv420p"_s;
    const QString prores = u"-c:v prores_ks -profile:v 0"_s;
    const QString mpeg2 = u"-c:v mpeg2video -q:v 4 -pix_fmt yuv420p"_s;
    return {
        {u"A001_Front.mp4"_s, h264, drawn(landscape, front)},
        {u"A002_Kitchen.mov"_s, prores, drawn(landscape, kitchen)},
        {u"A003_Living.mp4"_s, h264, drawn(landscape, livingRoom)},
        {u"A004_Dining.mxf"_s, mpeg2, drawn(landscape, diningRoom)},
        {u"A005_Hall.mp4"_s, h264, drawn(portrait, hallway)},
        {u"A006_Bedroom.mts"_s, h264, drawn(landscape, bedroom)},
        {u"A007_Bathroom.mov"_s, h264, drawn(landscape, bathroom)},
        {u"A008_Pool.m4v"_s, h264, drawn(landscape, pool)},
        {u"DJI_0009.MP4"_s, h264, drawn(landscape, fromAbove)},
        {u"A010_LensCap.mp4"_s, h264, drawn(landscape, [](QPainter &) {})},
    };
}

} // namespace larkspan::demo

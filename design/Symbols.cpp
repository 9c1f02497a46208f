#include "design/Symbols.h"

#include <sstream>
#include <string>
#include <vector>

#include <QtCore/QMap>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// The parts of a symbol as text: M x y moves, L x y draws a line, C with three points a curve, Z closes;
// O x y r is a circle, R x y w h r a rounded rectangle.
struct Drawing
{
    QString name;
    std::string lines;
    std::string solid;
    std::string cut;
};

std::vector<Drawing> drawings()
{
    const std::string gear =
        "M7.15 2.87 L7.40 1.43 L8.60 1.43 L8.85 2.87 L11.03 3.77 L12.22 2.93 L13.07 3.78 L12.23 4.97 "
        "L13.13 7.15 L14.57 7.40 L14.57 8.60 L13.13 8.85 L12.23 11.03 L13.07 12.22 L12.22 13.07 L11.03 "
        "12.23 L8.85 13.13 L8.60 14.57 L7.40 14.57 L7.15 13.13 L4.97 12.23 L3.78 13.07 L2.93 12.22 L3.77 "
        "11.03 L2.87 8.85 L1.43 8.60 L1.43 7.40 L2.87 7.15 L3.77 4.97 L2.93 3.78 L3.78 2.93 L4.97 3.77 Z";
    // With more between its teeth, which the pen fills from both sides.
    const std::string solidGear =
        "M7.40 3.84 L7.65 1.51 L8.35 1.51 L8.60 3.84 L10.52 4.64 L12.34 3.16 L12.84 3.66 L11.36 5.48 "
        "L12.16 7.40 L14.49 7.65 L14.49 8.35 L12.16 8.60 L11.36 10.52 L12.84 12.34 L12.34 12.84 L10.52 "
        "11.36 L8.60 12.16 L8.35 14.49 L7.65 14.49 L7.40 12.16 L5.48 11.36 L3.66 12.84 L3.16 12.34 L4.64 "
        "10.52 L3.84 8.60 L1.51 8.35 L1.51 7.65 L3.84 7.40 L4.64 5.48 L3.16 3.66 L3.66 3.16 L5.48 4.64 Z";
    const std::string speaker = "M2.5 6.2 L4.6 6.2 L7.8 3.4 L7.8 12.6 L4.6 9.8 L2.5 9.8 Z";

    return {
        {.name = u"arrow.left"_s, .lines = "M13 8 L3 8 M7 4 L3 8 L7 12"},
        {.name = u"checkmark"_s, .lines = "M3 8.5 L6.5 12 L13 4.5"},
        {.name = u"checkmark.circle.fill"_s, .solid = "O8 8 5.75", .cut = "M5.3 8.4 L7.2 10.3 L10.8 5.9"},
        {.name = u"chevron.down"_s, .lines = "M3.5 5.75 L8 10.25 L12.5 5.75"},
        {.name = u"chevron.left"_s, .lines = "M10.25 3.5 L5.75 8 L10.25 12.5"},
        {.name = u"chevron.right"_s, .lines = "M5.75 3.5 L10.25 8 L5.75 12.5"},
        {.name = u"chevron.up"_s, .lines = "M3.5 10.25 L8 5.75 L12.5 10.25"},
        {.name = u"chevron.up.chevron.down"_s, .lines = "M4.75 6 L8 2.75 L11.25 6 M4.75 10 L8 13.25 L11.25 10"},
        {.name = u"folder"_s,
         .lines = "M2 11.5 L2 4.5 C2 3.7 2.5 3 3.5 3 L6 3 L7.75 5 L12.5 5 C13.5 5 14 5.7 14 6.5 L14 11.5 "
                  "C14 12.4 13.4 13 12.5 13 L3.5 13 C2.6 13 2 12.4 2 11.5 Z"},
        {.name = u"gearshape"_s, .lines = gear + " O8 8 1.9"},
        {.name = u"gearshape.fill"_s, .solid = solidGear, .cut = "O8 8 0.7 O8 8 1.45"},
        {.name = u"info.circle"_s, .lines = "O8 8 5.75 M8 7.6 L8 10.9 M8 5.05 L8 5.15"},
        {.name = u"line.3.horizontal"_s, .lines = "M2.5 4.25 L13.5 4.25 M2.5 8 L13.5 8 M2.5 11.75 L13.5 11.75"},
        {.name = u"minus"_s, .lines = "M3 8 L13 8"},
        {.name = u"pause.fill"_s, .solid = "R4.25 3.5 1.75 9 0.25 R10 3.5 1.75 9 0.25"},
        {.name = u"pencil"_s,
         .lines = "M2.75 13.25 L3.5 10.2 L10.6 3.1 C11.2 2.5 12.1 2.5 12.7 3.1 L12.9 3.3 C13.5 3.9 13.5 4.8 12.9 5.4 "
                  "L5.8 12.5 Z M9.2 4.5 L11.5 6.8"},
        {.name = u"play.fill"_s, .solid = "M5 3.25 L12.5 8 L5 12.75 Z"},
        {.name = u"plus"_s, .lines = "M8 3 L8 13 M3 8 L13 8"},
        {.name = u"rectangle.stack"_s, .lines = "R2.25 7 11.5 6.5 1.5 M3.75 4.75 L12.25 4.75 M5.25 2.5 L10.75 2.5"},
        {.name = u"sdcard"_s,
         .lines = "M3.5 3.5 C3.5 2.6 4.1 2 5 2 L9.4 2 L12.5 5.1 L12.5 12.5 C12.5 13.4 11.9 14 11 14 L5 14 "
                  "C4.1 14 3.5 13.4 3.5 12.5 Z M6 4.75 L6 6.75 M8.25 4.75 L8.25 6.75"},
        {.name = u"speaker.fill"_s,
         .lines = "M10.3 6.1 C11.3 7.1 11.3 8.9 10.3 9.9 M12.2 4.2 C14.3 6.3 14.3 9.7 12.2 11.8",
         .solid = speaker},
        {.name = u"speaker.slash.fill"_s,
         .lines = "M2.75 2.75 L13.25 13.25",
         .solid = speaker,
         .cut = "M1.6 3.9 L12.1 14.4"},
        {.name = u"square"_s, .lines = "R3 3 10 10 1.5"},
        {.name = u"trash"_s,
         .lines = "M2.5 4.5 L13.5 4.5 M6 4.5 L6 3.5 C6 2.8 6.4 2.25 7 2.25 L9 2.25 C9.6 2.25 10 2.8 10 3.5 L10 4.5 "
                  "M4 4.5 L4.6 12.4 C4.7 13.2 5.2 13.75 6 13.75 L10 13.75 C10.8 13.75 11.3 13.2 11.4 12.4 L12 4.5 "
                  "M6.7 7.25 L6.85 11 M9.3 7.25 L9.15 11"},
        {.name = u"xmark"_s, .lines = "M3.75 3.75 L12.25 12.25 M12.25 3.75 L3.75 12.25"},
    };
}

QPainterPath pathOf(const std::string &text)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    std::istringstream stream(text);
    const auto number = [&stream] {
        double value = 0;
        stream >> value;
        return value;
    };
    const auto point = [&number] {
        const double x = number();
        return QPointF(x, number());
    };
    for (char command = 0; stream >> command;) {
        switch (command) {
        case 'M':
            path.moveTo(point());
            break;
        case 'L':
            path.lineTo(point());
            break;
        case 'C': {
            const QPointF first = point();
            const QPointF second = point();
            path.cubicTo(first, second, point());
            break;
        }
        case 'O': {
            const QPointF center = point();
            const double radius = number();
            path.addEllipse(center, radius, radius);
            break;
        }
        case 'R': {
            const QPointF corner = point();
            const QPointF size = point();
            const double radius = number();
            path.addRoundedRect(QRectF(corner, QSizeF(size.x(), size.y())), radius, radius);
            break;
        }
        default:
            path.closeSubpath();
        }
    }
    return path;
}

const QMap<QString, Symbol> &symbols()
{
    static const QMap<QString, Symbol> all = [] {
        QMap<QString, Symbol> made;
        for (const Drawing &drawing : drawings()) {
            made.insert(drawing.name,
                        {.solid = pathOf(drawing.solid), .cut = pathOf(drawing.cut), .lines = pathOf(drawing.lines)});
        }
        return made;
    }();
    return all;
}

} // namespace

const Symbol *findSymbol(const QString &name)
{
    const auto found = symbols().constFind(name);
    return found == symbols().constEnd() ? nullptr : &*found;
}

QStringList symbolNames()
{
    return symbols().keys();
}

} // namespace larkspan

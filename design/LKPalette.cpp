#include "design/LKPalette.h"

namespace larkspan {

namespace {

constexpr QRgb white = 0xFFFFFF;
constexpr QRgb black = 0x000000;

QColor solid(QRgb rgb)
{
    return QColor::fromRgb(rgb);
}

QColor at(QRgb rgb, double opacity)
{
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

} // namespace

QList<QColor> LKPalette::aiGradient() const
{
    return {accent, info, accent, info, accent};
}

QVariantList LKPalette::shadowModalList() const
{
    QVariantList list;
    for (const LKShadow &shadow : shadowModal) {
        list.push_back(QVariant::fromValue(shadow));
    }
    return list;
}

const LKPalette &LKPalette::light()
{
    static const LKPalette palette{
        .accent = solid(0x6C74F0),
        .accentHover = solid(0x5A62DE),
        .accentPressed = solid(0x4850C4),
        .accentSubtle = at(0x6C74F0, 0.14),
        .accentForeground = solid(white),
        .accentSolid = solid(0x5A62DE),
        .accentSolidHover = solid(0x4E56D4),
        .accentSolidPressed = solid(0x4850C4),
        .danger = solid(0xFF453A),
        .dangerHover = solid(0xE63C31),
        .dangerSubtle = at(0xFF453A, 0.12),
        .warning = solid(0xFF9F0A),
        .warningSubtle = at(0xFF9F0A, 0.14),
        .info = solid(0x0A84FF),
        .infoSubtle = at(0x0A84FF, 0.12),
        .surfaceWindow = solid(0xECECED),
        .surfaceSidebar = solid(0xF5F5F6),
        .surfaceCard = solid(white),
        .surfaceElevated = solid(white),
        .surfaceHover = at(black, 0.045),
        .surfacePressed = at(black, 0.09),
        .surfaceSelected = at(0x6C74F0, 0.14),
        .borderSubtle = solid(0xC3C3C7),
        .borderStrong = solid(0x87878E),
        .textPrimary = solid(0x18181A),
        .textSecondary = solid(0x525258),
        .textTertiary = solid(0x6B6B72),
        .textOnAccent = solid(white),
        .textDisabled = solid(0xA5A5AB),
        .shadowCard = {.color = at(black, 0.06), .radius = 1, .x = 0, .y = 1},
        .shadowPopover = {.color = at(black, 0.16), .radius = 8, .x = 0, .y = 4},
        .shadowModal = {{.color = at(black, 0.28), .radius = 20, .x = 0, .y = 12},
                        {.color = at(black, 0.12), .radius = 4, .x = 0, .y = 2}},
    };
    return palette;
}

const LKPalette &LKPalette::dark()
{
    static const LKPalette palette{
        .accent = solid(0x7A82FF),
        .accentHover = solid(0x6870F0),
        .accentPressed = solid(0x565ED6),
        .accentSubtle = at(0x7A82FF, 0.2),
        .accentForeground = solid(white),
        .accentSolid = solid(0x5A62DE),
        .accentSolidHover = solid(0x4E56D4),
        .accentSolidPressed = solid(0x4850C4),
        .danger = solid(0xFF453A),
        .dangerHover = solid(0xFF6259),
        .dangerSubtle = at(0xFF453A, 0.18),
        .warning = solid(0xFF9F0A),
        .warningSubtle = at(0xFF9F0A, 0.18),
        .info = solid(0x0A84FF),
        .infoSubtle = at(0x0A84FF, 0.18),
        .surfaceWindow = solid(0x191919),
        .surfaceSidebar = solid(0x1F1F21),
        .surfaceCard = solid(0x242426),
        .surfaceElevated = solid(0x2A2A2C),
        .surfaceHover = at(white, 0.06),
        .surfacePressed = at(white, 0.11),
        .surfaceSelected = at(0x7A82FF, 0.2),
        .borderSubtle = at(white, 0.14),
        .borderStrong = at(white, 0.38),
        .textPrimary = solid(0xF2F2F3),
        .textSecondary = solid(0xA8A8AC),
        .textTertiary = solid(0x8A8A90),
        .textOnAccent = solid(white),
        .textDisabled = solid(0x5A5A5E),
        .shadowCard = {.color = at(black, 0.3), .radius = 1, .x = 0, .y = 1},
        .shadowPopover = {.color = at(black, 0.45), .radius = 10, .x = 0, .y = 4},
        .shadowModal = {{.color = at(black, 0.55), .radius = 24, .x = 0, .y = 16},
                        {.color = at(black, 0.3), .radius = 4, .x = 0, .y = 2}},
    };
    return palette;
}

} // namespace larkspan

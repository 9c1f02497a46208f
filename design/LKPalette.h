#pragma once

#include <vector>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// One drop shadow; lengths in points, y positive downward.
struct LKShadow
{
    Q_GADGET
    QML_VALUE_TYPE(lkShadow)
    Q_PROPERTY(QColor color MEMBER color)
    Q_PROPERTY(double radius MEMBER radius)
    Q_PROPERTY(double x MEMBER x)
    Q_PROPERTY(double y MEMBER y)

public:
    QColor color;
    double radius = 0.0; // of the blur
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const LKShadow &, const LKShadow &) = default;
};

// Every colour that a view may paint. The two palettes are built on first use, shared, and never change.
struct LKPalette
{
    Q_GADGET
    QML_VALUE_TYPE(lkPalette)
    Q_PROPERTY(QColor accent MEMBER accent)
    Q_PROPERTY(QColor accentHover MEMBER accentHover)
    Q_PROPERTY(QColor accentPressed MEMBER accentPressed)
    Q_PROPERTY(QColor accentSubtle MEMBER accentSubtle)
    Q_PROPERTY(QColor accentForeground MEMBER accentForeground)
    Q_PROPERTY(QColor accentSolid MEMBER accentSolid)
    Q_PROPERTY(QColor accentSolidHover MEMBER accentSolidHover)
    Q_PROPERTY(QColor accentSolidPressed MEMBER accentSolidPressed)
    Q_PROPERTY(QColor danger MEMBER danger)
    Q_PROPERTY(QColor dangerHover MEMBER dangerHover)
    Q_PROPERTY(QColor dangerSubtle MEMBER dangerSubtle)
    Q_PROPERTY(QColor warning MEMBER warning)
    Q_PROPERTY(QColor warningSubtle MEMBER warningSubtle)
    Q_PROPERTY(QColor info MEMBER info)
    Q_PROPERTY(QColor infoSubtle MEMBER infoSubtle)
    Q_PROPERTY(QColor surfaceWindow MEMBER surfaceWindow)
    Q_PROPERTY(QColor surfaceSidebar MEMBER surfaceSidebar)
    Q_PROPERTY(QColor surfaceCard MEMBER surfaceCard)
    Q_PROPERTY(QColor surfaceElevated MEMBER surfaceElevated)
    Q_PROPERTY(QColor surfaceHover MEMBER surfaceHover)
    Q_PROPERTY(QColor surfacePressed MEMBER surfacePressed)
    Q_PROPERTY(QColor surfaceSelected MEMBER surfaceSelected)
    Q_PROPERTY(QColor borderSubtle MEMBER borderSubtle)
    Q_PROPERTY(QColor borderStrong MEMBER borderStrong)
    Q_PROPERTY(QColor textPrimary MEMBER textPrimary)
    Q_PROPERTY(QColor textSecondary MEMBER textSecondary)
    Q_PROPERTY(QColor textTertiary MEMBER textTertiary)
    Q_PROPERTY(QColor textOnAccent MEMBER textOnAccent)
    Q_PROPERTY(QColor textDisabled MEMBER textDisabled)
    Q_PROPERTY(larkspan::LKShadow shadowCard MEMBER shadowCard)
    Q_PROPERTY(larkspan::LKShadow shadowPopover MEMBER shadowPopover)
    Q_PROPERTY(QVariantList shadowModal READ shadowModalList)
    Q_PROPERTY(QList<QColor> aiGradient READ aiGradient)

public:
    QColor accent;
    QColor accentHover;
    QColor accentPressed;
    QColor accentSubtle;
    QColor accentForeground;
    QColor accentSolid;
    QColor accentSolidHover;
    QColor accentSolidPressed;
    QColor danger;
    QColor dangerHover;
    QColor dangerSubtle;
    QColor warning;
    QColor warningSubtle;
    QColor info;
    QColor infoSubtle;
    QColor surfaceWindow;
    QColor surfaceSidebar;
    QColor surfaceCard;
    QColor surfaceElevated;
    QColor surfaceHover;
    QColor surfacePressed;
    QColor surfaceSelected;
    QColor borderSubtle;
    QColor borderStrong;
    QColor textPrimary;
    QColor textSecondary;
    QColor textTertiary;
    QColor textOnAccent;
    QColor textDisabled;
    LKShadow shadowCard;
    LKShadow shadowPopover;
    std::vector<LKShadow> shadowModal; // painted in this order

    // The stops, evenly spaced, of the one gradient there is: around the centre, from the right.
    [[nodiscard]] QList<QColor> aiGradient() const;
    // shadowModal as QML takes it.
    [[nodiscard]] QVariantList shadowModalList() const;

    static const LKPalette &light();
    static const LKPalette &dark();

    friend bool operator==(const LKPalette &, const LKPalette &) = default;
};

} // namespace larkspan

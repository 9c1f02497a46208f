// The distance from the edge of a rectangle with continuous corners, negative inside, in points. It follows the curve
// of Corners.cpp to half a hundredth of the radius, and is exact along the straight edges.
// fromMiddle: of the rectangle; area: its size.
float cornersDistance(vec2 fromMiddle, vec2 area, float radius)
{
    float reach = min(1.528665 * radius, 0.5 * min(area.x, area.y));
    vec2 beyond = abs(fromMiddle) - 0.5 * area + reach; // what of a corner's square lies between here and its inside
    if (min(beyond.x, beyond.y) <= 0.0 || reach <= 0.0)
        return max(beyond.x, beyond.y) - reach;
    // Seen along the corner's diagonal, the curve is a hill.
    float halfWidth = reach * 0.70710678;
    float height = (beyond.x + beyond.y) * 0.70710678;
    float aside = (beyond.x - beyond.y) * 0.70710678 / halfWidth;
    float squared = aside * aside;
    float hill = halfWidth * (1.62245 + squared * (-0.67168 + squared * (-0.02399 + squared * 0.07322)));
    float slope = 2.0 * aside * (-0.67168 + squared * (-0.04798 + squared * 0.21966));
    return (height - hill) * inversesqrt(1.0 + slope * slope);
}

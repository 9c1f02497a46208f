#version 440
#extension GL_GOOGLE_include_directive : require
// A picture cut to a rectangle with round corners.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float upper; // radii in points
    float lower;
    vec2 area; // points
};
layout(binding = 1) uniform sampler2D source;

#include "corners.glsl"

void main()
{
    vec2 fromMiddle = (qt_TexCoord0 - 0.5) * area;
    float radius = fromMiddle.y < 0.0 ? upper : lower;
    float outside = cornersDistance(fromMiddle, area, radius);
    float covered = clamp(0.5 - outside / fwidth(fromMiddle.x), 0.0, 1.0);
    fragColor = texture(source, qt_TexCoord0) * (covered * qt_Opacity);
}

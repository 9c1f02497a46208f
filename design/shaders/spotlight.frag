#version 440
#extension GL_GOOGLE_include_directive : require
// A lit card: its fill, a spot of light over it, its border, and the light along the border.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 fill;   // opaque
    vec4 border; // premultiplied
    vec4 light;  // opaque
    vec2 card;   // size in points
    vec2 centre; // of the light, in parts of the card
    float reach; // of the light, in points
    float cornerRadius;
    float spot;  // opacity of the light in its middle
    float lit;   // the same of the light along the border
    float adds;  // 1: the spot adds to the fill; 0: it covers it
};

#include "corners.glsl"

void main()
{
    vec2 place = qt_TexCoord0 * card;
    float distance = cornersDistance(place - card * 0.5, card, cornerRadius);
    float pixel = max(fwidth(distance), 1e-4);
    float falloff = max(0.0, 1.0 - length(place - centre * card) / reach);

    float glow = spot * falloff;
    vec3 color = adds > 0.5 ? min(fill.rgb + light.rgb * glow, 1.0) : mix(fill.rgb, light.rgb, glow);
    float line = clamp((distance + 1.0) / pixel + 0.5, 0.0, 1.0);
    color = color * (1.0 - border.a * line) + border.rgb * line;
    float wideLine = clamp((distance + 1.6) / pixel + 0.5, 0.0, 1.0);
    color = mix(color, light.rgb, lit * falloff * wideLine);
    fragColor = vec4(color, 1.0) * clamp(0.5 - distance / pixel, 0.0, 1.0) * qt_Opacity;
}

#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragmentColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float fade; // share of the launcher's width in which each side fades
    vec2 sides; // of the card, as shares of the launcher's width
    vec2 spread; // the blur's deviation, as a share of the card
};
layout(binding = 1) uniform sampler2D source;

vec4 blurred()
{
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            vec2 at = 0.9 * vec2(float(x), float(y)); // in deviations
            float weight = exp(-0.5 * dot(at, at));
            sum += weight * texture(source, qt_TexCoord0 + at * spread);
            weights += weight;
        }
    }
    return sum / weights;
}

void main()
{
    float place = mix(sides.x, sides.y, qt_TexCoord0.x);
    float shown = clamp(min(place, 1.0 - place) / fade, 0.0, 1.0);
    fragmentColor = (spread.x > 0.0 ? blurred() : texture(source, qt_TexCoord0)) * (shown * qt_Opacity);
}

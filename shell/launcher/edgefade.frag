#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragmentColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float fade; // share of the width in which each side fades
};
layout(binding = 1) uniform sampler2D source;

void main()
{
    float fromSide = min(qt_TexCoord0.x, 1.0 - qt_TexCoord0.x);
    fragmentColor = texture(source, qt_TexCoord0) * (clamp(fromSide / fade, 0.0, 1.0) * qt_Opacity);
}

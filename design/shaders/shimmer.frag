#version 440
// A gleam half as wide as the text, over its glyphs alone.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float offset; // where the gleam begins, in widths of the text
};
layout(binding = 1) uniform sampler2D source;

void main()
{
    float along = (qt_TexCoord0.x - offset) / 0.5;
    fragColor = texture(source, qt_TexCoord0) * max(0.0, 1.0 - abs(2.0 * along - 1.0)) * qt_Opacity;
}

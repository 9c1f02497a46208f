#version 440

layout(location = 0) in vec2 position;
layout(location = 1) in vec4 shape;
layout(location = 2) in vec4 color;

layout(location = 0) out vec4 passedShape;
layout(location = 1) out vec4 passedColor;

layout(std140, binding = 0) uniform buf {
    mat4 matrix;
    float opacity;
    float box;
};

out gl_PerVertex { vec4 gl_Position; };

void main()
{
    passedShape = shape;
    passedColor = color * opacity;
    gl_Position = matrix * vec4(position, 0.0, 1.0);
}

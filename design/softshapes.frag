#version 440

// shape: place within the shape, radius of the ring that it is drawn around (0 for a filled one), and the distance from
// there at which it ends; all in widths of its soft edge.
layout(location = 0) in vec4 passedShape;
layout(location = 1) in vec4 passedColor;

layout(location = 0) out vec4 fragmentColor;

layout(std140, binding = 0) uniform buf {
    mat4 matrix;
    float opacity;
    float box; // half the side of the square that the shape is drawn around
};

void main()
{
    float fromCentre = length(max(abs(passedShape.xy) - box, 0.0));
    fragmentColor = passedColor * clamp(passedShape.w - abs(fromCentre - passedShape.z), 0.0, 1.0);
}

#version 440
// A blurred rectangle in one colour, in closed form: nothing is drawn twice to blur it. The corners may be round as
// long as their radius is below the blur's, which hides them.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 light;     // opaque
    vec2 area;      // what is drawn, in points
    vec2 rectangle; // its middle is the area's
    float blur;     // standard deviation in points
    float strength; // opacity where the rectangle is whole
};

// The error function, good to a two-thousandth: a hyperbolic tangent, spelt out for old OpenGL, which has none.
vec4 errorFunction(vec4 x)
{
    return 1.0 - 2.0 / (exp(2.0 * x * (1.128379 + 0.1009 * x * x)) + 1.0);
}

void main()
{
    vec2 place = (qt_TexCoord0 - 0.5) * area;
    vec4 edges = vec4(place + rectangle * 0.5, place - rectangle * 0.5) / (blur * 1.414214);
    vec4 sums = errorFunction(clamp(edges, -3.0, 3.0));
    vec2 share = 0.5 * (sums.xy - sums.zw);
    fragColor = vec4(light.rgb, 1.0) * share.x * share.y * strength * qt_Opacity;
}

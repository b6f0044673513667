#version 440
// A soft, faint, low-contrast grain laid over the window's background, so that
// its gradients don't band. It stands still.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float width;
    float height;
    float strength;
};

float hash(vec2 p)
{
    p = fract(p * vec2(443.897, 441.423));
    p += dot(p, p.yx + 19.19);
    return fract((p.x + p.y) * p.x);
}

void main()
{
    vec2 px = floor(qt_TexCoord0 * vec2(width, height));
    // Two scales of grain: single pixels and soft clumps of three.
    float n = 0.65 * hash(px) + 0.35 * hash(floor(px / 3.0) + 7.0);
    float alpha = strength * 9.0 * n;
    fragColor = vec4(vec3(n), 1.0) * alpha * qt_Opacity;
}

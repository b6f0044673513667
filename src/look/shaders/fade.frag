#version 440
// Fades a layer to transparent under its top and bottom edges: the content of
// a scroll area thins out where more of it lies beyond the edge.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float topFade;        // length of the top fade, as a share of the height
    float bottomFade;     // length of the bottom fade, as a share of the height
    float topStrength;    // 0: no fade, 1: fully transparent at the edge
    float bottomStrength;
};
layout(binding = 1) uniform sampler2D source;

void main()
{
    vec4 color = texture(source, qt_TexCoord0);
    float y = qt_TexCoord0.y;
    float top = topFade > 0.0 ? mix(1.0 - topStrength, 1.0, smoothstep(0.0, topFade, y)) : 1.0;
    float bottom = bottomFade > 0.0 ? mix(1.0 - bottomStrength, 1.0, smoothstep(0.0, bottomFade, 1.0 - y)) : 1.0;
    fragColor = color * (top * bottom * qt_Opacity);
}

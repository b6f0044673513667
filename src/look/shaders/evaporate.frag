#version 440
// An item dissolving upward. The layer is the item's picture with room above
// it (and a little to each side) into which it rises. At progress 0 the layer
// is unchanged; as progress grows the picture breaks up into noise that lifts,
// wavers sideways and thins; at 1 nothing is left. `seed` shifts the noise so
// that neighbours differ.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float layerWidth; // of the layer, in pixels
    float layerHeight;
    float rise;     // the farthest the picture lifts, in pixels; the room above it
    float reach;    // how much of that room is drawn now (the top of this quad), pixels
    float progress; // 0...1
    float seed;     // 0...1
};
layout(binding = 1) uniform sampler2D source;

float hash(vec2 p)
{
    p = fract(p * vec2(123.34, 456.21));
    p += dot(p, p + 45.32);
    return fract(p.x * p.y);
}

float noise(vec2 p)
{
    vec2 i = floor(p);
    vec2 f = fract(p);
    vec2 u = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(i), hash(i + vec2(1.0, 0.0)), u.x), mix(hash(i + vec2(0.0, 1.0)), hash(i + vec2(1.0, 1.0)), u.x),
               u.y);
}

void main()
{
    float t = clamp(progress, 0.0, 1.0);
    // The quad covers only the part of the layer the picture can have
    // reached so far: from `reach` above the item down to its bottom.
    vec2 px = vec2(qt_TexCoord0.x * layerWidth, rise - reach + qt_TexCoord0.y * (layerHeight - rise + reach));
    vec2 offset = vec2(seed * 97.0, seed * 61.0);

    // Coarse noise decides what lifts first and how it wavers; a grain of
    // three-pixel cells breaks the picture up.
    float coarse = noise(px / 18.0 + offset + vec2(0.0, t * 2.0));
    float fine = hash(floor(px / 3.0) + offset);
    float lift = t * t * rise * (0.55 + 0.45 * coarse);
    float sway = (coarse - 0.5) * 24.0 * t;
    vec2 from = (px + vec2(sway, lift)) / vec2(layerWidth, layerHeight);

    vec4 color = vec4(0.0);
    if (from.x >= 0.0 && from.x <= 1.0 && from.y >= 0.0 && from.y <= 1.0)
        color = texture(source, from);

    // Grains go as progress passes their noise; what stays thins and pales
    // towards steam.
    float grain = 0.6 * fine + 0.4 * coarse;
    float gone = pow(t, 1.4);
    float keep = smoothstep(gone * 1.25 - 0.25, gone * 1.25, grain);
    float thin = 1.0 - t * t;
    color.rgb = mix(color.rgb, vec3(color.a), 0.45 * t);
    fragColor = color * (keep * thin * qt_Opacity);
}

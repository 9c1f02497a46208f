import Qt5Compat.GraphicalEffects

// Blurs an item like frosted glass, as its layer.effect. Needs graphics that draw shaders.
FastBlur {
    property real deviation // the blur's radius in points, as of a shadow

    radius: 2 * deviation
}

import Qt5Compat.GraphicalEffects

// What is seen through frosted glass, as an item's layer.effect. Takes graphics that draw shaders.
FastBlur {
    property real deviation // the blur's radius in points, as of a shadow

    radius: 2 * deviation
}

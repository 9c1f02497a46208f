import Qt5Compat.GraphicalEffects

// What is seen through frosted glass, as an item's layer.effect. radius in points; takes graphics that draw shaders.
FastBlur {
}

import QtQuick
import QtQuick.Window

// A clip's picture, filling its place. The provider draws it to size, corners included, so that nothing is left to
// clip or scale while it moves.
Image {
    property url picture
    property int cornerRadius: 4
    property bool roundsBottom: true

    source: picture + "?radius=" + cornerRadius * Screen.devicePixelRatio + (roundsBottom ? "" : "&top")
    sourceSize.width: Math.max(1, width * Screen.devicePixelRatio)
    sourceSize.height: Math.max(1, height * Screen.devicePixelRatio)
    fillMode: Image.Stretch
}

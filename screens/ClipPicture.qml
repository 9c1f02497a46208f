import QtQuick
import QtQuick.Window

// A clip's picture, filling its place. The provider draws it to size, corners included, so that nothing is left to
// clip or scale while it moves.
Image {
    property url picture
    property int cornerRadius: 4
    property bool roundsBottom: true

    // Neither holds while a delegate is made or let go.
    readonly property bool isShown: width >= 1 && height >= 1 && String(picture) !== ""

    source: isShown ? picture + "?radius=" + cornerRadius * Screen.devicePixelRatio + (roundsBottom ? "" : "&top") : ""
    sourceSize.width: width * Screen.devicePixelRatio
    sourceSize.height: height * Screen.devicePixelRatio
    fillMode: Image.Stretch
    cache: false
}

import QtQuick
import QtQuick.Window

// A clip's picture, filling its place. The provider draws it to size, corners included, so that nothing is left to
// clip, scale or blur while it moves.
Image {
    property url picture
    property int cornerRadius: 4
    property bool roundsBottom: true
    // Rather than stretching what has another shape.
    property bool crops: false
    // For glass before a part of the picture: the size of the whole picture, and the part's place in it.
    property size whole: Qt.size(width, height)
    property bool isFrosted: false
    property point place

    // Neither holds while a delegate is made or let go.
    readonly property bool isShown: width >= 1 && height >= 1 && String(picture) !== ""
    readonly property real dots: Screen.devicePixelRatio

    function pixels(points: real): int {
        return Math.round(points * dots);
    }

    source: {
        if (!isShown)
            return "";
        const part = isFrosted ? "&frosted=" + [place.x, place.y, width, height].map(pixels).join(",") : "";
        return picture + "?radius=" + cornerRadius * dots + (roundsBottom ? "" : "&top") + (crops ? "&crop" : "") + part;
    }
    // In points: an image asks its provider for as many pixels as the display has for them.
    sourceSize.width: whole.width
    sourceSize.height: whole.height
    fillMode: Image.Stretch
    cache: false
}

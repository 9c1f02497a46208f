import QtQuick
import QtQuick.Window

// A clip's picture, which fills this item. The image provider draws it at its final size with round corners, so that
// nothing has to be clipped, scaled or blurred while it moves.
Image {
    property url picture
    property int cornerRadius: 4
    property bool roundsBottom: true
    // True to crop a picture of another aspect instead of stretching it.
    property bool crops: false
    // For frosted glass over a part of the picture: the size of the whole picture, and the part's place in it.
    property size whole: Qt.size(width, height)
    property bool isFrosted: false
    property point place

    // False while a delegate is being created or destroyed, when it has no size or no picture.
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

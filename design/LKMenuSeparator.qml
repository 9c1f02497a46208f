import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A line between groups of an LKMenu.
T.MenuSeparator {
    implicitWidth: 40
    implicitHeight: 9
    horizontalPadding: 9
    verticalPadding: 4

    contentItem: Rectangle {
        color: LK.palette.borderSubtle
    }
}

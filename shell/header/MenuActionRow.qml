import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// One thing to do in a popover: what it is called, and a line about it.
T.AbstractButton {
    id: control

    property string symbol
    property alias title: control.text
    property string detail

    // By mouse, by keyboard or by assistive technology.
    signal activated

    implicitWidth: 260
    implicitHeight: 42
    leftPadding: 8
    rightPadding: 8
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    onClicked: control.activated()
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            control.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            control.clicked();
    }

    Accessible.name: title
    Accessible.description: detail
    Accessible.onPressAction: control.clicked()

    contentItem: ProjectLines {
        symbol: control.symbol
        title: control.title
        detail: control.detail
    }

    background: LKRectangle {
        radius: 6
        color: control.down ? LK.palette.surfacePressed : control.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }

        LKFocusRing {
            anchors.margins: -1
            visible: control.visualFocus
            cornerRadius: 6
        }
    }
}

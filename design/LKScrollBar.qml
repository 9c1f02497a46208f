import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A thin bar that shows only while there is something to scroll to.
T.ScrollBar {
    id: control

    implicitWidth: 8
    implicitHeight: 8
    padding: 2
    minimumSize: 0.1
    visible: control.size < 1
    Accessible.ignored: true // assistive technology walks the scrolled items instead

    contentItem: LKRectangle {
        implicitWidth: 4
        implicitHeight: 4
        radius: 2
        color: control.pressed ? LK.palette.textTertiary : LK.palette.borderStrong
        opacity: control.active ? 1 : 0.5

        Behavior on opacity  {
            LKNumberMotion {
            }
        }
    }
}

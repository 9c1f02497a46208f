pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A choice of one among two or three, all in sight. The keyboard reaches the chosen one, and arrows choose its
// neighbours.
T.Pane {
    id: control

    // A list of {value, label}.
    property var options: []
    property var selection
    property int size: LKButton.Md
    // Those whose choice brings the gradient, and those that can't be chosen.
    property var aiValues: []
    property var disabledValues: []
    // The subject of the choice, for assistive technology.
    property string label

    // The user has chosen; selection says it already.
    signal activated(var value)

    readonly property int selectedIndex: options.findIndex(option => option.value === selection)
    readonly property bool isAi: aiValues.includes(selection)
    readonly property LKChoiceKeys keys: LKChoiceKeys {
        labels: control.options.map(option => control.disabledValues.includes(option.value) ? null : option.label)
    }

    function choose(index: int) {
        const value = options[index].value;
        if (value !== selection) {
            LK.put(control, "selection", value);
            control.activated(value);
        }
    }

    function move(from: int, step: int) {
        const index = keys.next(from, step);
        if (index >= 0) {
            segments.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
            choose(index);
        }
    }

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    contentWidth: row.implicitWidth
    contentHeight: 18 + 4 * size
    padding: 2
    opacity: enabled ? 1 : 0.45

    Accessible.name: label

    Row {
        id: row

        spacing: 2

        Repeater {
            id: segments

            model: control.options

            delegate: LKPressable {
                id: segment

                required property int index
                required property var modelData

                readonly property bool isSelected: index === control.selectedIndex
                // The one segment that Tab reaches.
                readonly property bool isStop: index === (control.selectedIndex >= 0 ? control.selectedIndex : control.keys.first)

                implicitWidth: widest.implicitWidth + leftPadding + rightPadding
                implicitHeight: 18 + 4 * control.size
                leftPadding: 10
                rightPadding: 10
                words: modelData.label
                font: LK.font([10.5, 11.5, 12][control.size], isSelected ? Font.DemiBold : Font.Normal)
                enabled: !control.disabledValues.includes(modelData.value)
                opacity: control.disabledValues.includes(modelData.value) ? 0.4 : 1
                focusPolicy: isStop || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                focus: isStop
                ring.cornerRadius: 3
                ring.reach: 2

                onActivated: control.choose(index)
                Keys.onLeftPressed: control.move(index, control.mirrored ? 1 : -1)
                Keys.onRightPressed: control.move(index, control.mirrored ? -1 : 1)
                Keys.onPressed: event => {
                    if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                        const first = event.key === Qt.Key_Home;
                        control.move(first ? -1 : control.options.length, first ? 1 : -1);
                        event.accepted = true;
                    }
                }

                Accessible.selectable: true
                Accessible.selected: isSelected

                // The room of the label when chosen: what is beside it then stays where it is.
                LKText {
                    id: widest

                    visible: false
                    text: segment.modelData.label
                    font: LK.font([10.5, 11.5, 12][control.size], Font.DemiBold)
                }

                contentItem: LKText {
                    text: segment.modelData.label
                    font: segment.font
                    color: segment.isSelected ? LK.palette.textPrimary : LK.palette.textSecondary
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter

                    LKColorBehavior on color  {
                    }
                }

                background: LKRectangle {
                    radius: 3
                    color: segment.isSelected ? LK.palette.surfaceSelected : "transparent"

                    LKColorBehavior on color  {
                    }
                }
            }
        }
    }

    background: LKSurface {
        radius: 5
        color: LK.palette.surfaceCard
        border.width: control.isAi ? 0 : 1
        stroke: LK.palette.borderStrong

        LKGradientBorder {
            anchors.fill: parent
            visible: control.isAi
        }
    }
}

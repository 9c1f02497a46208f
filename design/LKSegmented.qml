pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A choice of one among two or three options, all of them visible. Tab reaches the chosen one. Left, Right, Home and
// End choose another.
T.Pane {
    id: control

    // A list of {value, label}.
    property var options: []
    property var selection
    property int size: LKButton.Md
    // The values that have the gradient for a border while they are chosen.
    property var aiValues: []
    // The values that can't be chosen.
    property var disabledValues: []
    // The subject of the choice, for assistive technology.
    property string label

    // Emitted after the user has chosen. selection has the new value already.
    signal activated(var value)

    readonly property int selectedIndex: options.findIndex(option => option.value === selection)
    readonly property bool isAi: aiValues.includes(selection)
    readonly property LKChoiceKeys keys: LKChoiceKeys {
        labels: control.options.map(option => control.disabledValues.includes(option.value) ? null : option.label)
        onWalked: index => {
            segments.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
            control.choose(index);
        }
    }

    function choose(index: int) {
        const value = options[index].value;
        if (value !== selection) {
            LK.put(control, "selection", value);
            control.activated(value);
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
                Keys.onPressed: event => event.accepted = control.keys.takeAcross(event.key, index, control.mirrored)

                Accessible.selectable: true
                Accessible.selected: isSelected

                // Reserves the width of the bold label, so that the others stay in place when this one is chosen.
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

pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A choice of one among many, shown as its label. A click, Space or Return opens the list; arrows and typed letters
// walk it while it is open, and while it is closed they choose at once, or open it first.
T.ComboBox {
    id: control

    enum Tone {
        Standard,
        Caution,
        Attention,
        Ai
    }

    // A list of {value, label}.
    property var options: []
    // The value of one option. activated is emitted after the user has changed it. Any other value shows no label.
    property var selection
    property var disabledValues: []
    property int size: LKButton.Md
    property int tone: LKDropdown.Standard
    // True if keys choose in the closed list. Turn off where choosing again doesn't undo the first choice.
    property bool choosesClosed: true
    // The subject of the choice, for assistive technology.
    property string label

    readonly property int selectedIndex: options.findIndex(entry => entry.value === selection)
    readonly property string shownLabel: options[currentIndex]?.label ?? ""
    readonly property LKChoiceKeys keys: LKChoiceKeys {
        choosesClosed: control.choosesClosed
        onOpenDue: control.popup.open()
        onWalked: row => control.highlight(row)
        onChosen: row => {
            LK.put(control, "currentIndex", row);
            control.activated(row);
        }
    }

    readonly property color restFill: [LK.palette.surfaceCard, faint(LK.palette.warningSubtle), faint(LK.palette.dangerSubtle), LK.palette.surfaceCard][tone]
    readonly property color hoverFill: [LK.palette.surfaceHover, LK.palette.warningSubtle, LK.palette.dangerSubtle, LK.palette.surfaceHover][tone]
    readonly property color borderColor: [LK.palette.borderStrong, LK.palette.warning, LK.palette.danger, "transparent"][tone]

    function faint(fill: color): color {
        return Qt.alpha(fill, fill.a * 0.55);
    }

    function isDisabled(row: int): bool {
        return disabledValues.includes(options[row]?.value);
    }

    function widestLabel(): real {
        return options.reduce((widest, entry) => Math.max(widest, metrics.advanceWidth(entry.label)), 0);
    }

    // The template offers single steps only.
    function highlight(row: int) {
        for (let i = highlightedIndex; i < row; ++i)
            incrementCurrentIndex();
        for (let i = highlightedIndex; i > row; --i)
            decrementCurrentIndex();
    }

    onActivated: row => LK.put(control, "selection", options[row].value)
    // The template begins a new list at its first row.
    onModelChanged: LK.put(control, "currentIndex", selectedIndex)

    model: options
    currentIndex: selectedIndex
    textRole: "label"
    displayText: shownLabel
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 22 + 4 * size
    leftPadding: 9 + (mirrored ? implicitIndicatorWidth + spacing : 0)
    rightPadding: 9 + (mirrored ? 0 : implicitIndicatorWidth + spacing)
    spacing: 6
    font: LK.font([11.5, 12.5, 13][size], tone === LKDropdown.Standard ? Font.Normal : Font.Medium)
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    FontMetrics {
        id: metrics

        font: LK.font([11.5, 12.5, 13][control.size])
    }

    Keys.onPressed: event => {
        keys.labels = options.map((entry, row) => isDisabled(row) ? null : entry.label);
        event.accepted = keys.take(event.key, event.modifiers, event.text, popup.visible ? highlightedIndex : currentIndex, popup.visible);
    }
    // Opens at the release: in a list that opened at the press, the template would take the release for a choice.
    Keys.onReleased: event => {
        if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !popup.visible) {
            popup.open();
            event.accepted = true;
        }
    }

    LKAccessible.expanded: popup.visible
    Accessible.name: label !== "" ? label : shownLabel
    Accessible.description: label !== "" ? shownLabel : ""
    Accessible.onPressAction: {
        if (control.enabled)
            popup.open();
    }

    // The control has the tool tip, since its label gets no hover events from the template.
    LKToolTip {
        text: control.shownLabel
        wanted: control.hovered && (control.contentItem as Text).truncated && !control.popup.visible
    }

    contentItem: LKText {
        hasHelp: false
        text: control.shownLabel
        font: control.font
        verticalAlignment: Text.AlignVCenter
    }

    indicator: LKText {
        x: control.mirrored ? 9 : control.width - width - 9
        height: control.height
        verticalAlignment: Text.AlignVCenter
        text: "▾"
        font: LK.font([10.5, 11.5, 12][control.size])
        color: LK.palette.textTertiary
    }

    background: LKSurface {
        radius: 5
        color: control.hovered || control.popup.visible ? control.hoverFill : control.restFill
        border.pixelAligned: false
        border.width: [1, 1.5, 1.5, 0][control.tone]
        stroke: control.borderColor

        LKColorBehavior on color  {
        }

        LKGradientBorder {
            anchors.fill: parent
            visible: control.tone === LKDropdown.Ai
        }

        LKFocusRing {
            visible: control.visualFocus
        }
    }

    delegate: T.ItemDelegate {
        id: row

        required property int index

        // Leaves room for the scroll bar of a list that scrolls.
        width: ListView.view ? ListView.view.width - (ListView.view.interactive ? 8 : 0) : 0
        implicitWidth: implicitContentWidth + leftPadding + rightPadding
        implicitHeight: 24
        leftPadding: 9
        rightPadding: 9
        readonly property string label: control.options[index]?.label ?? ""

        text: LK.literal(label)
        enabled: !control.isDisabled(index)
        highlighted: control.highlightedIndex === index

        Accessible.name: label
        Accessible.selectable: true
        Accessible.selected: control.currentIndex === index
        Accessible.focusable: true
        Accessible.focused: highlighted
        Accessible.onPressAction: {
            if (row.enabled)
                row.clicked();
        }

        contentItem: LKText {
            text: row.label
            font: LK.font([11.5, 12.5, 13][control.size])
            color: row.enabled ? LK.palette.textPrimary : LK.palette.textDisabled
            verticalAlignment: Text.AlignVCenter
        }

        background: LKRectangle {
            radius: 4
            color: row.highlighted ? LK.palette.surfaceSelected : "transparent"
        }
    }

    popup: T.Popup {
        readonly property real gap: 4
        readonly property real top: visible ? control.mapToItem(null, 0, 0).y : 0
        readonly property real roomAbove: top - gap - margins
        readonly property real roomBelow: control.Window.height - top - control.height - gap - margins
        readonly property bool opensBelow: roomBelow >= implicitHeight || roomBelow >= roomAbove

        y: opensBelow ? control.height + gap : -height - gap
        x: control.mirrored ? control.width - width : 0
        width: Math.max(control.width, 140, Math.min(visible ? control.widestLabel() + 2 * (padding + 9) : 0, 360))
        height: Math.min(implicitHeight, Math.max(opensBelow ? roomBelow : roomAbove, 60))
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        margins: 6
        padding: 4
        onAboutToShow: z = LK.layerOf(control)

        LKAccessible.role: Accessible.List
        LKAccessible.name: control.label

        enter: Transition {
            LKNumberMotion {
                property: "opacity"
                from: 0
                to: 1
            }
        }

        exit: Transition {
            LKNumberMotion {
                property: "opacity"
                to: 0
            }
        }

        contentItem: ListView {
            implicitHeight: contentHeight
            model: control.popup.visible ? control.delegateModel : null // qmllint disable
            currentIndex: control.highlightedIndex
            highlightMoveDuration: 0
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: true

            T.ScrollBar.vertical: LKScrollBar {
            }
        }

        background: LKPanel {
        }
    }
}

pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The launcher: one card for each tool on the kinetic grid, the active one in the middle.
FocusScope {
    id: home

    required property AppState app

    // True while an overlay is above the launcher, which then ignores scrolling.
    property bool isCovered: false

    readonly property real cardWidth: 660

    function open(index: int) {
        app.openTool(ToolCatalogue.at(index).id);
    }

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Launcher")

    Keys.onLeftPressed: carousel.step(-1)
    Keys.onRightPressed: carousel.step(1)
    Keys.onReturnPressed: home.open(app.toolIndex)
    Keys.onEnterPressed: home.open(app.toolIndex)
    Keys.onSpacePressed: home.open(app.toolIndex)

    Carousel {
        id: carousel

        app: home.app
    }

    LKKineticGrid {
        anchors.fill: parent

        // Dragging moves the carousel, except at the top, where it moves the window.
        Item {
            anchors.fill: parent
            anchors.topMargin: 44

            DragHandler {
                id: drag

                property real translated: 0

                target: null
                dragThreshold: 10
                yAxis.enabled: false
                onActiveTranslationChanged: {
                    if (active) {
                        translated = activeTranslation.x;
                        carousel.drag(translated);
                    }
                }
                onActiveChanged: {
                    if (!active)
                        carousel.endDrag(translated);
                    translated = 0;
                }
                onCanceled: translated = 0
            }

            Item {
                id: cards

                // The shift of the row of cards to the left, in points.
                property real shift: home.app.toolIndex * carousel.cardStep - home.app.dragX
                // The share of the width in which the cards fade towards each side.
                readonly property real fade: 0.12

                objectName: "cards"
                anchors.fill: parent
                anchors.topMargin: -parent.anchors.topMargin

                Behavior on shift  {
                    enabled: carousel.isAnimated
                    LKNumberMotion {
                        duration: LK.motion.step
                    }
                }

                Repeater {
                    model: ToolCatalogue.count

                    // Larger than the card, so that its shadow isn't cut off where the card is under glass.
                    Item {
                        id: place

                        required property int index

                        readonly property bool isActive: index === home.app.toolIndex
                        readonly property real offset: index * carousel.cardStep - cards.shift
                        // As it is drawn, in shares of the launcher's width.
                        readonly property real middle: 0.5 + offset / cards.width
                        readonly property real reach: width * scale / 2 / cards.width
                        readonly property vector2d sides: Qt.vector2d(middle - reach, middle + reach)
                        readonly property bool isInTheFade: sides.x < cards.fade || sides.y > 1 - cards.fade
                        property real blur: isActive ? 0 : 2

                        anchors.verticalCenter: parent.verticalCenter
                        x: (parent.width - width) / 2 + offset
                        z: isActive ? 1 : 0
                        width: home.cardWidth + 64
                        height: card.height + 64
                        visible: Math.abs(offset) < (parent.width + home.cardWidth) / 2
                        scale: isActive ? 1 : 0.9
                        opacity: isActive ? 1 : 0.55
                        layer.enabled: (blur > 0 || isInTheFade) && GraphicsInfo.api !== GraphicsInfo.Software
                        layer.effect: CardGlass {
                            deviation: place.blur // qmllint disable
                            sides: place.sides // qmllint disable
                            fade: cards.fade // qmllint disable
                        }

                        Behavior on scale  {
                            LKNumberMotion {
                                duration: LK.motion.step
                            }
                        }
                        Behavior on opacity  {
                            LKNumberMotion {
                                duration: LK.motion.step
                            }
                        }
                        Behavior on blur  {
                            LKNumberMotion {
                                duration: LK.motion.step
                            }
                        }

                        ToolCard {
                            id: card

                            anchors.centerIn: parent
                            objectName: "card-" + tool.id
                            tool: ToolCatalogue.at(place.index)
                            isActive: place.isActive
                            onActivated: home.open(place.index)
                        }
                    }
                }
            }
        }

        CarouselScrollCatcher {
            anchors.fill: parent
            enabled: !home.isCovered
            onDrift: offset => carousel.drag(offset)
            onCommit: direction => carousel.commit(direction)
            onCancel: carousel.cancel()
        }

        ProfileDropdown {
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.top: parent.top
            anchors.topMargin: (44 - height) / 2
            app: home.app
        }

        CarouselChevron {
            anchors.verticalCenter: parent.verticalCenter
            anchors.left: parent.left
            anchors.leftMargin: 26
            text: "‹"
            enabled: home.app.toolIndex > 0
            Accessible.name: qsTr("Previous tool")
            onClicked: carousel.step(-1)
        }

        CarouselChevron {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            anchors.rightMargin: 26
            text: "›"
            enabled: home.app.toolIndex < ToolCatalogue.count - 1
            Accessible.name: qsTr("Next tool")
            onClicked: carousel.step(1)
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 18
            Accessible.role: Accessible.PageTabList
            Accessible.name: qsTr("Tools")

            Repeater {
                model: ToolCatalogue.count

                LKPressable {
                    id: dot

                    required property int index

                    readonly property bool isActive: index === home.app.toolIndex

                    objectName: "dot-" + index
                    implicitWidth: 20
                    implicitHeight: 20
                    words: ToolCatalogue.at(index).name
                    focusPolicy: Qt.TabFocus
                    onActivated: carousel.show(index)

                    LKAccessible.role: Accessible.PageTab
                    Accessible.selectable: true
                    Accessible.selected: isActive

                    contentItem: Item {
                        LKRectangle {
                            anchors.centerIn: parent
                            width: 5
                            height: 5
                            radius: 2.5
                            color: dot.isActive ? LK.palette.accent : dot.down ? LK.palette.textPrimary : dot.hovered ? LK.palette.textSecondary : LK.palette.borderStrong

                            LKColorBehavior on color  {
                                duration: dot.hovered ? LK.motion.hover : LK.motion.step
                            }
                        }
                    }

                    LKToolTip {
                        text: dot.text
                        wanted: dot.hovered
                    }
                }
            }
        }
    }
}

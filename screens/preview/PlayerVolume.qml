pragma Singleton
import QtQml

// The volume for all clips, kept until the program ends.
QtObject {
    property real level: 1 // 0 to 1
    property bool muted: false
}

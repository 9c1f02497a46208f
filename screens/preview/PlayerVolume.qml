pragma Singleton
import QtQml

// The volume of all clips: it stays as it was left at the clip before, for as long as the program runs.
QtObject {
    property real level: 1 // 0 to 1
    property bool muted: false
}

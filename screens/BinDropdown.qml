import Larkspan.Design

// A bin to choose among names, or none where that has a text.
LKDropdown {
    id: control

    property list<string> names
    property string noneText
    property string bin // "" for none

    readonly property int shift: noneText === "" ? 0 : 1

    signal chosen(string bin)

    model: noneText === "" ? names : [noneText, ...names]
    currentIndex: bin === "" && shift === 1 ? 0 : names.indexOf(bin) + (names.includes(bin) ? shift : 0)
    onActivated: row => control.chosen(row < shift ? "" : names[row - shift])
}

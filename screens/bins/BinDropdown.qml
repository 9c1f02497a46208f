import Larkspan.Design

// A choice among the names of bins, and of no bin if noneText is set. Choosing files the clip at once, which may remove
// this control, so keys choose only in the open list.
LKDropdown {
    id: control

    property list<string> names
    property string noneText
    property string bin // "" for none

    signal chosen(string bin)

    function option(value: string, label: string): var {
        return {
            "value": value,
            "label": label
        };
    }

    choosesClosed: false
    options: (noneText === "" ? [] : [option("", noneText)]).concat(Array.from(names, name => option(name, name)))
    selection: bin
    onActivated: row => {
        control.chosen(options[row].value);
        LK.put(control, "selection", control.bin); // a choice may be refused
    }
}

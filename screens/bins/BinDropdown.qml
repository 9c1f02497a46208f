import Larkspan.Design

// A bin to choose among names, or none where that has a text. Choosing files the clip at once, which may take it away:
// so only from the open list.
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

import Larkspan.Design

// A bin to choose among names, or none where that has a text.
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

    options: (noneText === "" ? [] : [option("", noneText)]).concat(Array.from(names, name => option(name, name)))
    selection: bin
    onActivated: row => {
        control.chosen(options[row].value);
        LK.put(control, "selection", control.bin); // a choice may be refused
    }
}

import QtQuick

// Finds an entry of a list by what is typed: letters in a row look for what begins with them all, one letter again and
// again goes through what begins with it.
QtObject {
    id: search

    property string typed
    readonly property Timer pause: Timer {
        interval: 1000
        onTriggered: search.typed = ""
    }

    // Returns true for a key that is part of the search. A space never is: it chooses.
    function takes(event: var): bool {
        const text = event.text;
        const plain = !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier));
        return plain && text > " " && text !== "\u007f";
    }

    // The row to go to from current (-1: none), or -1. labels: a text per row, null for a row that can't be chosen.
    function find(labels: var, current: int, text: string): int {
        pause.restart();
        typed += text.toLocaleLowerCase();
        const same = typed.split("").every(letter => letter === typed[0]);
        const prefix = same ? typed[0] : typed;
        const first = same ? current + 1 : Math.max(current, 0);
        for (let i = 0; i < labels.length; ++i) {
            const row = (first + i) % labels.length;
            if (labels[row] !== null && labels[row].toLocaleLowerCase().startsWith(prefix))
                return row;
        }
        return -1;
    }
}

// The changes to a source text, in any order, and the text they make. No change adds or removes a
// line end.

class SourceEdits {
    constructor(text) {
        this.text = text;
        this.list = [];
        this.lineStarts = [0];
        for (const {index, 0: end} of text.matchAll(/\r\n?|[\n\u2028\u2029]/g))
            this.lineStarts.push(index + end.length);
        this.lastLine = 0;
    }

    /**
     * Inserts text before a position, in place of `removed` units. Of insertions at one position the
     * earlier made comes first. The result's text may still be changed by the caller.
     */
    insert(position, text, removed = 0) {
        const edit = {position, text, removed, order: this.list.length};
        this.list.push(edit);
        return edit;
    }

    /** Takes a range out and keeps its line ends; `text` goes in front of them. */
    blank(start, end, text = '') {
        return this.insert(start, text + lineEndsOf(this.text.slice(start, end)), end - start);
    }

    /** The line of a position, from 1. Quick when asked in rising order. */
    lineOf(position) {
        const starts = this.lineStarts;
        let line = this.lastLine;
        if (position < starts[line] || line + 8 < starts.length && starts[line + 8] <= position) {
            let low = 0, high = starts.length - 1;
            while (low < high) {
                const middle = (low + high + 1) >> 1;
                if (starts[middle] <= position)
                    low = middle;
                else
                    high = middle - 1;
            }
            line = low;
        } else {
            while (line + 1 < starts.length && starts[line + 1] <= position)
                line++;
        }
        this.lastLine = line;
        return line + 1;
    }

    /** The changed text and the list of changes as C++ reads it (sourceedits.h). */
    apply() {
        this.list.sort((a, b) => a.position - b.position || a.order - b.order);
        const pieces = [], numbers = [];
        let at = 0;
        for (const {position, text, removed} of this.list) {
            if (text === '' && removed === 0)
                continue;
            numbers.push(position - at, removed, text.length);
            if (position > at)
                pieces.push(this.text.slice(at, position));
            pieces.push(text);
            at = position + removed;
        }
        pieces.push(this.text.slice(at));
        return {code: pieces.join(''), edits: packNumbers(numbers)};
    }
}

/** Numbers from 0 as a string, 15 bits a unit, the top bit set on all but the last of a number. */
function packNumbers(numbers) {
    const units = [];
    for (let number of numbers) {
        while (number > 0x7fff) {
            units.push(0x8000 | number & 0x7fff);
            number >>>= 15;
        }
        units.push(number);
    }
    let packed = '';
    for (let i = 0; i < units.length; i += 8192)
        packed += String.fromCharCode(...units.slice(i, i + 8192));
    return packed;
}

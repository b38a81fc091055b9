// For files with names of objects:
//
//     import { RegularExpression, Wildcard } from 'objectmaphelper.js';
//     export const saveButton = { type: "QPushButton", text: new Wildcard("Save*") };
//
// A pattern has to match the whole value of the property.

/** "*" any text, "?" one character, "[abc]" one of these. */
export class Wildcard {
    constructor(pattern) {
        this.wildcardPattern = String(pattern);
    }
}

/** The pattern as text, with the syntax of Perl; a name may have a literal of the script as well. */
export class RegularExpression {
    constructor(pattern) {
        this.regexPattern = String(pattern);
    }
}

/** "Class: text" of what the function throws. */
export function thrown(code) {
    try {
        code();
        return "nothing";
    } catch (error) {
        return error.name + ": " + error.message;
    }
}

/** The pairs of a function and what it throws, in this order. */
export function expectErrors(cases) {
    for (const [code, expected] of cases)
        test.compare(thrown(code), expected, String(code));
}

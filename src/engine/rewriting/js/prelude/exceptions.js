// Each throw is reported once: by the innermost catch or frame end that sees it. It stays in flight
// until something catches it.

let flying = []; // reported and not caught yet; I[2] is 0 when none of them counts any more

function isSame(a, b) {
    return a === b ? a !== 0 || 1 / a === 1 / b : a !== a && b !== b;
}

function flyingIndex(error) {
    if (I[2] === 0)
        flying = [];
    for (let i = flying.length; i-- > 0;)
        if (isSame(flying[i], error))
            return i;
    return -1;
}

function report(error, depth, isCaught) {
    if (I[3] !== 0 || flyingIndex(error) >= 0)
        return;
    host.thrown(error, depth, isCaught);
    // promises swallow exceptions without a word: old ones are forgotten
    const keep = I[2] === 0 ? 0 : flying.length < 16 ? flying.length : 15;
    const rest = [];
    for (let i = flying.length - keep; i < flying.length; i++)
        rest[rest.length] = flying[i];
    rest[rest.length] = error;
    flying = rest;
    I[2] = 1;
}

function landed(error) {
    const index = flyingIndex(error);
    if (index >= 0)
        flying.length = index;
    I[2] = flying.length > 0 ? 1 : 0;
}

/** An exception leaves a function or a finally. */
function x(error, depth) {
    report(error, depth, false);
    unwind(depth);
    return error;
}

/** An exception is caught, unless it is the stand-in of a C++ exception or the end of the run. */
function c(error, depth) {
    if (I[3] !== 0) {
        unwind(depth);
        throw error;
    }
    report(error, depth, true);
    landed(error);
    unwind(depth);
}

/** An exception arrives in C++. `isFinal`: no script is left that could see it again. */
function arrived(error, depth, isFinal) {
    report(error, depth, false);
    if (isFinal) {
        I[2] = 0;
        flying = [];
    }
}

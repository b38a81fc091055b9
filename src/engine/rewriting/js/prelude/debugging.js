// What a debugger asks of a frame in the debug flavour. C++ keeps the flag down meanwhile.

/** A list of [name, value, is initialised] for each scope, the innermost first. */
function variables(depth) {
    const scopes = [];
    for (let scope = E[depth] && E[depth](); scope; scope = getPrototypeOf(scope)) {
        const list = [];
        for (const key of ownKeys(scope)) {
            let value, isThere = true;
            try {
                value = scope[key];
            } catch {
                isThere = false;
            }
            list.push([key, value, isThere]);
        }
        scopes.push(list);
    }
    return scopes;
}

function setVariable(depth, key, value) {
    const scope = E[depth] ? E[depth]() : {__proto__: null};
    if (!(key in scope))
        throw new ReferenceErrorClass(`Can't find variable: ${key}`);
    scope[key] = value;
}

const evaluateWith = realEval('(function($t$1,$t$2){with($t$1){return eval($t$2)}})');

function evaluateIn(depth, text, thisValue) {
    const scope = E[depth] ? E[depth]() : {__proto__: null};
    return apply(evaluateWith, thisValue, [scope, text]);
}

/** Lets go of what the frames above the depth held, and of exceptions that have landed. */
function truncate(depth) {
    if (I[2] === 0)
        flying = [];
    if (T.length > depth + 1)
        T.length = depth + 1;
    if (E.length > depth + 1)
        E.length = depth + 1;
}

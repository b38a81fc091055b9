// Operators that host objects take part in.

/** a == b; of two objects each may answer with a member "[[==]]", called with itself and the other. */
function eq(a, b) {
    if (typeof a !== 'object' || typeof b !== 'object' || a === null || b === null || a === b)
        return a == b;
    let equals = a['[[==]]'];
    if (equals !== undefined)
        return !!apply(equals, a, [a, b]);
    equals = b['[[==]]'];
    return equals !== undefined && !!apply(equals, b, [b, a]);
}

/** key in object; `has` is undefined for objects that are no host's. */
function isIn(key, object) {
    if (typeof object === 'object' && object !== null) {
        const has = host.has(object, key);
        if (has !== undefined)
            return has;
    }
    return key in object;
}

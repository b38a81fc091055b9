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

const hostTraps = {
    has({object}, key) {
        const has = host.has(object, key);
        return has === undefined ? key in object : has;
    },
};

/** The right side of `in`: a host object is asked itself, whatever its class tells the engine. */
function isIn(object) {
    return typeof object === 'object' && object !== null && host.isHost(object)
        ? new ProxyClass({object}, hostTraps) : object;
}

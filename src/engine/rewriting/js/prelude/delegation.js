// yield*: the delegating generator's frame is entered while its inner iterator runs.

const {iterator: iteratorSymbol, asyncIterator: asyncIteratorSymbol} = Symbol;

/** An iterator in front of another that enters the frame around each of its steps. */
function framedIterator(inner, enter, leave) {
    const {next} = inner;
    if (typeof next !== 'function')
        return inner;
    // what throws goes on in the generator, which stays entered then
    const within = (method, value) => {
        enter();
        const result = apply(method, inner, [value]);
        leave();
        return result;
    };
    const framed = method => typeof method === 'function' ? value => within(method, value) : method;
    return {
        __proto__: null,
        next(value) { return within(next, value); },
        get throw() { return framed(inner.throw); },
        get return() { return framed(inner.return); },
    };
}

/** What yield* iterates; whatever the engine refuses is left to the engine. */
function Y(iterable, enter, leave, isAsync) {
    const symbol = isAsync ? asyncIteratorSymbol : iteratorSymbol;
    const method = iterable === undefined || iterable === null ? undefined : iterable[symbol];
    if (typeof method !== 'function')
        return iterable;
    const inner = apply(method, iterable, []);
    const isObject = typeof inner === 'object' && inner !== null || typeof inner === 'function';
    const iterator = isObject ? framedIterator(inner, enter, leave) : inner;
    return {__proto__: null, [symbol]: () => iterator};
}

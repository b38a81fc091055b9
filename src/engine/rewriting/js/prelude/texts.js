// Texts that become code while script runs, and code that is asked for its text.

const realEval = eval;
const realToString = Function.prototype.toString;
const {exec} = RegExp.prototype;
const isMark = /\/\*\$t\d*\$:(\d+) *\*\//;
const nativeTexts = new Map();
const {get: textOf} = Map.prototype;

/** Leaves the frame of eval code, if there was one, and gives the value of the eval. */
function P(depth, value) {
    unwind(depth);
    return value;
}

/** The text for a direct eval, whose frame it enters. */
function R(callee, text, depth) {
    if (callee !== realEval || typeof text !== 'string')
        return text;
    const code = host.evalCode(text, depth + 1);
    if (code === undefined)
        return text;
    T[depth + 1] = T[depth];
    E[depth + 1] = E[depth];
    return code;
}

const toString = {
    toString() {
        const text = apply(realToString, this, []);
        const native = apply(textOf, nativeTexts, [this]);
        if (native !== undefined)
            return native;
        const match = apply(exec, isMark, [text]);
        if (match === null)
            return text;
        const original = host.functionText(+match[1]);
        return original === undefined ? text : original;
    },
}.toString;
nativeTexts.set(toString, 'function toString() {\n    [native code]\n}');
defineProperty(Function.prototype, 'toString',
    {value: toString, writable: true, configurable: true, enumerable: false});

/**
 * A function constructor whose functions have hooks. The engine makes the function first: it converts
 * the arguments and checks them, and its text is what is rewritten.
 */
function hookedConstructor(Original) {
    const {prototype} = Original;
    const Hooked = function(...parts) {
        const plain = new.target === undefined ? apply(Original, undefined, parts)
            : construct(Original, parts, new.target);
        const hooked = host.functionCode(apply(realToString, plain, []));
        if (hooked === undefined)
            return plain;
        if (getPrototypeOf(plain) !== getPrototypeOf(hooked))
            setPrototypeOf(hooked, getPrototypeOf(plain));
        return hooked;
    };
    defineProperty(Hooked, 'name', {value: Original.name, configurable: true});
    defineProperty(Hooked, 'length', {value: 1, configurable: true});
    defineProperty(Hooked, 'prototype', {value: prototype, writable: false});
    setPrototypeOf(Hooked, getPrototypeOf(Original));
    const {writable} = Reflect.getOwnPropertyDescriptor(prototype, 'constructor');
    defineProperty(prototype, 'constructor', {value: Hooked, writable, configurable: true, enumerable: false});
    nativeTexts.set(Hooked, `function ${Original.name}() {\n    [native code]\n}`);
    return Hooked;
}

const HookedFunction = hookedConstructor(Function);
defineProperty(globalThis, 'Function',
    {value: HookedFunction, writable: true, configurable: true, enumerable: false});
for (const sample of [function*() {}, async() => {}, async function*() {}])
    setPrototypeOf(hookedConstructor(sample.constructor), HookedFunction);

/** Indirect eval: global code, with a frame of its own. */
const hookedEval = {
    eval(text) {
        if (typeof text !== 'string')
            return text;
        const depth = I[0];
        const code = host.evalCode(text, depth + 1);
        if (code === undefined)
            return realEval(text);
        T[depth + 1] = globalThis;
        E[depth + 1] = 0;
        try {
            return realEval(code);
        } finally {
            if (I[1])
                o(depth + 1);
            I[0] = depth;
        }
    },
}.eval;

/** The callee of an indirect call of eval. */
function ev(callee) { return callee === realEval ? hookedEval : callee; }

/** The id of the function that a function object was made from; 0 for the engine's own. */
function functionIdOf(object) {
    const match = apply(exec, isMark, [apply(realToString, object, [])]);
    return match === null ? 0 : +match[1];
}

// Part of the prelude: runs in each script context, before any script, with the host object as `this`.
// What scripts may change later (built-ins, prototypes) is taken here. Words of I: 0 depth, 1 flag,
// 2 an exception is in flight, 3 a C++ exception is (FrameStack::Word).

const I = host.slots, N = host.functions;
const ProxyClass = Proxy;
const T = [];      // `this` of each frame; `no` where there is none yet
const E = [];      // debug flavour: the innermost scope of each frame
const M = [];      // namespaces that a script imports, by its program's function id
const no = {__proto__: null};
const {apply, construct, defineProperty, getPrototypeOf, ownKeys, preventExtensions, setPrototypeOf} = Reflect;

/** Leaves the frames above a depth: they ended without saying so. */
function unwind(depth) {
    if (I[1]) {
        while (I[0] > depth) {
            host.left(I[0]);
            I[0]--;
        }
    }
    I[0] = depth;
}

const s = host.statement, n = host.entered;

function o(depth) {
    unwind(depth);
    host.left(depth);
}

/** The value of a yield or await; its second argument enters the frame again. */
function k(value) { return value; }

/** Enters a frame of a function, at a slot. */
function g(id, slot, self = no) {
    const depth = ++I[0];
    N[depth] = id;
    T[depth] = self;
    E[depth] = 0;
    if (I[1])
        host.entered(depth);
    I[depth] = slot;
    return depth;
}

const p = g;

/** Leaves the frame that p entered and gives the value that was made in it. */
function q(depth, value) {
    if (I[1])
        o(depth);
    I[0] = depth - 1;
    return value;
}

/** Makes a value in a frame that is left also when that throws. */
function w(id, slot, make) {
    const depth = g(id, slot);
    try {
        return make();
    } catch (error) {
        throw x(error, depth);
    } finally {
        if (I[1])
            o(depth);
        I[0] = depth - 1;
    }
}

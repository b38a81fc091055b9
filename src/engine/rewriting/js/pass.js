// One run over one source text. The other modules add its methods, a concern each.
//
// Names in inserted code, all behind the prefix: I and N are the slots and function ids of the frame
// stack, d the depth of the running frame, e a caught exception, r a value in transit, h a name that
// only gives a declaration an empty completion value. The rest are helpers of the prelude.

/** What the code that is being rewritten runs in: a function, a program, a parameter list. */
class FrameContext {
    constructor(values) {
        this.depth = '';         // text that gives the frame's depth
        this.functionId = '';    // text that gives the function's id
        this.isProgram = false;  // script and eval code: completion values matter
        this.isParameter = false;
        this.isAsync = false;    // parameters of an async function
        this.suspends = false;   // generators and async functions
        this.isAsyncGenerator = false;
        this.heals = false;      // has for await: statements re-enter the frame when needed
        this.tries = 0;          // try blocks with a catch around this place
        this.loopTries = 0;      // the same at the innermost loop or switch
        // whether these leave a finally block, and with it drop the exception that is in flight
        this.dropsByThrow = false;
        this.dropsByReturn = false;
        this.dropsByJump = false;
        this.awaitsInHead = false; // in the head of for await
        this.scope = 0;          // debug flavour: number of the innermost scope
        this.outerScopes = [];
        this.returns = [];       // edits around the values of return statements
        this.keepsThis = false;  // the frame's `this` is noted
        this.thisMayFail = false; // a derived constructor, or an arrow function in one
        this.superDepth = '';    // such a constructor's depth: where to note `this`
        Object.assign(this, values);
    }
}

class Pass {
    constructor(text, {kind, isDebug, prefix}) {
        this.text = text;
        this.kind = kind;
        this.isDebug = isDebug;
        this.isModule = kind === 'module';
        this.prefix = prefix;
        this.edits = new SourceEdits(text);
        this.functions = [];
        this.scopeCount = 0;
        this.imports = null;     // local name -> where it is read; null without imports
        this.shadows = [];       // sets of names that hide imports
        this.I = prefix + 'I';
        this.e = prefix + 'e';
        this.r = prefix + 'r';
    }

    insert(position, text, removed) { return this.edits.insert(position, text, removed); }
    lineOf(position) { return this.edits.lineOf(position); }
    helper(name) { return this.prefix + name; }

    /** Line and whether a catch of the same function is around: what a frame's slot holds. */
    slotAt(position, context) { return this.lineOf(position) * 2 + (context.tries > 0 ? 1 : 0); }

    /** Enters a function into the table; its id is a place of fixed width (see rewriter.h). */
    addFunction(node, start, name, {isAsync = false, isGenerator = false, keepsThis = false} = {}) {
        const local = this.functions.length;
        this.functions.push({start, end: node.end, line: this.lineOf(start), name: name || '', isAsync,
            isGenerator, keepsThis});
        return this.prefix + 'F' + String(local).padStart(6, '0');
    }

    /** Runs `rewrite` with some members of a context changed. */
    within(context, changes, rewrite) {
        const before = {};
        for (const name in changes)
            before[name] = context[name];
        Object.assign(context, changes);
        rewrite();
        Object.assign(context, before);
    }

    leaveText(depth) {
        return `${this.I}[1]&&${this.prefix}o(${depth}),${this.I}[0]=${depth}-1`;
    }

    /** Leaves a frame that will be entered again; its depth is 0 meanwhile. */
    suspendText(context) {
        return `${this.leaveText(context.depth)},${context.depth}=0`;
    }

    enterAgainText(context, position) {
        const self = context.keepsThis && !context.thisMayFail ? ',this' : '';
        return `${this.prefix}g(${context.functionId},${this.slotAt(position, context)}${self})`;
    }

    /** Enters the frame again unless it is entered. */
    resumeText(context, position) {
        return `${context.depth}=${context.depth}||${this.enterAgainText(context, position)}`;
    }
}

/** Adds a module's methods. */
function passMethods(methods) { Object.assign(Pass.prototype, methods); }

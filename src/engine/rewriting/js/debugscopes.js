// The debug flavour: each scope has a function that makes an object with an accessor for each of its
// variables, and E holds the innermost one of each frame.

passMethods({
    /** Runs `rewrite` with the names as a scope that opens at the position. */
    inDebugScope(position, names, context, rewrite) {
        if (!this.isDebug || names.length === 0) {
            rewrite();
            return;
        }
        this.insert(position, this.openScope(names, context));
        rewrite();
        context.scope = context.outerScopes.pop();
    },

    openScope(names, context) {
        const number = ++this.scopeCount;
        const outer = context.scope;
        context.outerScopes.push(outer);
        context.scope = number;
        return `const ${this.scopeName(number)}=${this.accessors(names, outer)};`;
    },

    /** The scope of a function's parameters and own variables, and of the frame itself. */
    openFunctionScope(node, context) {
        if (!this.isDebug)
            return '';
        const text = this.openScope(functionNames(node), context);
        return `${text}${this.scopeText(context)};`;
    },

    /** The scope of a module's own variables. */
    openProgramScope(program, context) {
        if (!this.isDebug)
            return '';
        const declarations = program.body.map(node => node.declaration && /^Export/.test(node.type)
            ? node.declaration : node).filter(node => !/^(?:Import|Export)/.test(node.type));
        const names = lexicalNames(declarations.filter(node => node.id !== null));
        declarations.forEach(node => node.id !== null && varNames(node, names));
        return `${this.openScope(names, context)}${this.scopeText(context)};`;
    },

    scopeName(number) { return `${this.prefix}v${number}`; },

    accessors(names, outer) {
        const value = this.prefix + 'u';
        const members = [...new Set(names)].filter(name => name !== 'arguments' && name !== 'eval')
            .map(name => `get ${name}(){return ${name}},set ${name}(${value}){${name}=${value}}`);
        const proto = outer ? `${this.scopeName(outer)}()` : 'null';
        return `()=>({${[`__proto__:${proto}`, ...members].join(',')}})`;
    },

    scopeText(context) { return this.scopeOfFrameText(context.depth, context); },

    scopeOfFrameText(depth, context) {
        const place = `${this.prefix}E[${depth}]`;
        // eval code outside its own blocks keeps its caller's scope, which is there already
        const outermost = this.kind === 'eval' && context.isProgram ? place : 0;
        return `${place}=${context.scope ? this.scopeName(context.scope) : outermost}`;
    },
});

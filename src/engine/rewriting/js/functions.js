// Functions: a frame is entered before the first statement and left on every way out.

passMethods({
    /** Rewrites a function; `outer` is the method or property around it, or the function itself. */
    function(node, outer, context, isDerivedConstructor = false) {
        const {start, markAt, name} = this.functionHead(node, outer);
        const isArrow = node.type === 'ArrowFunctionExpression';
        const text = this.text.slice(node.start, node.end);
        const keepsThis = this.isDebug || outer !== node && outer.type !== 'Property' ||
            /\b(?:this|super|eval)\b/.test(text);
        const id = this.addFunction(node, start, name,
            {isAsync: node.async, isGenerator: node.generator, keepsThis});
        this.mark(markAt, id);
        const thisMayFail = isDerivedConstructor || isArrow && context.thisMayFail;
        const parameters = new FrameContext({depth: this.I + '[0]', functionId: id, isParameter: true,
            isAsync: node.async && !node.generator, keepsThis, thisMayFail,
            superDepth: isArrow ? context.superDepth : ''});
        this.shadow(this.imports ? functionNames(node).concat(node.id ? [node.id.name] : []) : [], () => {
            node.params.forEach(parameter => this.pattern(parameter, parameters));
            this.functionBody(node, {id, keepsThis, isArrow, isDerivedConstructor, outer: context});
        });
    },

    /** Where a function's own text begins, where its mark goes (behind the first token), its name. */
    functionHead(node, outer) {
        if (outer === node) {
            const name = node.id && node.id.name;
            if (node.async)
                return {start: node.start, markAt: node.start + 'async'.length, name};
            if (node.type !== 'ArrowFunctionExpression')
                return {start: node.start, markAt: node.start + 'function'.length, name};
            const markAt = this.text[node.start] === '(' ? node.start + 1 : node.params[0].end;
            return {start: node.start, markAt, name};
        }
        const {key} = outer;
        let start = outer.start;
        if (outer.static)
            start = skipBlanks(this.text, start + 'static'.length);
        const name = outer.computed ? '' : key.type === 'Literal' ? String(key.value) : key.name;
        if (node.async)
            return {start, markAt: start + 'async'.length, name};
        if (outer.kind === 'get' || outer.kind === 'set')
            return {start, markAt: start + 'get'.length, name};
        if (node.generator || outer.computed)
            return {start, markAt: start + 1, name};
        return {start, markAt: key.end, name};
    },

    /** Function.prototype.toString finds the author's text by this. */
    mark(position, id) { this.insert(position, `/*${this.prefix}:${id}*/`); },

    /** Stores `this`, or that there is none yet. */
    thisText(depth, {keepsThis, isArrow, isDerivedConstructor}, thisMayFail) {
        const store = value => `${this.prefix}T[${depth}]=${value};`;
        if (isDerivedConstructor)
            return store(this.prefix + 'no');
        if (!keepsThis)
            return '';
        return isArrow && thisMayFail
            ? `try{${store('this')}}catch{${store(this.prefix + 'no')}}` : store('this');
    },

    functionBody(node, details) {
        const {id, isArrow, isDerivedConstructor, outer} = details;
        const isStatic = node.type === 'StaticBlock';
        const suspends = Boolean(node.generator || node.async);
        const depth = this.prefix + 'd';
        const thisMayFail = isDerivedConstructor || isArrow && outer.thisMayFail;
        const heals = Boolean(node.async) && /\bfor\b[^(]*\bawait\b/.test(this.text.slice(node.start, node.end));
        const context = new FrameContext({depth, functionId: id, suspends, heals, thisMayFail,
            keepsThis: details.keepsThis, isAsyncGenerator: Boolean(node.generator && node.async),
            superDepth: isDerivedConstructor ? this.prefix + 'ctor' : isArrow ? outer.superDepth : ''});
        const enter = `${suspends ? 'let ' : 'const '}${depth}=++${this.I}[0]` +
            `${suspends ? ',' + this.r : ''};${this.prefix}N[${depth}]=${id};` +
            (isDerivedConstructor ? `const ${this.prefix}ctor=${depth};` : '') +
            this.thisText(depth, details, thisMayFail) + (this.isDebug ? `${this.prefix}E[${depth}]=0;` : '') +
            `${this.I}[1]&&${this.prefix}n(${depth});`;
        if (isArrow && node.expression) {
            this.arrowExpression(node, context, enter);
            return;
        }
        this.statementBody(node, isStatic, context, enter);
    },

    /** What ends the try block around a function's body. */
    unwindText(context, position) {
        const {depth, suspends} = context;
        return `}catch(${this.e}){${suspends ? this.resumeText(context, position) + ';' : ''}` +
            `throw ${this.prefix}x(${this.e},${depth})}finally{${suspends ? `if(${depth})` : ''}` +
            `${this.leaveText(depth)}}`;
    },

    arrowExpression(node, context, enter) {
        const {body} = node;
        const open = this.insert(body.start, '');
        const scope = this.openFunctionScope(node, context);
        open.text = `{${enter}try{${scope}${this.hookText(body.start, context)};return `;
        this.expression(body, context);
        const {before, after} = this.returnAround(node, context);
        open.text += before;
        this.insert(body.end, after + this.unwindText(context, body.end) + '}');
    },

    /** An async generator awaits what it returns: its frame is left first. */
    returnAround(node, context) {
        if (!node.async || !node.generator)
            return {before: '', after: ''};
        return {before: ` (${this.r}=(0,`, after: `),${this.suspendText(context)},${this.r})`};
    },

    statementBody(node, isStatic, context, enter) {
        const block = isStatic ? node : node.body;
        const statements = block.body;
        let first = 0;
        while (!isStatic && first < statements.length && statements[first].directive !== undefined)
            first++;
        const brace = isStatic ? skipBlanks(this.text, node.start + 'static'.length) : block.start;
        const open = this.insert(first ? statements[first - 1].end : brace + 1, '');
        const inTry = !resistsTryBlock(statements, this.text.slice(block.start, block.end));
        const scope = this.openFunctionScope(node, context);
        this.statements(first ? statements.slice(first) : statements, context);
        open.text = (first ? ';' : '') + enter + (inTry ? 'try{' : this.valueVariable(context)) + scope;
        if (inTry) {
            for (const {before, after, argument} of context.returns) {
                if (!argument)
                    continue;
                const around = this.returnAround(node, context);
                before.text = around.before;
                after.text = around.after;
            }
            this.insert(block.end - 1, this.unwindText(context, block.end - 1));
        } else {
            this.leaveAtReturns(context);
            this.insert(block.end - 1, `;${this.leaveText(context.depth)};`);
        }
    },

    valueVariable(context) { return context.suspends ? '' : `let ${this.r};`; },

    /** Without the try block, frames are left at returns, and by whoever catches an exception. */
    leaveAtReturns(context) {
        const leave = this.leaveText(context.depth);
        for (const {before, after, argument} of context.returns) {
            if (!argument) {
                before.text = leave + ';';
                continue;
            }
            before.text = ` ${this.r}=${isAnonymousDefinition(argument) ? '(0,' : '('}`;
            after.text = `),${leave},${this.r}`;
        }
    },
});

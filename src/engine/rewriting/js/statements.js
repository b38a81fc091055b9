// Statements: the hook in front of each, and what is special about a kind.

// In program code these keep their completion value behind a plain hook.
const VALUE_STATEMENTS = new Set(['ExpressionStatement', 'IfStatement', 'ForStatement', 'ForInStatement',
    'ForOfStatement', 'WhileStatement', 'DoWhileStatement', 'SwitchStatement', 'TryStatement', 'WithStatement',
    'ThrowStatement']);

function needsNoHook(statement) {
    switch (statement.type) {
    case 'FunctionDeclaration':
    case 'EmptyStatement':
    case 'BlockStatement':
    case 'ImportDeclaration':
    case 'ExportAllDeclaration': return true;
    case 'ExportNamedDeclaration':
        return !statement.declaration || statement.declaration.type === 'FunctionDeclaration';
    case 'ExportDefaultDeclaration': return statement.declaration.type === 'FunctionDeclaration';
    }
    return false;
}

passMethods({
    /** Updates the slot and calls the hook while the flag is up. */
    hookText(position, context) {
        const scope = this.isDebug && !context.isParameter ? this.scopeText(context) + ',' : '';
        const heal = context.heals ? this.resumeText(context, position) + ',' : '';
        return `${heal}${scope}${this.I}[${context.depth}]=${this.slotAt(position, context)},` +
            `${this.I}[1]&&${this.prefix}s()`;
    },

    slotText(position, context) {
        return `${this.I}[${context.depth}]=${this.slotAt(position, context)}`;
    },

    /** An expression as a statement that leaves the completion value alone. */
    quiet(expression, context) {
        return context.isProgram ? `{let ${this.prefix}h=(${expression})}` : expression + ';';
    },

    hook(statement, context) {
        if (needsNoHook(statement))
            return;
        const isJump = statement.type === 'BreakStatement' || statement.type === 'ContinueStatement';
        const tries = context.tries;
        if (isJump)
            context.tries = context.loopTries;
        let text = this.hookText(statement.start, context);
        context.tries = tries;
        if (isJump && context.dropsByJump)
            text += `,${this.I}[2]=0`;
        const plain = !context.isProgram || VALUE_STATEMENTS.has(statement.type);
        this.insert(statement.start, plain ? text + ';' : this.quiet(text, context));
    },

    statements(list, context) {
        for (const statement of list) {
            this.hook(statement, context);
            this.statement(statement, context);
        }
    },

    /** A block; `loopNames` are names of the loop head that belong to its debug scope. */
    block(node, context, loopNames) {
        const names = lexicalNames(node.body);
        this.shadow(names, () => {
            this.inDebugScope(node.start + 1, names.concat(loopNames || []), context,
                () => this.statements(node.body, context));
        });
    },

    /** The body of an if, a loop or a with: braces around a single statement. */
    body(statement, context, loopNames) {
        if (statement.type === 'BlockStatement') {
            this.block(statement, context, loopNames);
            return;
        }
        this.insert(statement.start, '{');
        this.inDebugScope(statement.start, loopNames || [], context, () => {
            if (statement.type === 'EmptyStatement')
                this.insert(statement.start, this.quiet(this.hookText(statement.start, context), context));
            this.hook(statement, context);
            this.statement(statement, context);
        });
        this.insert(statement.end, '}');
    },

    statement(node, context) {
        switch (node.type) {
        case 'ExpressionStatement': this.expression(node.expression, context); return;
        case 'BlockStatement': this.block(node, context); return;
        case 'VariableDeclaration': this.variables(node, context); return;
        case 'FunctionDeclaration': this.function(node, node, context); return;
        case 'ClassDeclaration': this.class(node, context); return;
        case 'ReturnStatement': this.returnStatement(node, context); return;
        case 'IfStatement':
            this.expression(node.test, context);
            this.body(node.consequent, context);
            if (node.alternate)
                this.body(node.alternate, context);
            return;
        case 'ForStatement': this.forStatement(node, context); return;
        case 'WhileStatement':
            this.loopTest(node.test, context);
            this.loopBody(node.body, context);
            return;
        case 'DoWhileStatement':
            this.loopBody(node.body, context);
            this.loopTest(node.test, context);
            return;
        case 'ForInStatement':
        case 'ForOfStatement': this.forEachStatement(node, context); return;
        case 'SwitchStatement': this.switchStatement(node, context); return;
        case 'ThrowStatement':
            if (context.dropsByThrow)
                this.insert(node.start, `${this.I}[2]=0;`);
            this.expression(node.argument, context);
            return;
        case 'WithStatement':
            this.expression(node.object, context);
            this.body(node.body, context);
            return;
        case 'LabeledStatement': this.statement(node.body, context); return;
        case 'TryStatement': this.tryStatement(node, context); return;
        case 'BreakStatement':
        case 'ContinueStatement':
        case 'DebuggerStatement':
        case 'EmptyStatement': return;
        case 'ImportDeclaration':
        case 'ExportAllDeclaration':
        case 'ExportNamedDeclaration':
        case 'ExportDefaultDeclaration': this.moduleStatement(node, context); return;
        }
        throw new Error('unknown statement ' + node.type);
    },

    variables(node, context) {
        for (const declarator of node.declarations) {
            this.pattern(declarator.id, context);
            this.expression(declarator.init, context);
        }
    },

    returnStatement(node, context) {
        if (context.dropsByReturn)
            this.insert(node.start, `${this.I}[2]=0;`);
        if (!node.argument) {
            context.returns.push({before: this.insert(node.start, ''), after: null, argument: null});
            return;
        }
        const before = this.insert(node.argument.start, '');
        this.expression(node.argument, context);
        context.returns.push({before, after: this.insert(node.argument.end, ''), argument: node.argument});
    },

    loopTest(test, context) {
        if (!test)
            return;
        if (context.heals)
            this.insert(test.start, `${this.resumeText(context, test.start)},`);
        if (this.imports || !isTrivialTest(test))
            this.insert(test.start, this.slotText(test.start, context) + ',');
        this.expression(test, context);
    },

    loopBody(node, context, names) {
        this.within(context, {loopTries: context.tries, dropsByJump: false},
            () => this.body(node, context, names));
    },

    headNames(declaration) {
        return declaration && declaration.type === 'VariableDeclaration' && declaration.kind !== 'var'
            ? lexicalNames([declaration]) : [];
    },

    forStatement(node, context) {
        const names = this.headNames(node.init);
        this.shadow(names, () => {
            if (node.init && node.init.type === 'VariableDeclaration')
                this.variables(node.init, context);
            else
                this.expression(node.init, context);
            this.loopTest(node.test, context);
            this.expression(node.update, context);
            this.loopBody(node.body, context, names);
        });
    },

    forEachStatement(node, context) {
        const names = this.headNames(node.left);
        this.shadow(names, () => {
            const awaits = node.await && context.suspends;
            context.awaitsInHead = awaits;
            if (node.left.type === 'VariableDeclaration')
                this.variables(node.left, context);
            else
                this.expression(node.left, context);
            context.awaitsInHead = false;
            if (awaits)
                this.forAwait(node, context, names);
            else {
                this.expression(node.right, context);
                this.loopBody(node.body, context, names);
            }
        });
    },

    switchStatement(node, context) {
        this.expression(node.discriminant, context);
        const all = [].concat(...node.cases.map(item => item.consequent));
        this.within(context, {loopTries: context.tries, dropsByJump: false},
            () => this.shadow(lexicalNames(all), () => {
                for (const item of node.cases) {
                    this.expression(item.test, context);
                    this.statements(item.consequent, context);
                }
            }));
    },
});

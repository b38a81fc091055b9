// Expressions and patterns: operators whose meaning host objects may change, names that are imported,
// direct eval.

passMethods({
    expression(node, context) {
        if (!node)
            return;
        const rewrite = this[EXPRESSIONS[node.type]];
        if (rewrite)
            rewrite.call(this, node, context);
        else
            childrenOf(node).forEach(child => this.expression(child, context));
    },

    expressions(nodes, context) { nodes.forEach(node => this.expression(node, context)); },

    leaf() {},

    identifier(node) {
        if (this.isImported(node.name))
            this.insert(node.start, ' ' + this.importText(node.name), node.end - node.start);
    },

    metaProperty(node) {
        if (node.meta.name !== 'import')
            return;
        if (!this.isModule)
            throw new SyntaxError('import.meta outside a module');
        this.insert(node.start, ` ${this.prefix}meta`, node.end - node.start);
    },

    memberExpression(node, context) {
        this.expression(node.object, context);
        if (node.computed)
            this.expression(node.property, context);
    },

    functionExpression(node, context) { this.function(node, node, context); },
    classExpression(node, context) { this.class(node, context); },

    objectExpression(node, context) {
        for (const property of node.properties) {
            if (property.type === 'SpreadElement') {
                this.expression(property.argument, context);
            } else if (property.shorthand) {
                this.shorthand(property, context);
            } else {
                if (property.computed)
                    this.expression(property.key, context);
                if (property.method || property.kind !== 'init')
                    this.function(property.value, property, context);
                else
                    this.expression(property.value, context);
            }
        }
    },

    /** {name} and {name = value}: an imported name must be spelt out. */
    shorthand(property, context) {
        const {value} = property;
        if (this.isImported(property.key.name))
            this.insert(property.key.end, ':' + this.importText(property.key.name));
        if (value.type === 'AssignmentPattern')
            this.expression(value.right, context);
    },

    objectPattern(node, context) {
        for (const property of node.properties) {
            if (property.type === 'RestElement') {
                this.expression(property.argument, context);
            } else if (property.shorthand) {
                this.shorthand(property, context);
            } else {
                if (property.computed)
                    this.expression(property.key, context);
                this.expression(property.value, context);
            }
        }
    },

    binaryExpression(node, context) {
        const {operator, left, right} = node;
        const isEquality = (operator === '==' || operator === '!=') &&
            !isSurelyPrimitive(left) && !isSurelyPrimitive(right);
        if (!isEquality) {
            this.expression(left, context);
            const asks = operator === 'in' && left.type !== 'PrivateIdentifier';
            if (asks)
                this.insert(right.start, ` ${this.prefix}in(`);
            this.expression(right, context);
            if (asks)
                this.insert(right.end, ')');
            return;
        }
        this.insert(node.start, `${operator === '!=' ? ' !' : ' '}${this.prefix}eq(`);
        this.expression(left, context);
        this.insert(skipBlanks(this.text, left.end), ',', 2);
        this.expression(right, context);
        this.insert(node.end, ')');
    },

    newExpression(node, context) {
        let callee = node.callee;
        while (callee && (callee.type === 'MemberExpression' || callee.type === 'TaggedTemplateExpression'))
            callee = callee.object || callee.tag;
        if (callee.type === 'ImportExpression')
            throw new SyntaxError('new import()');
        this.expression(node.callee, context);
        this.expressions(node.arguments, context);
    },

    callExpression(node, context) {
        const {callee} = node;
        if (callee.type === 'Identifier' && callee.name === 'eval' && !node.optional &&
            node.arguments.length > 0 && node.arguments[0].type !== 'SpreadElement') {
            this.directEval(node, context);
        } else if (isIndirectEval(callee, node.optional)) {
            const name = callee.type === 'Identifier' ? callee : callee.expression.expressions[1];
            this.insert(name.start, ` ${this.prefix}ev(`);
            this.insert(name.end, ')');
            this.expressions(node.arguments, context);
        } else if (callee.type === 'Identifier' && this.isImported(callee.name)) {
            this.insert(callee.start, ` (0,${this.importText(callee.name)})`, callee.end - callee.start);
            this.expressions(node.arguments, context);
        } else if (callee.type === 'Super' && context.superDepth) {
            this.insert(node.start, ` (${this.prefix}T[${context.superDepth}]=`);
            this.expressions(node.arguments, context);
            this.insert(node.end, ')');
        } else {
            this.expression(callee, context);
            this.expressions(node.arguments, context);
        }
    },

    /** Stays a direct eval; its text is rewritten on the way, and its frame is left after it. */
    directEval(node, context) {
        const text = node.arguments[0];
        this.insert(node.start, ` ${this.prefix}P(${context.depth},`);
        this.insert(text.start, ` ${this.prefix}R(eval,`);
        this.expression(text, context);
        this.insert(text.end, `,${context.depth})`);
        this.expressions(node.arguments.slice(1), context);
        this.insert(node.end, ')');
    },

    taggedTemplate(node, context) {
        const {tag} = node;
        if (tag.type === 'Identifier' && this.isImported(tag.name))
            this.insert(tag.start, ` (0,${this.importText(tag.name)})`, tag.end - tag.start);
        else
            this.expression(tag, context);
        this.expression(node.quasi, context);
    },

    importExpression(node, context) {
        this.insert(node.start, ` ${this.prefix}imp`, 'import'.length);
        this.insert(node.source.start, `${this.programId},`);
        this.expression(node.source, context);
    },

    /** A binding pattern: of a declaration, a catch or a parameter. */
    pattern(node, context) {
        switch (node && node.type) {
        case undefined:
        case null:
        case 'Identifier': return;
        case 'ObjectPattern':
            for (const property of node.properties) {
                if (property.type === 'RestElement') {
                    this.pattern(property.argument, context);
                } else {
                    if (property.computed)
                        this.expression(property.key, context);
                    this.pattern(property.value, context);
                }
            }
            return;
        case 'ArrayPattern': node.elements.forEach(element => this.pattern(element, context)); return;
        case 'RestElement': this.pattern(node.argument, context); return;
        case 'AssignmentPattern':
            this.pattern(node.left, context);
            this.defaultValue(node.right, context);
            return;
        default: this.expression(node, context);
        }
    },

    /** The default of a parameter runs in a frame of the function, which is not entered yet. */
    defaultValue(node, context) {
        if (!context.isParameter || isHarmless(node) || isAnonymousDefinition(node)) {
            this.expression(node, context);
            return;
        }
        const slot = this.lineOf(node.start) * 2;
        const self = context.keepsThis && !context.thisMayFail ? ',this' : '';
        // an async function swallows what its defaults throw: the closure leaves the frame then. Direct
        // eval must see the parameters' own scope.
        const inClosure = context.isAsync && !/\beval\b/.test(this.text.slice(node.start, node.end));
        this.insert(node.start, inClosure
            ? ` ${this.prefix}w(${context.functionId},${slot},()=>(`
            : ` ${this.prefix}q(${this.prefix}p(${context.functionId},${slot}${self}),`);
        this.expression(node, context);
        this.insert(node.end, inClosure ? '))' : ')');
    },
});

const EXPRESSIONS = {
    __proto__: null,
    Literal: 'leaf',
    ThisExpression: 'leaf',
    Super: 'leaf',
    TemplateElement: 'leaf',
    PrivateIdentifier: 'leaf',
    Identifier: 'identifier',
    MetaProperty: 'metaProperty',
    MemberExpression: 'memberExpression',
    FunctionExpression: 'functionExpression',
    ArrowFunctionExpression: 'functionExpression',
    ClassExpression: 'classExpression',
    ObjectExpression: 'objectExpression',
    ObjectPattern: 'objectPattern',
    BinaryExpression: 'binaryExpression',
    YieldExpression: 'suspension',
    AwaitExpression: 'suspension',
    NewExpression: 'newExpression',
    CallExpression: 'callExpression',
    TaggedTemplateExpression: 'taggedTemplate',
    ImportExpression: 'importExpression',
};

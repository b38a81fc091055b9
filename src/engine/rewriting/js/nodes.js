// What one syntax node is. Nodes are ESTree, as acorn makes them with preserveParens.

const PARTS_THAT_ARE_NO_NODES = new Set([
    'type', 'start', 'end', 'raw', 'operator', 'kind', 'name', 'computed', 'static', 'async', 'generator',
    'method', 'shorthand', 'prefix', 'optional', 'delegate', 'await', 'tail', 'regex', 'bigint',
    'directive', 'sourceType',
]);

/** The child nodes of an expression in source order. */
function childrenOf(node) {
    const children = [];
    for (const part in node) {
        if (PARTS_THAT_ARE_NO_NODES.has(part))
            continue;
        const value = node[part];
        if (Array.isArray(value))
            children.push(...value.filter(item => item && item.type));
        else if (value && typeof value.type === 'string')
            children.push(value);
    }
    return children;
}

function withoutParens(node) {
    while (node && node.type === 'ParenthesizedExpression')
        node = node.expression;
    return node;
}

/** Whether the expression takes its name from where it stands: it must not be moved into a call. */
function isAnonymousDefinition(node) {
    node = withoutParens(node);
    return Boolean(node) && (node.type === 'ArrowFunctionExpression' ||
        (node.type === 'FunctionExpression' || node.type === 'ClassExpression') && !node.id);
}

function isAnonymousClass(node) {
    return isAnonymousDefinition(node) && withoutParens(node).type === 'ClassExpression';
}

/** Evaluating it can neither throw nor run script. */
function isHarmless(node) {
    const type = withoutParens(node).type;
    return type === 'Literal' || type === 'FunctionExpression' || type === 'ArrowFunctionExpression';
}

/** Its value is surely no object, so that == needs no help. */
function isSurelyPrimitive(node) {
    node = withoutParens(node);
    switch (node.type) {
    case 'Literal': return !node.regex;
    case 'TemplateLiteral':
    case 'UnaryExpression':
    case 'UpdateExpression':
    case 'BinaryExpression': return true;
    case 'Identifier': return node.name === 'undefined';
    }
    return false;
}

/** A loop test that cannot throw anything but a reference error: its slot update is not worth a store. */
function isTrivialTest(node) {
    node = withoutParens(node);
    switch (node.type) {
    case 'Identifier':
    case 'Literal': return true;
    case 'BinaryExpression':
        return !['in', 'instanceof', '==', '!='].includes(node.operator) &&
            isTrivialTest(node.left) && isTrivialTest(node.right);
    case 'LogicalExpression': return isTrivialTest(node.left) && isTrivialTest(node.right);
    case 'UnaryExpression': return isTrivialTest(node.argument);
    case 'UpdateExpression': return node.argument.type === 'Identifier';
    case 'MemberExpression':
        return !node.computed && node.property.name === 'length' && node.object.type === 'Identifier';
    }
    return false;
}

/** eval?.(text) and (0,eval)(text): their callee is never seen, so it may be replaced. */
function isIndirectEval(callee, isOptional) {
    const isEval = node => node.type === 'Identifier' && node.name === 'eval';
    if (isEval(callee))
        return isOptional;
    const inner = callee.type === 'ParenthesizedExpression' && callee.expression;
    return Boolean(inner) && inner.type === 'SequenceExpression' && inner.expressions.length === 2 &&
        inner.expressions[0].type === 'Literal' && isEval(inner.expressions[1]);
}

function isLineEnd(char) {
    return char === '\n' || char === '\r' || char === '\u2028' || char === '\u2029';
}

/** Only the line ends of a piece of text: what is left where code is taken out. */
function lineEndsOf(text) {
    let ends = '';
    for (const char of text)
        if (isLineEnd(char))
            ends += char;
    return ends;
}

/** The first position from `at` that is neither white space nor inside a comment. */
function skipBlanks(text, at) {
    for (;;) {
        if (text.startsWith('/*', at)) {
            at = text.indexOf('*/', at) + 2;
        } else if (text.startsWith('//', at)) {
            while (at < text.length && !isLineEnd(text[at]))
                at++;
        } else if (at < text.length && /\s/.test(text[at])) {
            at++;
        } else {
            return at;
        }
    }
}

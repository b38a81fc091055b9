// Which names a piece of code declares.

/** The names that a binding pattern binds. */
function boundNames(pattern, names = []) {
    switch (pattern && pattern.type) {
    case 'Identifier': names.push(pattern.name); break;
    case 'ObjectPattern':
        for (const property of pattern.properties)
            boundNames(property.type === 'RestElement' ? property.argument : property.value, names);
        break;
    case 'ArrayPattern':
        for (const element of pattern.elements)
            boundNames(element, names);
        break;
    case 'AssignmentPattern': boundNames(pattern.left, names); break;
    case 'RestElement': boundNames(pattern.argument, names); break;
    }
    return names;
}

/** The names that `var` and function declarations below a node give to its function. */
function varNames(node, names = []) {
    const all = nodes => nodes.forEach(child => varNames(child, names));
    switch (node && node.type) {
    case 'VariableDeclaration':
        if (node.kind === 'var')
            node.declarations.forEach(declarator => boundNames(declarator.id, names));
        break;
    case 'BlockStatement':
    case 'Program':
    case 'StaticBlock': all(node.body); break;
    case 'IfStatement': all([node.consequent, node.alternate]); break;
    case 'ForStatement': all([node.init, node.body]); break;
    case 'ForInStatement':
    case 'ForOfStatement': all([node.left, node.body]); break;
    case 'WhileStatement':
    case 'DoWhileStatement':
    case 'WithStatement':
    case 'LabeledStatement': varNames(node.body, names); break;
    case 'SwitchStatement': node.cases.forEach(item => all(item.consequent)); break;
    case 'TryStatement': all([node.block, node.handler && node.handler.body, node.finalizer]); break;
    case 'FunctionDeclaration': names.push(node.id.name); break;
    }
    return names;
}

/** The names that a statement list declares in its own block. */
function lexicalNames(statements, names = []) {
    for (const statement of statements) {
        const declaration = statement.type === 'ExportNamedDeclaration' && statement.declaration || statement;
        if (declaration.type === 'VariableDeclaration') {
            if (declaration.kind !== 'var')
                declaration.declarations.forEach(declarator => boundNames(declarator.id, names));
        } else if ((declaration.type === 'ClassDeclaration' || declaration.type === 'FunctionDeclaration') &&
                   declaration.id) {
            names.push(declaration.id.name);
        }
    }
    return names;
}

/** All names of a function's own: parameters, variables, declarations of its body. */
function functionNames(node) {
    const names = [];
    const body = node.type === 'StaticBlock' ? node : node.body;
    (node.params || []).forEach(parameter => boundNames(parameter, names));
    if (body.type !== 'StaticBlock' && body.type !== 'BlockStatement')
        return names;
    varNames(body, names);
    return lexicalNames(body.body, names);
}

/**
 * A function body goes into a try block, where its function declarations belong to the block. That
 * changes nothing unless the same name is declared twice, or a direct eval may declare it again.
 */
function resistsTryBlock(statements, text) {
    const functions = new Set();
    for (const statement of statements) {
        if (statement.type !== 'FunctionDeclaration')
            continue;
        if (functions.has(statement.id.name))
            return true;
        functions.add(statement.id.name);
    }
    if (functions.size === 0)
        return false;
    if (/\beval\b/.test(text))
        return true;
    return statements.some(statement => statement.type !== 'FunctionDeclaration' &&
        varNames(statement).some(name => functions.has(name)));
}

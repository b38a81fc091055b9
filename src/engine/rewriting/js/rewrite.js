// The entry points that C++ calls.

// Regular expressions are the engine's business, which knows more of them than the parser.
acorn.Parser.prototype.validateRegExpFlags = function() {};
acorn.Parser.prototype.validateRegExpPattern = function() {};

function parse(text, kind) {
    return acorn.parse(text, {
        ecmaVersion: 'latest',
        sourceType: kind === 'module' ? 'module' : 'script',
        allowImportExportEverywhere: kind === 'script',
        allowAwaitOutsideFunction: false,
        allowSuperOutsideMethod: kind === 'eval',
        allowHashBang: kind !== 'function',
        preserveParens: true,
    });
}

/** A prefix that does not occur in the text. */
function freePrefix(text) {
    let prefix = '$t$';
    for (let n = 1; text.includes(prefix); n++)
        prefix = `$t${n}$`;
    return prefix;
}

passMethods({
    insertLast(text) { this.lastText = text; },

    program(program) {
        this.readModuleSyntax(program);
        const {body} = program;
        const isDefaultFunction = node => node.type === 'ExportDefaultDeclaration' &&
            node.declaration.type === 'FunctionDeclaration' && !node.declaration.id;
        this.hasDefaultFunction = body.some(isDefaultFunction);
        this.programId = this.addFunction({end: this.text.length}, 0, this.isModule ? '(module)' : '(program)',
            {keepsThis: true});
        const context = new FrameContext({
            depth: this.prefix + (this.isModule ? 'd' : 'D__'),
            functionId: this.programId,
            isProgram: !this.isModule,
        });
        if (this.isModule)
            this.wrapModule(program, context);
        if (this.kind === 'function') {
            body.forEach(statement => this.statement(statement, context));
            return;
        }
        let first = 0;
        while (first < body.length && body[first].directive !== undefined)
            first++;
        this.statements(body.slice(first), context);
    },

    /** [prefix, code, edits, numbers of the functions, their names, module record as JSON] */
    result() {
        const {code, edits} = this.edits.apply();
        const numbers = [];
        for (const {start, end, line, isAsync, isGenerator, keepsThis} of this.functions)
            numbers.push(start, end, line, (isAsync ? 1 : 0) | (isGenerator ? 2 : 0) | (keepsThis ? 4 : 0));
        const names = this.functions.map(({name}) => name.replace(/\n/g, ' ')).join('\n');
        const {requests, needs, locals, reexports, stars, isUsed} = this.record;
        const info = this.isModule || isUsed
            ? JSON.stringify({requests, needs, reexports, stars}) : '';
        return [this.prefix, code + (this.lastText || ''), edits, packNumbers(numbers), names, info];
    },
});

function rewrite(text, kind, isDebug) {
    const pass = new Pass(text, {kind, isDebug, prefix: freePrefix(text)});
    pass.program(parse(text, kind));
    return pass.result();
}

/**
 * For the syntax check of a text with import or export, which the engine can only parse as a script:
 * [the text without them, what the parser says of it ('' if nothing), the line]. A text that the parser
 * refuses loses what looks like import and export at the start of a line.
 */
function withoutModuleSyntax(text) {
    try {
        const edits = new SourceEdits(text);
        for (const node of parse(text, 'module').body) {
            const {declaration} = node;
            if (node.type === 'ExportDefaultDeclaration')
                edits.blank(node.start, declaration.start, declaration.id ? '' : 'void ');
            else if (node.type === 'ExportNamedDeclaration' && declaration)
                edits.blank(node.start, declaration.start);
            else if (/^(?:Import|Export)\w*Declaration$/.test(node.type))
                edits.blank(node.start, node.end, ';');
        }
        return [edits.apply().code, '', 0];
    } catch (error) {
        const clause = String.raw`(?:\*(?:\s*as\s+[\w$]+)?|[\w$]+\s*,?\s*)?(?:\{[^{}]*\}|\*\s*as\s+[\w$]+)?`;
        const plain = text
            .replace(new RegExp(String.raw`^(\s*)(?:import|export)\s*${clause}\s*from\s*(?:"[^"\n]*"|'[^'\n]*')`, 'gm'),
                (all, blanks) => blanks + ';' + lineEndsOf(all.slice(blanks.length)))
            .replace(/^(\s*)import\s*(?:"[^"\n]*"|'[^'\n]*')/gm, '$1;')
            .replace(/^(\s*)export\s+default\b/gm, '$1void ')
            .replace(/^(\s*)export\s*\{[^{}]*\}/gm, (all, blanks) => blanks + ';' + lineEndsOf(all.slice(blanks.length)))
            .replace(/^(\s*)export\s+(?=(?:async|function|class|const|let|var)\b)/gm, '$1');
        const message = String(error.message).replace(/ \(\d+:\d+\)$/, '');
        return [plain, message, error.loc ? error.loc.line : 0];
    }
}

// import and export. An imported name has no binding: each use reads the module's namespace. A script
// with imports stays a script; a module becomes a generator function whose first step gives its
// exports and whose second step runs it.

function moduleName(node) { return node.type === 'Literal' ? node.value : node.name; }

/** What a text asks of other modules and offers to them. */
class ModuleRecord {
    constructor() {
        this.requests = [];  // [module name as written, line]
        this.needs = [];     // [request, name, line]: names that must exist
        this.locals = [];    // [exported name, local name]
        this.reexports = {}; // exported name -> {request, name} or {request, isNamespace}
        this.stars = [];     // requests of export *
        this.isUsed = false;
    }

    request(source, line) {
        const index = this.requests.findIndex(([name]) => name === source.value);
        return index < 0 ? this.requests.push([source.value, line]) - 1 : index;
    }

    reexport(name, target) {
        Object.defineProperty(this.reexports, name, {value: target, enumerable: true, configurable: true});
    }
}

passMethods({
    /** Reads the declarations at the top of the program before anything is rewritten. */
    readModuleSyntax(program) {
        this.record = new ModuleRecord();
        this.topLevel = new Set(program.body);
        for (const statement of program.body) {
            const read = this['read' + statement.type];
            if (read) {
                this.record.isUsed = true;
                read.call(this, statement);
            }
        }
        for (const [name, local] of this.record.locals.splice(0)) {
            const imported = this.imports && this.imports.get(local);
            if (imported)
                this.record.reexport(name, imported);
            else
                this.record.locals.push([name, local]);
        }
    },

    readImportDeclaration({start, source, specifiers}) {
        const line = this.lineOf(start);
        const request = this.record.request(source, line);
        for (const specifier of specifiers) {
            this.imports = this.imports || new Map();
            if (specifier.type === 'ImportNamespaceSpecifier') {
                this.imports.set(specifier.local.name, {request, isNamespace: true});
                continue;
            }
            const name = specifier.type === 'ImportDefaultSpecifier' ? 'default' : moduleName(specifier.imported);
            this.imports.set(specifier.local.name, {request, name});
            this.record.needs.push([request, name, line]);
        }
    },

    readExportAllDeclaration({start, source, exported}) {
        const request = this.record.request(source, this.lineOf(start));
        if (exported)
            this.record.reexport(moduleName(exported), {request, isNamespace: true});
        else
            this.record.stars.push(request);
    },

    readExportNamedDeclaration({start, source, specifiers, declaration}) {
        const line = this.lineOf(start);
        const request = source && this.record.request(source, line);
        for (const {exported, local} of specifiers) {
            if (source) {
                this.record.reexport(moduleName(exported), {request, name: moduleName(local)});
                this.record.needs.push([request, moduleName(local), line]);
            } else {
                this.record.locals.push([moduleName(exported), moduleName(local)]);
            }
        }
        const names = !declaration ? [] : declaration.type === 'VariableDeclaration'
            ? [].concat(...declaration.declarations.map(declarator => boundNames(declarator.id)))
            : [declaration.id.name];
        names.forEach(name => this.record.locals.push([name, name]));
    },

    readExportDefaultDeclaration({declaration}) {
        const isNamed = /^(?:Function|Class)Declaration$/.test(declaration.type) && declaration.id;
        this.record.locals.push(['default', isNamed ? declaration.id.name : this.prefix + 'def']);
    },

    moduleStatement(node, context) {
        if (!this.topLevel.has(node))
            throw new SyntaxError(`'import' and 'export' may only appear at the top level`);
        const {declaration} = node;
        if (node.type === 'ExportDefaultDeclaration') {
            this.exportDefault(node, context);
        } else if (declaration) {
            this.edits.blank(node.start, declaration.start);
            this.statement(declaration, context);
        } else {
            this.edits.blank(node.start, node.end, ';');
        }
    },

    exportDefault({start, declaration}, context) {
        const blank = text => this.edits.blank(start, declaration.start, text);
        const isClass = declaration.type === 'ClassDeclaration';
        if (declaration.type === 'FunctionDeclaration') {
            blank('');
            if (!declaration.id) {
                const head = /^(?:async\s+)?function\s*\*?/.exec(this.text.slice(declaration.start, declaration.end));
                this.insert(declaration.start + head[0].length, ` ${this.prefix}def`);
            }
            this.function(declaration, declaration, context);
            return;
        }
        if (isClass && declaration.id) {
            blank('');
            this.class(declaration, context);
            return;
        }
        // an anonymous definition is named "default"
        const isNamedHere = isClass || isAnonymousDefinition(declaration);
        const open = this.isModule ? `const ${this.prefix}def=` : `{let ${this.prefix}h=`;
        blank(open + (isNamedHere ? '({default:' : '('));
        if (isClass)
            this.class(declaration, context);
        else
            this.expression(declaration, context);
        this.insert(declaration.end, (isNamedHere ? '}).default' : ')') + (this.isModule ? '' : '}'));
    },

    isImported(name) {
        return this.imports !== null && this.imports.has(name) && !this.shadows.some(names => names.has(name));
    },

    importText(name) {
        const {request, name: exported, isNamespace} = this.imports.get(name);
        const module = `${this.isModule ? this.prefix + 'm' : `${this.prefix}M[${this.programId}]`}[${request}]`;
        return isNamespace ? module : `${module}[${JSON.stringify(exported)}]`;
    },

    /** Runs `rewrite` where the names hide imports. */
    shadow(names, rewrite) {
        if (!this.imports || names.length === 0) {
            rewrite();
            return;
        }
        this.shadows.push(new Set(names));
        rewrite();
        this.shadows.pop();
    },

    /** The generator function around a module's code; nothing of it is on a line of its own. */
    wrapModule(program, context) {
        const {prefix, I} = this;
        const depth = prefix + 'd', def = prefix + 'def';
        const getters = this.record.locals.map(([name, local]) => `[${JSON.stringify(name)}]:()=>${local}`);
        const names = this.hasDefaultFunction ? `${prefix}name(${def});` : '';
        this.insert(0, `(function*(${prefix}m,${prefix}meta){"use strict";${names}` +
            `yield {${['__proto__:null', ...getters].join(',')}};const ${depth}=++${I}[0];` +
            `${prefix}N[${depth}]=${this.programId};${prefix}T[${depth}]=void 0;` +
            this.openProgramScope(program, context) + `${I}[1]&&${prefix}n(${depth});` +
            (this.text.startsWith('#!') ? '//' : ''));
        this.insertLast(`\n;${this.leaveText(depth)}})`);
    },
});

// The module loader: ECMA-262's linking over generator functions. Loading is synchronous.

const modules = new Map();
const findModule = key => apply(Map.prototype.get, modules, [key]);
const PromiseClass = Promise, SyntaxErrorClass = SyntaxError, TypeErrorClass = TypeError;
const ReferenceErrorClass = ReferenceError;
const {resolve: promiseResolve, reject: promiseReject} = Promise;
const {set: setInMap, delete: deleteFromMap, forEach: forEachInMap} = Map.prototype;
const parseJson = JSON.parse;
const hasOwnProperty = Object.prototype.hasOwnProperty;
const hasOwn = (object, key) => apply(hasOwnProperty, object, [key]);
const {next: generatorNext} = (function*() {})();
const step = generator => apply(generatorNext, generator, []);

function mapArray(list, make) {
    const made = [];
    for (let i = 0; i < list.length; i++)
        made[i] = make(list[i]);
    return made;
}

class Module {
    constructor(path) {
        this.path = path;
        this.namespace = {__proto__: null};
        this.locals = null;     // exported name -> function that reads it
        this.record = null;     // what imports.js found in the text
        this.dependencies = [];
        this.isLinked = false;
        this.isEvaluated = false;
        this.failure = null;    // {error} of an evaluation that threw
        this.steps = null;      // the generator
    }
}

/** An error of the host, placed at the import that met it. */
function atImport(ask, importer, line) {
    try {
        return ask();
    } catch (error) {
        host.place(error, importer, line);
        throw error;
    }
}

function compile(path, importer, line) {
    const text = atImport(() => host.readModule(path), importer, line);
    return host.compileModule(path, text);
}

function load([name, line], importer) {
    const path = atImport(() => host.resolveModule(name, importer), importer, line);
    const known = findModule(path);
    if (known !== undefined)
        return known;
    const module = new Module(path);
    apply(setInMap, modules, [path, module]);
    try {
        const [generator, info] = compile(path, importer, line);
        module.record = parseJson(info);
        module.dependencies = loadAll(module.record.requests, path);
        const namespaces = mapArray(module.dependencies, ({namespace}) => namespace);
        module.steps = apply(generator, undefined, [namespaces, {__proto__: null, url: path}]);
        module.locals = step(module.steps).value;
    } catch (error) {
        apply(deleteFromMap, modules, [path]);
        throw error;
    }
    return module;
}

function loadAll(requests, importer) { return mapArray(requests, request => load(request, importer)); }

/** The module and local name behind an exported name; null when there is none, or 'ambiguous'. */
function resolveExport(module, name, seen = []) {
    for (const [seenModule, seenName] of seen)
        if (seenModule === module && seenName === name)
            return null;
    seen = [...seen, [module, name]];
    if (module.locals && name in module.locals)
        return {module, name};
    const {reexports, stars} = module.record;
    if (hasOwn(reexports, name)) {
        const {request, name: target, isNamespace} = reexports[name];
        const dependency = module.dependencies[request];
        return isNamespace ? {module: dependency, name: null} : resolveExport(dependency, target, seen);
    }
    if (name === 'default')
        return null;
    let found = null;
    for (const request of stars) {
        const next = resolveExport(module.dependencies[request], name, seen);
        if (next === 'ambiguous')
            return next;
        if (next && found && (next.module !== found.module || next.name !== found.name))
            return 'ambiguous';
        found = found || next;
    }
    return found;
}

function exportedNames(module, seen = new Set()) {
    if (seen.has(module))
        return [];
    seen.add(module);
    const names = [...ownKeys(module.locals), ...ownKeys(module.record.reexports)];
    for (const request of module.record.stars)
        for (const name of exportedNames(module.dependencies[request], seen))
            if (name !== 'default')
                names.push(name);
    return names;
}

function notFound(name, target, importer, line) {
    const error = new SyntaxErrorClass(`Importing binding name '${name}' ` + (target === 'ambiguous'
        ? 'cannot be resolved due to ambiguous multiple bindings.' : 'is not found.'));
    host.place(error, importer, line);
    return error;
}

function checkNeeds(needs, dependencies, importer) {
    for (const [request, name, line] of needs) {
        const target = resolveExport(dependencies[request], name);
        if (!target || target === 'ambiguous')
            throw notFound(name, target, importer, line);
    }
}

function link(module) {
    if (module.isLinked)
        return;
    module.isLinked = true;
    module.dependencies.forEach(link);
    for (const name of [...new Set(exportedNames(module))].sort()) {
        const target = resolveExport(module, name);
        if (!target || target === 'ambiguous')
            continue;
        const {namespace} = target.module;
        const get = target.name === null ? () => namespace : target.module.locals[target.name];
        const set = () => { throw new TypeErrorClass('Attempted to assign to readonly property.'); };
        defineProperty(module.namespace, name, {get, set, enumerable: true, configurable: false});
    }
    checkNeeds(module.record.needs, module.dependencies, module.path);
    defineProperty(module.namespace, Symbol.toStringTag, {value: 'Module'});
    preventExtensions(module.namespace);
}

function evaluate(module) {
    if (module.failure)
        throw module.failure.error;
    if (module.isEvaluated)
        return;
    module.isEvaluated = true;
    module.dependencies.forEach(evaluate);
    const depth = I[0];
    try {
        step(module.steps);
    } catch (error) {
        module.failure = {error};
        throw x(error, depth);
    }
}

/** Links a module; one that fails is forgotten, so that it can be mended and imported again. */
function linkOrForget(module) {
    try {
        link(module);
    } catch (error) {
        apply(forEachInMap, modules, [(known, path) => {
            if (!known.isEvaluated)
                apply(deleteFromMap, modules, [path]);
        }]);
        throw error;
    }
}

/** import(name) in the code of a function. */
function imp(id, name) {
    try {
        const module = load([`${name}`, 0], host.urlOf(id));
        linkOrForget(module);
        evaluate(module);
        return apply(promiseResolve, PromiseClass, [module.namespace]);
    } catch (error) {
        if (I[3] !== 0)
            throw error;
        return apply(promiseReject, PromiseClass, [error]);
    }
}

/** Gives a script what it imports, before it runs. */
function importInto(id, info, url) {
    const {requests, needs} = parseJson(info);
    const dependencies = loadAll(requests, url);
    dependencies.forEach(linkOrForget);
    checkNeeds(needs, dependencies, url);
    dependencies.forEach(evaluate);
    M[id] = mapArray(dependencies, ({namespace}) => namespace);
}

/** The name of a module's anonymous default function. */
function name(def) { defineProperty(def, 'name', {value: 'default', configurable: true}); }

// Finds and runs the functions of steps and hooks. Every interpreter evaluates it once, before any script.
//
// Scripts fill two tables: _step_functions, an array of tables by keyword ("" for any), each of steps by
// pattern, { text, regex, subroutine, filepos, placeholders }; and _hook_functions, arrays of functions by
// "OnScenarioStart" and its like. A match is [subroutine, captured arguments, filepos, placeholders, text].

function _torvixStepWithTextAlreadyInList(text, steps) {
    for (let i = 0; i < steps.length; ++i) {
        if (steps[i][4] === text)
            return true;
    }
    return false;
}

function _torvixFindMatchingStepFunctions(keyword, step_text) {
    let found = [];
    const tables = this._step_functions;
    if (tables && tables.length) {
        for (let i = 0; i < tables.length; ++i) {
            const table = tables[i][keyword];
            if (!table)
                continue;
            for (const pattern in table) {
                const step = table[pattern];
                let matches = null;
                if (step.regex)
                    matches = step.regex.exec(step_text);
                else if (step.text === step_text)
                    matches = [step_text];
                if (matches && !_torvixStepWithTextAlreadyInList(step.text, found)) {
                    matches.shift();
                    found.push([step.subroutine, matches, step.filepos, step.placeholders, step.text]);
                }
            }
        }
    }
    if (keyword !== "")
        found = found.concat(_torvixFindMatchingStepFunctions("", step_text));
    return found;
}

function _torvixExecuteStep(keyword, step_text, context) {
    const found = _torvixFindMatchingStepFunctions(keyword, step_text);
    if (found.length === 0)
        return 1;
    if (found.length > 1)
        return "__TorvixMultipleMatches " + found.length + " steps match the step text";
    const f = found[0][0];
    const captured = found[0][1];
    const placeholders = found[0][3];
    if (captured && placeholders && captured.length === placeholders.length) {
        for (let i = 0; i < captured.length; ++i)
            captured[i] = placeholders[i](captured[i]);
    }
    captured.unshift(context);
    return f.apply(null, captured);
}

function _torvixExecuteHook(when, what, context) {
    const hooks = this._hook_functions && this._hook_functions["On" + what + when];
    if (hooks) {
        for (let i = 0; i < hooks.length; ++i)
            hooks[i](context);
    }
}

// One step only, and a plain text before every regular expression.
function _torvixMatchSteps(keyword, step_text) {
    const found = [];
    const tables = this._step_functions || [];
    for (let i = 0; i < tables.length && found.length === 0; ++i) {
        const table = tables[i][keyword] || tables[i][""];
        if (table && Object.hasOwn(table, step_text) && !table[step_text].regex)
            found.push(table[step_text].filepos);
    }
    for (let i = 0; i < tables.length && found.length === 0; ++i) {
        const table = tables[i][keyword] || tables[i][""];
        for (const pattern in table) {
            const step = table[pattern];
            if (step.regex ? step.regex.exec(step_text) : step.text === step_text) {
                found.push(step.filepos);
                break;
            }
        }
    }
    if (found.length > 0 || keyword === "")
        return found;
    return _torvixMatchSteps("", step_text);
}

function _torvixFetchPatterns(type) {
    const patterns = [];
    const tables = this._step_functions || [];
    const addAll = (table) => {
        for (const pattern in table) {
            if (table[pattern].text)
                patterns.push(table[pattern].text);
        }
    };
    for (let i = 0; i < tables.length; ++i) {
        addAll(tables[i][type]);
        if (type !== "")
            addAll(tables[i][""]);
    }
    return patterns;
}

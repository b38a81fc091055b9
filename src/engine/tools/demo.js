// What ./demo evaluates: a script as a test would be written, with the engine alone.
class Counter {
    #count = 0;
    increment() { return ++this.#count; }
    get count() { return this.#count; }
}

function main() {
    const counter = new Counter();
    for (const {name, times} of [{name: "first", times: 2}, {name: "second", times: 3}]) {
        for (let i = 0; i < times; i++)
            counter.increment();
        print(`${name}: ${counter.count}`);
    }
    try {
        counter.missing();
    } catch (error) {
        print(`caught in line ${error.line}: ${error.message}`);
    }
    return counter.count;
}

main();

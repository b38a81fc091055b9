function textOf(name) {
    const found = findAllObjects(name)[0];
    return found.text;
}

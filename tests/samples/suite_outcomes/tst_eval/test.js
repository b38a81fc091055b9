function main() {
    const check = "test.verify(false, 'in evaluated text')";
    eval(check);
    const later = new Function("test.fail('in a made function')");
    later();
    test.exception("throwing()");
    eval("\n\nundefined.x");
}

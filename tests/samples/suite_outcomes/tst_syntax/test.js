function main() {
    startApplication("calculator");
    if (true {
    }
}

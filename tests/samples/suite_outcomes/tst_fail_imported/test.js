import { checkDisplay, checkDisplayFor, press } from 'checks.js';

function main() {
    startApplication("calculator");
    press("4");
    checkDisplay("5");
    checkDisplayFor("6");
}

// Sections group the results in the report.
import { press, shown, start } from 'calculator.js';

function main() {
    start();
    test.startSection("Store and recall");
    press("4", "2", "MS", "Clear All");
    test.compare(shown(), "0", "the display is cleared");
    press("MR");
    test.compare(shown(), "42", "the memory is recalled");
    test.endSection();

    test.startSection("Add to the memory");
    press("8", "M+", "MR");
    test.compare(shown(), "50", "42 and 8");
    test.endSection();

    test.startSection("Division by zero");
    press("\u00f7", "0", "=");
    test.compare(shown(), "####", "the display says that it cannot be done");
    test.endSection();
}

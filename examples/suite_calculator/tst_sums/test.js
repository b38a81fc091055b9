// Driven by data: a new line in shared/testdata/sums.csv is a new check.
import * as calculator from 'calculator.js';

function main() {
    calculator.start();
    for (const sum of testData.dataset("sums.csv")) {
        const keys = testData.field(sum, "keys");
        calculator.press("Clear All", ...keys.split(" "));
        test.compare(calculator.shown(), testData.field(sum, "result"), testData.field(sum, "about"), keys);
    }
}

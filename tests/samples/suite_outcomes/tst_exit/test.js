import * as names from 'names.js';

function main() {
    const app = startApplication("application");
    activateItem(waitForObject(names.menuBar), "File.Exit");
    test.verify(waitFor(() => !app.isRunning, 2000), "the application has ended");
    findObject(names.menuBar);
}

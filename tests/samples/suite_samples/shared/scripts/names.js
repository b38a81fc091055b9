// The names of the sample applications' objects, in one place.
export const window = type => ({ type, visible: true });
export const menuBar = { type: "QMenuBar" };
export const messageBox = { type: "QMessageBox", visible: true };
export const button = (text, window) => window ? { type: "QPushButton", text, window }
                                               : { type: "QPushButton", text, visible: true };

export const application = {
    window: { type: "MainWindow", visible: true },
    text: { type: "QPlainTextEdit" },
    toolButton: text => ({ type: "QToolButton", text, visible: true }),
};

// A field is named by the group box around it.
export const lineEdits = {
    combo: group => ({ type: "QComboBox", container: { type: "QGroupBox", title: group } }),
    field: group => ({ type: "QLineEdit", container: { type: "QGroupBox", title: group } }),
};

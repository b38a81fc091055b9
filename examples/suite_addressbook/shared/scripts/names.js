// The names of the address book's objects, in one place.
export const window = { type: "MainWindow", visible: true };
export const menuBar = { type: "QMenuBar", window };
export const tabBar = { type: "QTabBar", window };
export const contacts = { type: "QTableView", visible: true, window }; // of the tab that is shown
export const header = { type: "QHeaderView", visible: true, window }; // of the columns

export const dialog = { type: "AddDialog", visible: true }; // for a new contact, and to edit one
export const nameField = { type: "QLineEdit", window: dialog };
export const addressField = { type: "QTextEdit", window: dialog };
export const okButton = { type: "QPushButton", text: "OK", window: dialog };

export const message = { type: "QMessageBox", visible: true };
export const messageText = { type: "QLabel", name: "qt_msgbox_label", window: message };
export const messageOk = { type: "QPushButton", window: message }; // its only one

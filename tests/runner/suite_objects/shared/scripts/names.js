import { RegularExpression, Wildcard } from "objectmaphelper.js";

export const mainWindow = { type: "MainWindow", windowTitle: /tar.et/i };
export const controls = { type: "Controls", window: mainWindow };
export const count = { type: "QPushButton", text: new Wildcard("*Do c?unt"), container: controls };
export const modal = { type: "QPushButton", text: new RegularExpression(".*mod[ae]l"), container: controls };
export const disabled = { type: "QPushButton", name: "disabled", window: mainWindow };
export const nameEdit = { type: "QLineEdit", buddy: { type: "QLabel", text: /\u0026N[^]me\x3a/ } };
export const dialog = { type: "QDialog", name: "modalDialog" };

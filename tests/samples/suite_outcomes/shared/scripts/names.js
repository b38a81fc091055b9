// The names of the objects, in one place.
export const display = { type: "QLineEdit", window: { type: "Calculator" } };
export const button = text => ({ type: "Button", text });
export const menuBar = { type: "QMenuBar" };

// The names of the calculator's objects, in one place.
export const window = { type: "Calculator", visible: true };
export const display = { type: "QLineEdit", window };
export const button = text => ({ type: "Button", text, window });

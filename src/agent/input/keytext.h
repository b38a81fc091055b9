#pragma once

#include <QString>
#include <QVector>
#include <Qt>

namespace Torvix::Agent {

/** One key with what is held and the text that it gives. */
struct KeyStroke
{
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    QString text;
    /** An ordinary character, rather than a key in angle brackets. */
    bool isPlainText = true;
};

/**
 * The keys that type `text`. `<Return>`, `<PageUp>` or `<Ctrl+Alt+Del>` is one key; what stands in
 * angle brackets and is no key of more than one letter is itself, as in `<b>`.
 */
QVector<KeyStroke> keyStrokes(const QString& text);

/** The text form of a key stroke, which keyStrokes() reads again. */
QString keyText(int key, Qt::KeyboardModifiers modifiers, const QString& text);

/** The modifier keys themselves. */
QVector<int> keysOf(Qt::KeyboardModifiers modifiers);

/** Qt's modifiers, or those of the scripts' `Modifier` constants (128 control, 256 shift, ...). */
Qt::KeyboardModifiers modifiersOf(int number);

} // namespace Torvix::Agent

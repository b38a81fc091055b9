#include "agent/input/keytext.h"

#include <QKeySequence>

#include <algorithm>
#include <array>

namespace Torvix::Agent {

namespace {

struct ModifierName
{
    const char* prefix;
    Qt::KeyboardModifier modifier;
    int key;
    /** As the scripts' `Modifier` constants have it. */
    int scriptValue;
};

constexpr std::array<ModifierName, 4> modifierNames = {{
    {"Ctrl+", Qt::ControlModifier, Qt::Key_Control, 128},
    {"Shift+", Qt::ShiftModifier, Qt::Key_Shift, 256},
    {"Alt+", Qt::AltModifier, Qt::Key_Alt, 512},
    {"Meta+", Qt::MetaModifier, Qt::Key_Meta, 1024},
}};

/** The key that a text in angle brackets names; false when it is none. */
bool readKey(QString name, KeyStroke* stroke)
{
    stroke->isPlainText = false;
    bool found = true;
    while (found) {
        found = false;
        for (const ModifierName& each : modifierNames) {
            const QLatin1String prefix(each.prefix);
            if (name.startsWith(prefix, Qt::CaseInsensitive) && name.size() > prefix.size()) {
                name.remove(0, prefix.size());
                stroke->modifiers |= each.modifier;
                found = true;
            }
        }
    }
    if (name.size() == 1 && stroke->modifiers == Qt::NoModifier)
        return false;
    static const QMap<QString, QString> aliases = {{QStringLiteral("escape"), QStringLiteral("Esc")},
                                                   {QStringLiteral("delete"), QStringLiteral("Del")},
                                                   {QStringLiteral("insert"), QStringLiteral("Ins")},
                                                   {QStringLiteral("pageup"), QStringLiteral("PgUp")},
                                                   {QStringLiteral("pagedown"), QStringLiteral("PgDown")}};
    const QKeySequence sequence(aliases.value(name.toLower(), name), QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0] == Qt::Key_unknown || sequence[0] == 0)
        return false;
    stroke->key = sequence[0] & ~int(Qt::KeyboardModifierMask);
    if (name.size() == 1 && (stroke->modifiers & Qt::ControlModifier) && name.at(0).isLetter())
        stroke->text = QChar(name.at(0).toUpper().unicode() & 0x1f);
    else if (name.size() == 1)
        stroke->text = name;
    else if (stroke->key == Qt::Key_Space)
        stroke->text = QStringLiteral(" ");
    else if (stroke->key == Qt::Key_Return || stroke->key == Qt::Key_Enter)
        stroke->text = QStringLiteral("\r");
    return true;
}

KeyStroke strokeOf(QChar character)
{
    KeyStroke stroke;
    stroke.text = character;
    if (character == QLatin1Char('\n')) {
        stroke.key = Qt::Key_Return;
        stroke.text = QStringLiteral("\r");
    } else if (character == QLatin1Char('\t')) {
        stroke.key = Qt::Key_Tab;
    } else {
        stroke.key = character.toUpper().unicode();
        if (character.isUpper())
            stroke.modifiers = Qt::ShiftModifier;
    }
    return stroke;
}

} // namespace

QVector<KeyStroke> keyStrokes(const QString& text)
{
    QVector<KeyStroke> strokes;
    for (int i = 0; i < text.size(); ++i) {
        const int end = text.at(i) == QLatin1Char('<') ? text.indexOf(QLatin1Char('>'), i) : -1;
        KeyStroke stroke;
        if (end > i + 1 && readKey(text.mid(i + 1, end - i - 1), &stroke)) {
            strokes.append(stroke);
            i = end;
        } else if (text.at(i).isHighSurrogate() && i + 1 < text.size()) {
            stroke.text = text.mid(i++, 2);
            strokes.append(stroke);
            strokes.last().isPlainText = true;
        } else {
            strokes.append(strokeOf(text.at(i)));
        }
    }
    return strokes;
}

QString keyText(int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const bool isPlain = !text.isEmpty() && text.at(0).isPrint() &&
                         !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (isPlain)
        return text;
    QString name;
    for (const ModifierName& each : modifierNames)
        if (modifiers & each.modifier)
            name += QLatin1String(each.prefix);
    return QLatin1Char('<') + name + QKeySequence(key).toString(QKeySequence::PortableText) +
           QLatin1Char('>');
}

QVector<int> keysOf(Qt::KeyboardModifiers modifiers)
{
    QVector<int> keys;
    for (const ModifierName& each : modifierNames)
        if (modifiers & each.modifier)
            keys.append(each.key);
    return keys;
}

Qt::KeyboardModifiers modifiersOf(int number)
{
    Qt::KeyboardModifiers modifiers(QFlag(number & int(Qt::KeyboardModifierMask)));
    for (const ModifierName& each : modifierNames)
        if (number & each.scriptValue)
            modifiers |= each.modifier;
    return modifiers;
}

} // namespace Torvix::Agent

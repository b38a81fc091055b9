#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace Torvix {

/**
 * How the person who runs a test is told and asked: in the terminal, or where there is none in
 * windows. All but notify() wait for the answer; a person can cancel each.
 */
class Dialogs
{
public:
    enum class Tone { Information, Warning };

    /** Null when there is neither a terminal nor a display. */
    static std::unique_ptr<Dialogs> open();

    Dialogs() = default;
    virtual ~Dialogs();
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;

    virtual void notify(const QString& text) = 0;
    /** False when it was cancelled. */
    virtual bool confirm(const QString& text, Tone tone) = 0;
    /** Shows a picture; false when it was cancelled. */
    virtual bool showImage(const QString& file, const QString& text) = 0;
    /** The text that was entered, nothing when it was cancelled. */
    virtual std::optional<QString> input(const QString& text, const QString& proposal) = 0;
    virtual std::optional<QString> password(const QString& text) = 0;
    /** One of `buttons` (bits of TestInteraction::Button), or Cancel. */
    virtual int question(const QString& text, int buttons) = 0;
    /** One of the choices, nothing when it was cancelled. */
    virtual std::optional<QString> choice(const QString& text, const QStringList& choices) = 0;

    /** Why a dialog could not be shown; empty when all were. */
    QString error() const { return m_error; }

protected:
    void setError(const QString& error) { m_error = error; }

private:
    QString m_error;
};

/** Null without a terminal. */
std::unique_ptr<Dialogs> openTerminalDialogs();
/** Null without a display, and where nobody sits before it: in continuous integration (CI is set). */
std::unique_ptr<Dialogs> openWindowDialogs();

/** "ok", "cancel", "yes" and "no" for the bits that are set, in this order. */
QStringList buttonNames(int buttons);
/** None for another text. */
int buttonFromName(const QString& name);

} // namespace Torvix

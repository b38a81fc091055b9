#include "testsupport/dialogs/dialogs.h"
#include "testsupport/dialogs/terminal.h"
#include "testsupport/testinteraction.h"

namespace Torvix {

namespace {

/** The button that a line means: its name or the beginning of it; None when it is none or several. */
int buttonOf(const QString& line, int buttons)
{
    int found = TestInteraction::None;
    const QStringList names = buttonNames(buttons);
    for (const QString& name : names) {
        if (line.isEmpty() || !name.startsWith(line, Qt::CaseInsensitive))
            continue;
        if (found != TestInteraction::None)
            return TestInteraction::None;
        found = buttonFromName(name);
    }
    return found;
}

/** The place in the list that a line means: a number from 1, or the text itself; -1 for neither. */
int choiceOf(const QString& line, const QStringList& choices)
{
    const int byText = choices.indexOf(line);
    if (byText >= 0)
        return byText;
    bool isNumber = false;
    const int number = line.toInt(&isNumber);
    return isNumber && number >= 1 && number <= choices.size() ? number - 1 : -1;
}

class TerminalDialogs : public Dialogs
{
public:
    explicit TerminalDialogs(std::unique_ptr<Terminal> terminal) : m_terminal(std::move(terminal)) {}

    void notify(const QString& text) override { m_terminal->write(QStringLiteral("\n%1\n").arg(text)); }

    bool confirm(const QString& text, Tone tone) override
    {
        m_terminal->write(QStringLiteral("\n%1%2\nPress return to go on. ")
                              .arg(tone == Tone::Warning ? QStringLiteral("Warning: ") : QString(), text));
        QString line;
        return m_terminal->readLine(&line);
    }

    bool showImage(const QString& file, const QString& text) override
    {
        return confirm(QStringLiteral("%1\nPlease look at the picture %2").arg(text, file).trimmed(),
                       Tone::Information);
    }

    std::optional<QString> input(const QString& text, const QString& proposal) override
    {
        m_terminal->write(
            QStringLiteral("\n%1%2\n> ")
                .arg(text, proposal.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(proposal)));
        QString line;
        if (!m_terminal->readLine(&line))
            return {};
        return line.isEmpty() ? proposal : line;
    }

    std::optional<QString> password(const QString& text) override
    {
        m_terminal->write(QStringLiteral("\n%1\n> ").arg(text));
        QString line;
        const bool entered = m_terminal->readLine(&line, Terminal::Echo::Off);
        m_terminal->write(QStringLiteral("\n"));
        return entered ? std::optional<QString>(line) : std::nullopt;
    }

    int question(const QString& text, int buttons) override
    {
        for (;;) {
            m_terminal->write(
                QStringLiteral("\n%1 (%2) ").arg(text, buttonNames(buttons).join(QLatin1Char('/'))));
            QString line;
            if (!m_terminal->readLine(&line))
                return TestInteraction::Cancel;
            const int answer = buttonOf(line.trimmed(), buttons);
            if (answer != TestInteraction::None)
                return answer;
        }
    }

    std::optional<QString> choice(const QString& text, const QStringList& choices) override
    {
        for (;;) {
            m_terminal->write(QStringLiteral("\n%1\n").arg(text));
            for (int i = 0; i < choices.size(); ++i)
                m_terminal->write(QStringLiteral("  %1  %2\n").arg(i + 1).arg(choices[i]));
            m_terminal->write(QStringLiteral("> "));
            QString line;
            if (!m_terminal->readLine(&line))
                return {};
            const int chosen = choiceOf(line.trimmed(), choices);
            if (chosen >= 0)
                return choices[chosen];
        }
    }

private:
    std::unique_ptr<Terminal> m_terminal;
};

} // namespace

std::unique_ptr<Dialogs> openTerminalDialogs()
{
    std::unique_ptr<Terminal> terminal = Terminal::open();
    return terminal ? std::make_unique<TerminalDialogs>(std::move(terminal)) : nullptr;
}

} // namespace Torvix

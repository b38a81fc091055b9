#pragma once

#include "interpreter/base/debuggerframe.h"
#include "interpreter/base/export.h"
#include "interpreter/base/variablewatcher.h"
#include "shared/base/lineinfo.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <vector>

namespace Torvix {

class Interpreter;

/**
 * What a script debugger is in every language: where the script is, by which calls it came there, which
 * file each source id stands for, where to stop and in which mode.
 *
 * A language derives from it, drives it from its engine's hooks and gives it to its interpreter with
 * Interpreter::setDebugger. The position of the running code is the current line, column and source
 * id; the frames below it are the positions of its callers, outermost first. The first frame was
 * pushed when the engine entered the script from outside and stands for no code.
 */
class TORVIXINTERPRETER_EXPORT Debugger : public QObject
{
    Q_OBJECT

public:
    using Location = LineInfo;

    enum DbgMode {
        DbgRun = 0,      ///< never stop
        DbgNext = 1,     ///< stop at the recorded frame depth or above it, and at breakpoints
        DbgStep = 2,     ///< stop at the next statement
        DbgBreakOnly = 3 ///< stop at breakpoints
    };

    explicit Debugger(Interpreter* interpreter);
    ~Debugger() override;

    /** The debugger of the current interpreter (Interpreter::self), or null. */
    static Debugger* self();

    virtual void setCurrentLine(int line);
    virtual void setCurrentColumn(int column);
    virtual void setCurrentSourceId(int sourceId);

    /** Stops the script: emits stopped() and goes on when its receivers have returned. */
    virtual void stop();
    /** The same, at a call that finds no object of this name; `message` says what came closest. */
    virtual void stopWithObjectName(const QString& objectName, const QString& message);

    /** These say how to go on after a stop. next() stops at a frame depth of `depth` or less. */
    virtual void run();
    virtual void next(int depth);
    virtual void step();

    /** Rows of the scope (empty name) or of an expandable row; only during a stop. A language that
     *  does not watch variables has none. */
    virtual std::vector<VariableRow> variableBindings(const QString& name) const;
    /** Forgets every row that was listed before. */
    virtual void initVariableWatcher();

    virtual void setInteractive(bool interactive);
    virtual void setDebuggerMode(DbgMode mode);
    virtual void setBreakPoint(int line, int sourceId, bool set);

    /** Source id that the engine will give to the next text that it parses. */
    virtual int nextSourceId() const = 0;

    Interpreter* interpreter() const { return m_interpreter; }
    bool isInteractive() const { return m_interactive; }
    DbgMode debuggerMode() const { return m_mode; }
    /** Frame depth at which a next() ends. */
    int nextDepth() const { return m_nextDepth; }
    /** True while a person is being asked at the debugger's prompt. */
    bool inPrompt() const { return m_inPrompt; }

    int currentLine() const { return m_current.line; }
    int currentColumn() const { return m_current.column; }
    int currentSourceId() const { return m_current.sourceId; }
    DebuggerFrame currentFrame() const { return m_current; }

    int frameDepth() const { return int(m_frames.size()); }
    /** Remembers a caller's position; the current position stays as it is. */
    void pushFrame(const DebuggerFrame& frame) { m_frames.push_back(frame); }
    /** Forgets the innermost caller; does nothing without frames. */
    void popFrame();
    /** The same with the current position: it becomes the given one, and the caller's again. */
    void pushFrameAndSetCurrent(int line, int column, int sourceId);
    void popFrameAndSetCurrent();

    /** Innermost first: the current position and its callers, without those in unknown files. */
    virtual std::vector<LineInfo> callStack() const;

    /** Ties a source id to its file. */
    void setCode(int sourceId, const QString& fileName);
    /** File of a source id; null when none is tied to it. */
    QString findSourceId(int sourceId) const;
    /** The newest source id of a file; -1 when the file has not been parsed. */
    int sourceIdOf(const QString& fileName) const;

    bool hasBreakPoint(int line, int sourceId) const;
    bool hasBreakPoints() const { return !m_breakPoints.isEmpty(); }

Q_SIGNALS:
    /** The script stands at the current position until every directly connected receiver returns. */
    void stopped();
    /** The same, at a call that finds no object of this name. */
    void stoppedAtObjectName(const QString& objectName, const QString& message);

protected:
    void setInPrompt(bool inPrompt) { m_inPrompt = inPrompt; }

private:
    Interpreter* m_interpreter;
    DebuggerFrame m_current;
    std::vector<DebuggerFrame> m_frames;
    QHash<int, QString> m_sources;
    QSet<QPair<int, int>> m_breakPoints; ///< source id and line
    DbgMode m_mode = DbgBreakOnly;
    int m_nextDepth = 0;
    bool m_interactive = false;
    bool m_inPrompt = false;
};

} // namespace Torvix

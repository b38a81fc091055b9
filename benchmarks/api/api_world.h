#pragma once

#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/js/jsinterpreter.h"
#include "launcher/launcher.h"
#include "report/streamwriter.h"
#include "testsupport/testresult.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

/** What a test case has: an interpreter, a result stream in a file, and a real application. */
class ApiWorld
{
public:
    static ApiWorld& self();
    /** Ends the application; the world is not used afterwards. */
    static void end();
    ~ApiWorld();
    ApiWorld(const ApiWorld&) = delete;
    ApiWorld& operator=(const ApiWorld&) = delete;

    /** Runs script text; ends the program with its error when it fails. */
    void run(const QString& code);
    /** Calls a script function without arguments, likewise. */
    void call(const char* function);
    /** Text of what the code ends with. */
    QString text(const QString& code);

    /** Starts the result stream anew, so that its file stays small. */
    void rewindStream();
    qint64 streamSize() const { return m_streamFile.size(); }
    /** A new path beside the stream, on the same file system. */
    QString path(const QString& name) const { return m_folder.filePath(name); }

    /** The target application's object "control". */
    const Torvix::SharedPtr<Torvix::Object>& control();
    void callControl(const char* method, const Torvix::ObjectList& arguments = {});

private:
    ApiWorld();
    void startTarget();

    QTemporaryDir m_folder;
    QFile m_streamFile;
    Torvix::ResultStreamWriter m_stream;
    Torvix::TestResult m_result;
    Torvix::DummyRunnerInterface m_runner;
    std::unique_ptr<Torvix::Application> m_application;
    std::unique_ptr<Torvix::JsInterpreter> m_interpreter;
    Torvix::SharedPtr<Torvix::Object> m_control;
};

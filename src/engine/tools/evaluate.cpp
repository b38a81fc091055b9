// Evaluates one script file with the engine and prints its value: the engine alone, without a runner.

#include "engine/function.h"
#include "engine/interpreter.h"
#include "engine/list.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

/** print(...): its arguments, separated by blanks, on a line of their own. */
class Print : public KJS::InternalFunctionImp
{
public:
    KJS::Value call(KJS::ExecState* exec, KJS::Object&, const KJS::List& arguments) override
    {
        QStringList texts;
        for (const KJS::Value& argument : arguments)
            texts << argument.toString(exec).qstring();
        QTextStream(stdout) << texts.join(' ') << '\n';
        return KJS::Undefined();
    }
};

/** Finds modules beside the script. */
class FileInterpreter : public KJS::Interpreter
{
public:
    explicit FileInterpreter(const QFileInfo& script) : m_script(script) {}

    KJS::UString searchModule(const KJS::UString& name, KJS::UString* error) override
    {
        const QFileInfo file(m_script.dir(), name.qstring());
        if (file.isFile())
            return KJS::UString(file.canonicalFilePath());
        *error = KJS::UString(
            QStringLiteral("No module '%1' in '%2'").arg(name.qstring(), m_script.dir().absolutePath()));
        return KJS::UString();
    }

    KJS::UString loadModuleCode(const KJS::UString& path, KJS::UString* error) override
    {
        QFile file(path.qstring());
        if (file.open(QIODevice::ReadOnly))
            return KJS::UString(QString::fromUtf8(file.readAll()));
        *error = KJS::UString(QStringLiteral("%1: %2").arg(path.qstring(), file.errorString()));
        return KJS::UString();
    }

private:
    QFileInfo m_script;
};

int report(FileInterpreter& interpreter, const KJS::Value& thrown)
{
    KJS::ExecState* const exec = interpreter.globalExec();
    QTextStream err(stderr);
    const KJS::Object error = KJS::Object::dynamicCast(thrown);
    if (!error.isNull()) {
        const int line = error.get(exec, "line").toInt32(exec);
        err << interpreter.sourceName(error.get(exec, "sourceId").toInt32(exec)).qstring() << ':' << line
            << ": ";
    }
    err << thrown.toString(exec).qstring() << '\n';
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    const QString argument = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (argument.isEmpty() || argument == QLatin1String("--help")) {
        QTextStream(argument.isEmpty() ? stderr : stdout)
            << "usage: torvix-evaluate SCRIPT\n"
               "Evaluates a script (and the modules beside it) and prints the value of its last statement.\n"
               "Scripts have print(...). Exit code 1: the script threw; 4: wrong use or no such file.\n";
        return argument.isEmpty() ? 4 : 0;
    }
    QFile file(argument);
    if (!file.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << argument << ": " << file.errorString() << '\n';
        return 4;
    }
    FileInterpreter interpreter{QFileInfo(argument)};
    interpreter.globalObject().put(interpreter.globalExec(), "print", new Print);
    interpreter.setSourceName(KJS::UString(argument));
    const KJS::Completion done = interpreter.evaluate(KJS::UString(QString::fromUtf8(file.readAll())));
    if (done.complType() == KJS::Throw)
        return report(interpreter, done.value());
    if (done.hasValue())
        QTextStream(stdout) << done.value().toString(interpreter.globalExec()).qstring() << '\n';
    return 0;
}

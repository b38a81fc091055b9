#include "interpreter/js/objects/jsobjectaccess.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"
#include "interpreter/js/bridge/jsarguments.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "testsupport/objectfunctions.h"

#include <QDebug>

namespace Torvix {

namespace {

KJS::Value jsObjectExists(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString name;
    if (!parseObjectNameArg(exec, args, "object.exists", &name))
        return KJS::Undefined();
    const bool exists = bool(Inspector::self()->findObject(name));
    Inspector::self()->setLastError(QString());
    return KJS::Boolean(exists);
}

/** What the four questions about the form of an object ask of its flags. */
bool isPointer(quint32 flags)
{
    return flags & ObjectAttribute::Pointer;
}
bool isReference(quint32 flags)
{
    return flags & ObjectAttribute::Reference;
}
bool isValue(quint32 flags)
{
    return !isPointer(flags) && !isReference(flags);
}
bool isArray(quint32 flags)
{
    return flags & ObjectAttribute::Array;
}

KJS::Value askFlags(KJS::ExecState* exec, const KJS::List& args, const char* name, bool (*test)(quint32))
{
    const SharedPtr<Object> object = unwrapSingleArg(exec, args, name);
    if (!object)
        return KJS::Undefined();
    return KJS::Boolean(test(object->objectAttribute().flags));
}

KJS::Value jsObjectIsPointer(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return askFlags(exec, args, "object.isPointer", isPointer);
}

KJS::Value jsObjectIsValue(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return askFlags(exec, args, "object.isValue", isValue);
}

KJS::Value jsObjectIsReference(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return askFlags(exec, args, "object.isReference", isReference);
}

KJS::Value jsObjectIsArray(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return askFlags(exec, args, "object.isArray", isArray);
}

KJS::Value jsObjectRef(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const SharedPtr<Object> object = unwrapSingleArg(exec, args, "object.ref");
    if (!object)
        return KJS::Undefined();
    return jsWrap(exec, object->reference());
}

KJS::Value jsObjectDeref(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    // The texts of wrong arguments are those of object.ref, also in their name.
    const SharedPtr<Object> object = unwrapSingleArg(exec, args, "object.ref");
    if (!object)
        return KJS::Undefined();
    const SharedPtr<Object> target = object->dereference();
    if (!target)
        return generalError(exec, QStringLiteral("Dereferencing failed"));
    return jsWrap(exec, target);
}

const JsFunctionRow objectFunctions[] = {
    {"exists", jsObjectExists, 1},
    {"isPointer", jsObjectIsPointer, 1},
    {"isValue", jsObjectIsValue, 1},
    {"isReference", jsObjectIsReference, 1},
    {"isArray", jsObjectIsArray, 1},
    {"ref", jsObjectRef, 1},
    {"deref", jsObjectDeref, 1},
    {"children", passOn<objectChildren>, 1},
    {"globalBounds", passOn<objectGlobalBounds>, 1},
    {"parent", passOn<objectParent>, 1},
    {"topLevelObjects", passOn<objectTopLevelObjects>, 1},
    {"properties", passOn<objectProperties>, 1},
    {"convertTo", passOn<objectConvertTo>, 2},
    {"createNull", passOn<objectCreateNull>, 1},
    {"grabScreenshot", passOn<objectGrabScreenshot>, 1},
    {nullptr, nullptr, 0},
};

KJS::Value jsObjectMapAdd(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const SharedPtr<Object> object = unwrapSingleArg(exec, args, "objectMap.add");
    if (!object)
        return KJS::Undefined();
    Inspector* inspector = Inspector::self();
    const Result<QString> symbolicName = object->realName().then([inspector](const QString& realName) {
        const QString name = ObjectMap::self()->symbolicName(realName, true);
        return inspector->remoteCall(QStringLiteral("addToObjectMap"), {realName, name})
            .then([&name](const QVariant&) { return name; });
    });
    if (!inspector->note(symbolicName))
        return generalError(exec, symbolicName.error());
    return KJS::String(*symbolicName);
}

KJS::Value jsObjectMapSymbolicName(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString name;
    if (!qstrFromStringOrObjectArg(exec, args, "objectMap.symbolicName", &name))
        return KJS::Undefined();
    return KJS::String(ObjectMap::self()->symbolicName(name, false));
}

KJS::Value jsObjectMapRealName(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString name;
    if (!qstrFromStringOrObjectArg(exec, args, "objectMap.realName", &name))
        return KJS::Undefined();
    return KJS::String(ObjectMap::self()->realName(name));
}

KJS::Value jsObjectMapSymbolicNames(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, QStringLiteral("objectMap.symbolicNames() does not take any arguments"));
    return arrayFromQStringList(exec, ObjectMap::self()->table().keys());
}

KJS::Value jsObjectMapLoad(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, QStringLiteral("Expected one string argument"));
    const QString path = args[0].toString(exec).qstring();
    if (exec->hadException())
        return KJS::Undefined();
    RunnerInterface* runner = Interpreter::self()->runnerInterface();
    Inspector* inspector = Inspector::self();
    inspector->setLastError(QString());
    if (!runner || !runner->loadObjectMap(path))
        return generalError(exec, QLatin1String("File '") + path + QLatin1String("' couldn't be found."));
    if (!inspector->lastError().isEmpty())
        return generalError(exec, inspector->lastError());
    return KJS::Undefined();
}

const JsFunctionRow objectMapFunctions[] = {
    {"add", jsObjectMapAdd, 1},           {"symbolicName", jsObjectMapSymbolicName, 1},
    {"realName", jsObjectMapRealName, 1}, {"symbolicNames", jsObjectMapSymbolicNames, 0},
    {"load", jsObjectMapLoad, 1},         {nullptr, nullptr, 0},
};

/** The class that the second argument of cast() means; null with the exception set. */
const Class* castTarget(KJS::ExecState* exec, const KJS::Value& type)
{
    const Class* cls = nullptr;
    if (type.dispatchType() == KJS::StringType) {
        cls = Inspector::self()->classByName(type.toString(exec).qstring());
        if (!cls)
            raiseJSException(exec, KJS::TypeError, QStringLiteral("Unknown type"));
        return cls;
    }
    cls = jsUnWrapClass(exec, type);
    if (!cls)
        raiseJSException(exec, KJS::TypeError, QStringLiteral("Invalid cast() argument type"));
    return cls;
}

} // namespace

JsOurObjectImp::JsOurObjectImp(KJS::ExecState* exec)
    : JsFixedObjectImp(exec->interpreter()->builtinObjectPrototype())
{
    putFunctions(this, objectFunctions);
}

JsObjectMapImp::JsObjectMapImp(KJS::ExecState* exec)
    : JsFixedObjectImp(exec->interpreter()->builtinObjectPrototype())
{
    putFunctions(this, objectMapFunctions);
}

KJS::Value jsFindObject(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString name;
    if (!parseObjectNameArg(exec, args, "findObject", &name))
        return KJS::Undefined();
    Inspector* inspector = Inspector::self();
    const Result<SharedPtr<Object>> object = inspector->findObject(name);
    if (inspector->note(object))
        return jsWrap(exec, *object);
    if (RunnerInterface* runner = Interpreter::self()->runnerInterface()) {
        QString unused;
        runner->reportFailedLookup(name, QStringLiteral("findObject"), &unused);
    }
    QString error = inspector->lastError();
    if (error.isEmpty()) {
        qWarning("Inspector::lastError() was empty when it should not be");
        error = QStringLiteral("Unknown lookup error");
    }
    return generalError(exec, error);
}

KJS::Value jsFindAllObjects(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return dispatchGenericScriptFunction(exec, findAllObjects, args);
}

KJS::Value jsWaitForObject(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, waitForObject);
}

KJS::Value jsWaitForObjectExists(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, waitForObjectExists);
}

KJS::Value jsWaitForObjectItem(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, waitForObjectItem);
}

KJS::Value jsObjectName(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 1)
        return typeError(exec, QStringLiteral("objectName() expects an argument"));
    const SharedPtr<Object> object = jsToObject(exec, args[0], nullptr);
    if (!object)
        return typeError(exec, QStringLiteral("Invalid object passed to objectName()"));
    return KJS::String(object->name().orNothing());
}

KJS::Value jsCast(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 2)
        return syntaxError(exec, QStringLiteral("cast(object, type)"));
    const SharedPtr<Object> object = jsToObject(exec, args[0], nullptr);
    if (!object)
        return typeError(exec, QStringLiteral("Invalid object passed to cast()"));
    const Class* cls = castTarget(exec, args[1]);
    if (!cls)
        return exec->exception();
    object->cast(cls).orNothing();
    return jsWrap(exec, object);
}

} // namespace Torvix

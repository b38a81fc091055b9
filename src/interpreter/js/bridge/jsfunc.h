#pragma once

#include "engine/function.h"
#include "shared/base/sharedptr.h"

#include <QString>

namespace Torvix {
class Class;
class Object;
} // namespace Torvix

/**
 * A method of the application by its name, with all overloads. It keeps ids only, which are resolved
 * on each call: a script may hold it longer than the application context that it came from.
 */
class JsFunc : public KJS::InternalFunctionImp
{
public:
    JsFunc(KJS::ExecState* exec, const Torvix::Class* cls, const QString& name);

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    int m_applicationId;
    int m_classId;
    QString m_name;
};

/** One of the functions that every object wrapper has. Without a prototype: scripts find no `call` on it. */
class JsObjectProtoFunc : public KJS::ObjectImp
{
public:
    enum Type { ToString = 0, ValueOf = 1, Equality = 2 };

    JsObjectProtoFunc(Torvix::SharedPtr<Torvix::Object> object, int type, int length);
    ~JsObjectProtoFunc() override;

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    Torvix::SharedPtr<Torvix::Object> m_object;
    int m_type;
};

#include "interpreter/js/objects/jsintl.h"

#include <QLocale>
#include <QTimeZone>

namespace Torvix {

namespace {

KJS::Value jsResolvedOptions(KJS::ExecState* exec, KJS::Object&, const KJS::List&)
{
    KJS::Object options = exec->interpreter()->builtinObject().construct(exec, KJS::List::empty());
    options.put(exec, "locale", KJS::String(QLocale::system().bcp47Name()));
    options.put(exec, "timeZone", KJS::String(QString::fromUtf8(QTimeZone::systemTimeZone().id())));
    return options;
}

const JsFunctionRow formatFunctions[] = {
    {"resolvedOptions", jsResolvedOptions, 0},
    {nullptr, nullptr, 0},
};

class JsDateTimeFormatPrototype : public KJS::ObjectImp
{
public:
    explicit JsDateTimeFormatPrototype(KJS::ExecState* exec)
        : ObjectImp(exec->interpreter()->builtinObjectPrototype())
    {
        putFunctions(this, formatFunctions);
    }
};

class JsDateTimeFormat : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    explicit JsDateTimeFormat(KJS::ExecState* exec) : ObjectImp(new JsDateTimeFormatPrototype(exec)) {}
    const KJS::ClassInfo* classInfo() const override { return &info; }
};

const KJS::ClassInfo JsDateTimeFormat::info = {"DateTimeFormat"};

/** Whatever locale and format are asked for, the system's are told. */
KJS::Value jsIntlDateTimeFormat(KJS::ExecState* exec, KJS::Object&, const KJS::List&)
{
    return new JsDateTimeFormat(exec);
}

KJS::Value jsIntlNotImplemented(KJS::ExecState* exec, KJS::Object&, const KJS::List&)
{
    return syntaxError(exec, "Function not implemented. Contact ");
}

// NumberFormat answers with a date format, so that scripts which ask for one get an object.
const JsFunctionRow functions[] = {
    {"Collator", jsIntlNotImplemented, 0},
    {"NumberFormat", jsIntlDateTimeFormat, 0},
    {"DateTimeFormat", jsIntlDateTimeFormat, 0},
    {"PluralRules", jsIntlNotImplemented, 0},
    {"getCanonicalLocales", jsIntlNotImplemented, 0},
    {nullptr, nullptr, 0},
};

/** A function of Intl: scripts use them with `new` and without. */
class JsIntlFunctionImp : public ExtraFunctionImp
{
public:
    using ExtraFunctionImp::ExtraFunctionImp;

    bool implementsConstruct() const override { return true; }
    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override
    {
        KJS::Object none;
        return KJS::Object::dynamicCast(call(exec, none, args));
    }
};

} // namespace

JsIntlImp::JsIntlImp(KJS::ExecState* exec) : JsFixedObjectImp(exec->interpreter()->builtinObjectPrototype())
{
    for (const JsFunctionRow* row = functions; row->name; ++row)
        putDirect(row->name, new JsIntlFunctionImp(row->fn, row->length), KJS::None);
}

} // namespace Torvix

#include "interpreter/js/bridge/overload.h"

#include "engine/interpreter.h"
#include "engine/object.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"

#include <algorithm>

namespace Torvix {

namespace {

using Code = Protocol::BuiltinClass;

/** NaN is none. */
bool isIntegerValued(KJS::ExecState* exec, const KJS::Value& value)
{
    return double(value.toIntegerSimplistic(exec)) == value.toNumber(exec);
}

/** The built-in class that a value comes from; null for one that has none. */
const Class* sourceClass(KJS::ExecState* exec, const KJS::Value& value, const Class* target)
{
    const Inspector* inspector = Inspector::self();
    switch (value.dispatchType()) {
    case KJS::StringType:
        return inspector->builtinClass(Code::StringClass);
    case KJS::NumberType:
        return inspector->builtinClass(Code::DoubleClass);
    case KJS::BooleanType:
        return inspector->builtinClass(Code::BoolClass);
    case KJS::ObjectType:
        // A map stands for the name of an object.
        if (target != MapClass::registeredClass() && JSScriptArgument(exec, value).isMap())
            return inspector->builtinClass(Code::StringClass);
        return nullptr;
    default:
        return nullptr;
    }
}

int matchList(KJS::ExecState* exec, const KJS::Value& value, const Argument& argument)
{
    if (!isKJSArray(value))
        return 0;
    static const KJS::Identifier lengthName("length");
    const KJS::Object array = KJS::Object::dynamicCast(value);
    const Argument element = elementOf(argument);
    int lowest = 100;
    for (unsigned i = 0, length = array.get(exec, lengthName).toUInt32(exec); i < length; ++i)
        lowest = std::min(lowest, matchFactor(exec, array.get(exec, i), element));
    return lowest;
}

int matchWrapped(const Object& object, const Argument& argument)
{
    const Class* cls = object.objectClass();
    const Class* target = argument.type();
    if (cls == target)
        return 100;
    if (!cls->canConvertTo(target, object.objectAttribute().isIndirect(), argument.attribute().isIndirect(),
                           0))
        return 0;
    const int depth = cls->inheritanceDepth(target);
    return depth == -1 ? 50 : 100 - depth;
}

bool takesList(const Argument& argument)
{
    const ObjectAttribute attribute = argument.attribute();
    if (!attribute.has(ObjectAttribute::List))
        return false;
    return argument.type()->id() != Code::StringClass || attribute.isIndirect();
}

/** The attribute of a passed value, as the walk through a tie compares it. */
quint32 passedFlags(KJS::ExecState* exec, const KJS::Value& value)
{
    if (const Object* object = jsUnWrap(exec, value))
        return object->objectAttribute().flags;
    const KJS::Type type = value.dispatchType();
    return type == KJS::StringType || type == KJS::ObjectType ? quint32(ObjectAttribute::Indirect) : 0;
}

/** One attempt to find the overload that a call means. */
class OverloadSearch
{
public:
    OverloadSearch(KJS::ExecState* exec, const KJS::List& args, const Class* cls,
                   const std::vector<const Signature*>& signatures, const std::vector<const Class*>& classes,
                   const QString& name)
        : m_exec(exec)
        , m_args(args)
        , m_class(cls)
        , m_signatures(signatures)
        , m_classes(classes)
        , m_name(name)
    {
    }

    /** -1 with the exception set. */
    int find()
    {
        scoreAll();
        if (m_bestScore < 1)
            return fail(QLatin1String("No matching '") + m_name + passedTypes() +
                        QLatin1String("' overload found: Following overloads are available:\n") +
                        allCandidates());
        return m_ties == 1 ? m_best : settleTie();
    }

private:
    int score(std::size_t index)
    {
        const Signature& signature = *m_signatures[index];
        if (signature.count() != m_args.size())
            return -1;
        int sum = signature.count() == 0 ? 100 : 0;
        for (int i = 0; i < signature.count(); ++i) {
            const int factor = matchFactor(m_exec, m_args[i], signature.argument(i));
            if (factor == 0) {
                sum = 0;
                break;
            }
            sum += factor;
        }
        return sum - m_class->inheritanceDepth(m_classes[index]);
    }

    void scoreAll()
    {
        m_scores.reserve(m_signatures.size());
        for (std::size_t i = 0; i < m_signatures.size(); ++i) {
            const int value = score(i);
            m_scores.push_back(value);
            if (value > m_bestScore) {
                m_bestScore = value;
                m_best = int(i);
                m_ties = 1;
            } else if (value == m_bestScore) {
                ++m_ties;
            }
        }
    }

    /** Overloads of equal score: attributes may tell them apart, or they are the same anyway. */
    int settleTie()
    {
        std::vector<quint32> passed;
        for (const KJS::Value& value : m_args)
            passed.push_back(passedFlags(m_exec, value));
        bool identical = true;
        bool separable = true;
        int chosen = -1;
        const Signature* previous = nullptr;
        QString candidates;
        for (std::size_t i = 0; i < m_signatures.size(); ++i) {
            if (m_scores[i] != m_bestScore)
                continue;
            const Signature& signature = *m_signatures[i];
            if (previous && !isIdentical(*previous, signature))
                identical = false;
            separable = separable && signature.count() > 0 && (!previous || differs(*previous, signature));
            if (separable && isFitting(signature, passed)) {
                separable = chosen == -1;
                if (separable)
                    chosen = int(i);
            }
            candidates += candidateLine(i);
            previous = &signature;
        }
        if (separable && chosen != -1)
            return chosen;
        if (identical)
            return m_best;
        return fail(QLatin1String("Ambiguous overload '") + m_name + passedTypes() +
                    QLatin1String("'. Candidates:\n") + candidates);
    }

    static bool isIdentical(const Signature& a, const Signature& b)
    {
        return std::equal(a.arguments().begin(), a.arguments().end(), b.arguments().begin(),
                          b.arguments().end(), [](const Argument& x, const Argument& y) {
                              return x.type() == y.type() && x.attribute() == y.attribute();
                          });
    }

    /** The same class with another attribute at some position. */
    static bool differs(const Signature& a, const Signature& b)
    {
        for (int i = 0; i < a.count(); ++i) {
            const Argument& x = a.argument(i);
            const Argument& y = b.argument(i);
            if (x.type() == y.type() && x.attribute() != y.attribute())
                return true;
        }
        return false;
    }

    static bool isFitting(const Signature& signature, const std::vector<quint32>& passed)
    {
        constexpr quint32 constant = ObjectAttribute::Constant;
        constexpr quint32 indirect = ObjectAttribute::Indirect;
        constexpr quint32 indirectOrList = ObjectAttribute::Indirect | ObjectAttribute::List;
        const auto isMutable = [](quint32 flags) { return (flags & (indirect | constant)) == indirect; };
        for (int i = 0; i < signature.count(); ++i) {
            const quint32 wanted = signature.argument(i).attribute().flags;
            const quint32 given = passed[std::size_t(i)];
            if ((isMutable(wanted) || isMutable(given)) &&
                ((wanted & indirectOrList) == 0 || (given & indirectOrList) == 0))
                return false;
        }
        return true;
    }

    QString candidateLine(std::size_t index) const
    {
        return QLatin1Char('\t') + m_classes[index]->name() + QLatin1String("::") + m_name +
               m_signatures[index]->toString() + QLatin1Char('\n');
    }

    QString allCandidates() const
    {
        QString lines;
        for (std::size_t i = 0; i < m_signatures.size(); ++i)
            lines += candidateLine(i);
        return lines;
    }

    QString passedTypes() const
    {
        QStringList names;
        for (const KJS::Value& value : m_args)
            names += plainTypeName(m_exec, value);
        return QLatin1Char('(') + names.join(QLatin1String(", ")) + QLatin1Char(')');
    }

    int fail(const QString& message)
    {
        m_exec->setException(KJS::Error::create(m_exec, KJS::EvalError, message, -1, -1));
        return -1;
    }

    KJS::ExecState* m_exec;
    const KJS::List& m_args;
    const Class* m_class;
    const std::vector<const Signature*>& m_signatures;
    const std::vector<const Class*>& m_classes;
    const QString& m_name;
    std::vector<int> m_scores;
    int m_bestScore = 0;
    int m_best = -1;
    int m_ties = 0;
};

} // namespace

int matchFactor(KJS::ExecState* exec, const KJS::Value& value, const Argument& argument)
{
    const Class* target = argument.type();
    const Class* source = sourceClass(exec, value, target);
    const bool isArray = !source && isKJSArray(value);
    if (isArray && target == ArrayClass::registeredClass())
        return 100;
    if (!source && target == MapClass::registeredClass() && isKJSMap(value, exec))
        return 100;
    if (takesList(argument))
        return matchList(exec, value, argument);
    if (isArray)
        return 0;
    const bool isNumber = source && source->id() == Code::DoubleClass;
    const bool isInteger = isNumber && isIntegerValued(exec, value);
    if (source == target)
        return target->id() == Code::DoubleClass && isInteger ? 98 : 100;
    if (target->id() == Code::IntClass && isInteger)
        return argument.enumeration() ? 99 : 100;
    if (target->id() == Code::BoolClass && isInteger)
        return 99;
    if (const Object* object = jsUnWrap(exec, value))
        return matchWrapped(*object, argument);
    if (!source)
        return 0;
    const bool isString = source->id() == Code::StringClass;
    const bool indirect = argument.attribute().isIndirect();
    if (source->canCastTo(target, isString, indirect, 0))
        return 99;
    if (source->canConvertTo(target, isString, indirect, 0))
        return 98;
    return argument.enumeration() && isInteger ? 99 : 0;
}

int findMatch(KJS::ExecState* exec, const KJS::List& args, const Class* cls,
              const std::vector<const Signature*>& signatures, const std::vector<const Class*>& classes,
              const QString& name, ObjectList* objects)
{
    const int index = OverloadSearch(exec, args, cls, signatures, classes, name).find();
    if (index < 0 || !jsConvertArgs(exec, objects, args, *signatures[std::size_t(index)]))
        return -1;
    return index;
}

} // namespace Torvix

#pragma once

#include <QMap>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

namespace Torvix::Agent {

/**
 * One value of the application as the agent passes it about: an argument, a result, `this`.
 *
 * Data is a copy (numbers, strings, QPoint, QModelIndex, ...). A pointer names something that lives
 * in the application; QObjects are guarded, so that object() is null once they are destroyed. What a
 * script made by a constructor and the application does not adopt is kept alive by `owner`.
 */
struct Value
{
    enum class Kind { None, Data, Pointer, List, Map };

    Kind kind = Kind::None;
    /** The class: "int", "QString", "QPoint", "QWidget", or the qualified name of an enum. */
    QByteArray typeName;
    QVariant data;
    QVector<Value> list;
    QMap<QString, Value> map;
    std::shared_ptr<void> owner;

    static Value ofData(const QByteArray& typeName, QVariant data);
    /** A QVariant of any content: lists, maps and pointers become those kinds, an invalid one None. */
    static Value ofVariant(const QVariant& variant);
    static Value ofObject(QObject* object);
    /** A pointer to a class that is no QObject. */
    static Value ofPointer(const QByteArray& typeName, void* pointer);
    static Value nullOf(const QByteArray& typeName);
    static Value ofList(const QByteArray& typeName, QVector<Value> elements);

    bool isNone() const { return kind == Kind::None; }
    bool isPointer() const { return kind == Kind::Pointer; }
    bool isObject() const { return kind == Kind::Pointer && m_isObject; }
    bool isNull() const { return kind == Kind::Pointer && !address(); }

    /** The QObject, null when it is destroyed, or when this is none. */
    QObject* object() const { return m_object.data(); }
    /** What the pointer points to; for a QObject its QObject part. */
    void* address() const { return m_isObject ? m_object.data() : m_pointer; }

    /** The value as a QVariant, whatever its kind. */
    QVariant toVariant() const;
    /** For messages and toString(). */
    QString toText() const;

private:
    void* m_pointer = nullptr;
    QPointer<QObject> m_object;
    bool m_isObject = false;
};

/** Class name and attributes of an argument, a result or a property, as declared in C++. */
struct TypeUse
{
    enum Flag : quint32 { Constant = 1, Pointer = 2, Reference = 4, List = 16 };

    QByteArray name;
    quint32 flags = 0;
    bool isEnum = false;

    /** Splits a C++ type text, "const QList<QWidget*>&" for example. */
    static TypeUse parse(const QByteArray& cppType);
    /** The C++ text again. */
    QByteArray toCpp() const;

    friend bool operator==(const TypeUse& a, const TypeUse& b)
    {
        return a.name == b.name && a.flags == b.flags;
    }
};

} // namespace Torvix::Agent

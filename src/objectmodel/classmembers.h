#pragma once

#include "objectmodel/class.h"

namespace Torvix {

/** What the application said of a class, and what was looked up in it. */
struct Class::Members
{
    bool isIdentity = false;
    QString namespaceName;
    std::vector<const Class*> superClasses;
    std::vector<std::unique_ptr<Property>> properties;
    std::vector<std::unique_ptr<Method>> methods;
    std::vector<std::unique_ptr<Constructor>> constructors;
    std::vector<std::unique_ptr<Enum>> enumerators;
    QVector<int> convertibleFrom;
    QVector<int> convertibleTo;
    QHash<QString, const Property*> propertyCache;
    QHash<QString, QVector<const Method*>> methodCache;
};

} // namespace Torvix

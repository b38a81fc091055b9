#pragma once

#include "objectmodel/export.h"

#include <QString>

namespace Torvix {

class ApplicationModel;
class Class;

/** A namespace that holds classes of an application. The global one has an empty name. */
class TORVIXOBJECTMODEL_EXPORT Namespace
{
public:
    Namespace(ApplicationModel* application, const QString& name, const Namespace* parent);

    /** With the outer ones: `Outer::Inner`. */
    QString name() const { return m_name; }
    QString simpleName() const;
    /** Null for the global namespace only. */
    const Namespace* parent() const { return m_parent; }
    bool isGlobal() const { return m_parent == nullptr; }

    /** Children by their last name; null when there is none. */
    const Class* getClass(const QString& name) const;
    const Namespace* getNamespace(const QString& name) const;

private:
    QString qualified(const QString& name) const;

    ApplicationModel* m_application;
    QString m_name;
    const Namespace* m_parent;
};

} // namespace Torvix

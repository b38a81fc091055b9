#pragma once

#include <QJsonArray>
#include <QString>

namespace Torvix {

/** Which objects are wanted. Wildcards: * and ? stand for any characters. Case counts. */
struct ObjectFilter
{
    QString type; ///< of the class; empty: all
    QString name; ///< of the object name, a text or a title; empty: all
    bool visibleOnly = false;

    bool isEmpty() const { return type.isEmpty() && name.isEmpty() && !visibleOnly; }
};

/** The objects of the current application as text, one a line, indented by depth; what a report keeps. */
QString objectTreeText();

/** What `inspect` shows, and whether that is all. */
template <class Form>
struct Inspection
{
    Form objects;
    int count = 0;
    bool isCutOff = false; ///< the application has more objects than are looked at
};

/**
 * The tree with the real name that finds each object and, when wanted, its properties; a filter makes it
 * a flat list of those that fit.
 */
Inspection<QString> inspectAsText(const ObjectFilter& filter, bool withProperties);
/** An array of objects with `class`, `name`, `realName`, `properties` and, without a filter, `children`. */
Inspection<QJsonArray> inspectAsJson(const ObjectFilter& filter);

} // namespace Torvix

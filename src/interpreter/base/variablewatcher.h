#pragma once

#include "interpreter/base/export.h"
#include "shared/base/sharedptr.h"

#include <QMap>
#include <QString>

#include <utility>
#include <vector>

namespace Torvix {

class Object;

/** What a variable shows: its type's name and its value as text, empty for one that is expanded. */
struct VariableValue
{
    QString type;
    QString value;
};

/** Name and value of a variable. A leading "+" in the name means that the row can be expanded by
 *  giving that name back; below the top level the name is the path, with dots between levels. */
using VariableRow = std::pair<QString, VariableValue>;

/**
 * Lists the variables of a stopped script.
 *
 * A language implements the three operations on its own objects. Objects of the application under
 * test are expanded here, alike for every language.
 */
class TORVIXINTERPRETER_EXPORT VariableWatcher
{
public:
    VariableWatcher();
    VariableWatcher(const VariableWatcher&);
    VariableWatcher& operator=(const VariableWatcher&);
    virtual ~VariableWatcher();

    /** Every variable in scope. */
    virtual std::vector<VariableRow> globalBindings() const = 0;
    /** True for a row, with its "+", that languageObjectBindings can expand. */
    virtual bool isLanguageObject(const QString& name) const = 0;
    virtual std::vector<VariableRow> languageObjectBindings(const QString& name) const = 0;

    /** Rows for a name: the scope for an empty one, otherwise the parts of that row. A name that was
     *  not listed gives no rows. */
    std::vector<VariableRow> variableBindings(const QString& name) const;

protected:
    /** True for an object of the application that has properties to show. */
    bool objectHasComponents(SharedPtr<Object> object) const;
    /** Remembers an object under its row's name, so that it can be expanded. */
    void registerTorvixObject(const QString& name, SharedPtr<Object> object) const;

private:
    std::vector<VariableRow> objectBindings(const QString& prefix, const SharedPtr<Object>& object) const;

    mutable QMap<QString, SharedPtr<Object>> m_objects;
};

} // namespace Torvix

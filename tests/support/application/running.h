#pragma once

#include "launcher/launcher.h"
#include "objectmodel/inspector.h"

#include <gtest/gtest.h>

namespace Torvix::Testing {

/** A string literal as it stands. */
inline QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

inline SharedPtr<Object> value(const char* text)
{
    return Inspector::self()->createString(utf8(text));
}

inline SharedPtr<Object> value(int number)
{
    return Inspector::self()->createInteger(number);
}

/** The path of a sample application: "itemviews/spreadsheet". */
QString sample(const char* name);
/** Our own application for every corner. */
QString target();

/**
 * A real application without a screen, ended with the test. What a test asks for and does not get
 * fails the test with the inspector's last error.
 */
class Running
{
public:
    explicit Running(const QString& program, const QStringList& arguments = {});
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    bool isGood() const { return model != nullptr; }

    /** Waits until it can be used. */
    SharedPtr<Object> wait(const char* name);
    SharedPtr<Object> find(const char* name);
    /** A property as text, a null string on failure. */
    QString get(const SharedPtr<Object>& object, const char* property);
    /** The overload is the first that the arguments convert to. */
    /** Null after a failure, with why in `error`. */
    SharedPtr<Object> call(const SharedPtr<Object>& object, const char* method,
                           const ObjectList& arguments = {});
    /** A function of the global class. */
    SharedPtr<Object> act(const char* function, const ObjectList& arguments);
    /** Waits until the property has that text. */
    bool becomes(const SharedPtr<Object>& object, const char* property, const char* text);

    std::unique_ptr<Application> application;
    ApplicationModel* model = nullptr;
    QString error;
};

LaunchOptions launchOptions(const QString& program, const QStringList& arguments = {});

} // namespace Torvix::Testing

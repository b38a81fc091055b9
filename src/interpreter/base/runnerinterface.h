#pragma once

#include "shared/base/sharedptr.h"

#include <QString>

#include <list>

namespace Torvix {

class ApplicationContext;
class Object;
class TestResult;

/**
 * What a language plug-in asks of the runner that loaded it.
 *
 * The runner implements it and outlives every interpreter that was made with it. Everything is
 * called on the script's thread, and an operation may block while an application answers. No
 * operation throws. Operations with an `error` fill it on failure; it is never null.
 *
 * Operations on a context are asked with contexts of ended applications too, and with the empty
 * context; they then give the neutral value (empty string, 0, false).
 */
class RunnerInterface
{
public:
    /** What the runner knows of the test under way; all empty when there is none. Paths are
     *  absolute and have forward slashes. */
    struct TestEnvironment
    {
        QString settingsGroup;
        QString defaultDevice;
        QString testCase; ///< path of the test case's script
        QString testCaseName;
        QString testSuiteName;
        QString resultDir;
    };

    virtual ~RunnerInterface() = default;

    // Applications.

    /** Starts `application`; the further values are passed on from the script uninterpreted, with
     *  an empty string and -1 where the script gave none. Never null; an id below 0 is a failure. */
    virtual SharedPtr<ApplicationContext> startApplication(const QString& application, const QString& host,
                                                           int port, int timeoutSecs, QString* error) = 0;
    /** Attaches to a running application that waits under `name`; as startApplication. */
    virtual SharedPtr<ApplicationContext> attachToApplication(const QString& name, const QString& host,
                                                              int port, int timeoutSecs, QString* error) = 0;
    /** Lets the application go on by itself; false when there is no connection to give up. */
    virtual bool detach(SharedPtr<ApplicationContext> context) = 0;
    /** Waits until an application reports that was started by another one. A negative timeout
     *  takes the runner's default. Never null; an id below 0 is a failure. */
    virtual SharedPtr<ApplicationContext> waitForApplicationLaunch(int timeout, QString* error) = 0;
    /** The context that the test began with. Never null. */
    virtual SharedPtr<ApplicationContext> defaultApplicationContext() = 0;
    /** The context of that name, or the current one for an empty name. Never null: the empty context
     *  stands for none. */
    virtual SharedPtr<ApplicationContext> applicationContext(const QString& name) = 0;
    /** Makes object lookups talk to this application; false when it can't be talked to. */
    virtual bool setCurrentApplicationContext(SharedPtr<ApplicationContext> context) = 0;
    /** Every context of this run in the order of their start. */
    virtual std::list<SharedPtr<ApplicationContext>> applicationContexts() = 0;

    virtual qint64 usedMemory(SharedPtr<ApplicationContext> context) = 0; ///< resident bytes
    virtual qint64 totalTime(SharedPtr<ApplicationContext> context) = 0;  ///< CPU time in milliseconds
    virtual QString environmentVariable(SharedPtr<ApplicationContext> context, const QString& name) = 0;
    virtual QString workingDirectory(SharedPtr<ApplicationContext> context) = 0;
    virtual QString host(SharedPtr<ApplicationContext> context) = 0;
    virtual int port(SharedPtr<ApplicationContext> context) = 0;
    virtual bool isRunning(SharedPtr<ApplicationContext> context) = 0;
    /** True when the application's event loop does not answer within `seconds`. */
    virtual bool isFrozen(SharedPtr<ApplicationContext> context, int seconds) = 0;
    virtual int processId(SharedPtr<ApplicationContext> context) = 0;
    /** What the application has written since the last read: empty for nothing new, null when its
     *  output can't be read. */
    virtual QString readStandardOutput(SharedPtr<ApplicationContext> context) = 0;
    virtual QString readStandardError(SharedPtr<ApplicationContext> context) = 0;
    virtual QString operatingSystemName(SharedPtr<ApplicationContext> context) = 0;

    // The remote object model.

    /** Enters the current application's object model for the length of an access. True when the
     *  caller has to leave it again; false when it is entered already or there is none. */
    virtual bool enterRemoteObjectModel() = 0;
    virtual void leaveRemoteObjectModel() = 0;
    /** Tells the runner that `function` found no object of this name. The runner may set the
     *  inspector's last error to something more helpful, and may fill `report` (never null). */
    virtual void reportFailedLookup(const QString& name, const QString& function, QString* report) = 0;
    /** Replaces the object map by that of the file; false when there is no such file. One that cannot be
     *  read changes nothing and leaves the inspector's last error. */
    virtual bool loadObjectMap(const QString& path) = 0;
    /** Which of the values of mouseAction() the script gave. */
    enum MouseActionFlag { HasObject = 1, HasModifiers = 2, HasButton = 4, HasPosition = 8 };
    /** Moves, presses or releases the mouse: `buttonAction` false is a move, otherwise `press` tells.
     *  `flags` are MouseActionFlag. False leaves the inspector's last error. */
    virtual bool mouseAction(SharedPtr<Object> object, int flags, int x, int y, int button, int modifiers,
                             bool buttonAction, bool press) = 0;

    // The run.

    /** True when the runner wants the debugger's prompt at the next statement. */
    virtual bool promptWanted() = 0;
    /** Called between the polls of a waiting script: keep connections alive, do not wait. */
    virtual void serviceConnections() = 0;
    /** Where results of this run go; may be null. */
    virtual TestResult* testResult() = 0;
    virtual TestEnvironment testEnvironment() = 0;
};

} // namespace Torvix

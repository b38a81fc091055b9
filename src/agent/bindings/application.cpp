#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"
#include "agent/reflection/globalclass.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QWindow>

namespace Torvix::Agent {

void bindApplication(Registry& registry)
{
    // The namespace Qt is a class to scripts, since its keys are read as members of it.
    registry.ofMetaObject(qt_getQtMetaObject());
    Bind<QCoreApplication>(registry)
        .function("instance", &QCoreApplication::instance)
        .function("arguments", &QCoreApplication::arguments)
        .function("applicationDirPath", &QCoreApplication::applicationDirPath)
        .function("applicationFilePath", &QCoreApplication::applicationFilePath)
        .function("applicationPid", &QCoreApplication::applicationPid)
        .function(
            "processEvents", +[] { QCoreApplication::processEvents(); })
        .function(
            "sendEvent",
            +[](QObject* receiver, QEvent* event) {
                if (receiver && event)
                    QCoreApplication::sendEvent(receiver, event);
            },
            "receiver, event");
    Bind<QGuiApplication>(registry)
        .function("clipboard", &QGuiApplication::clipboard)
        .function("primaryScreen", &QGuiApplication::primaryScreen)
        .function("screens", &QGuiApplication::screens)
        .function("focusWindow", &QGuiApplication::focusWindow)
        .function("keyboardModifiers", &QGuiApplication::keyboardModifiers);
    Bind<QApplication>(registry)
        .function("activeWindow", &QApplication::activeWindow)
        .function("activeModalWidget", &QApplication::activeModalWidget)
        .function("activePopupWidget", &QApplication::activePopupWidget)
        .function("focusWidget", &QApplication::focusWidget)
        .function("allWidgets", &QApplication::allWidgets)
        .function("topLevelWidgets", &QApplication::topLevelWidgets)
        .function("widgetAt", static_cast<QWidget* (*)(int, int)>(&QApplication::widgetAt), "x, y")
        .function("closeAllWindows", &QApplication::closeAllWindows);
    Bind<QClipboard>(registry)
        .extension(
            "text", +[](QClipboard& clipboard) { return clipboard.text(); })
        .extension(
            "setText", +[](QClipboard& clipboard, const QString& text) { clipboard.setText(text); }, "text")
        .method("clear", &QClipboard::clear, "mode", defaults(QClipboard::Clipboard));
    Bind<GlobalFunctions>(registry)
        .staticProperty(
            "qApp", +[] { return QCoreApplication::instance(); })
        .enumeration("QtMsgType", {{"QtDebugMsg", QtDebugMsg},
                                   {"QtInfoMsg", QtInfoMsg},
                                   {"QtWarningMsg", QtWarningMsg},
                                   {"QtCriticalMsg", QtCriticalMsg},
                                   {"QtSystemMsg", QtSystemMsg},
                                   {"QtFatalMsg", QtFatalMsg}});
    Bind<QScreen>{registry};
    Bind<QWindow>{registry};
}

} // namespace Torvix::Agent

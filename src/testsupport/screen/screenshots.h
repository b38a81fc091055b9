#pragma once

#include "objectmodel/object.h"
#include "shared/base/sharedptr.h"
#include "testsupport/export.h"

#include <QImage>
#include <QString>

namespace Torvix {

/**
 * What is on the screen now: the windows of the current application, or without one the X display
 * (by ffmpeg). Null, with the reason in `*error`, when neither is there.
 */
TORVIXTEST_EXPORT QImage grabDesktop(QString* error);

/** What an object shows. Null with the reason in `*error`. */
TORVIXTEST_EXPORT QImage grabObject(const SharedPtr<Object>& object, QString* error);

/** False with the reason in `*error`. Missing folders are made. */
TORVIXTEST_EXPORT bool savePng(const QImage& image, const QString& path, QString* error);

/** Null with the reason in `*error`. */
TORVIXTEST_EXPORT QImage loadImage(const QString& path, QString* error);

} // namespace Torvix

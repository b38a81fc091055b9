#include "sweep/sweep.h"

#include <QFileInfo>
#include <QLibraryInfo>

#include <gtest/gtest.h>

namespace {

using namespace Torvix::Testing;

class Sweep : public testing::TestWithParam<const char*>
{
};

TEST_P(Sweep, EveryObjectIsNamedReadAndDescribed)
{
    SweepTarget target;
    target.program =
        QLibraryInfo::location(QLibraryInfo::ExamplesPath) + QLatin1Char('/') + QString::fromUtf8(GetParam());
    const SweepResult result = sweep(target);
    EXPECT_TRUE(result.wasStarted);
    for (const QString& fault : result.faults)
        ADD_FAILURE() << qPrintable(fault);
    EXPECT_GT(result.visibleObjects, 0);
    EXPECT_GT(result.methods, 300) << "those of QWidget or QWindow";
}

/** Each for something that the others lack. */
const char* const applications[] = {
    "corelib/ipc/sharedmemory/sharedmemory",           // a dialog, and shared memory
    "corelib/threads/mandelbrot/mandelbrot",           // threads with objects in them
    "gui/analogclock/analogclock",                     // a window without widgets
    "network/googlesuggest/googlesuggest",             // a completer's popup
    "sql/books/books",                                 // delegates and a data base
    "widgets/dialogs/classwizard/classwizard",         // a wizard
    "widgets/dialogs/standarddialogs/standarddialogs", // tool boxes and tabs
    "widgets/gallery/gallery",                         // one of each widget
    "widgets/graphicsview/padnavigator/padnavigator",  // widgets in a scene
    "widgets/itemviews/interview/interview",           // views of a big model
    "widgets/mainwindows/mainwindow/mainwindow",       // dock widgets and tool bars
    "widgets/mainwindows/mdi/mdi",                     // a multiple document area
    "widgets/statemachine/trafficlight/trafficlight",  // states and transitions
    "widgets/tools/i18n/i18n",                         // texts in many scripts
};

std::string caseName(const testing::TestParamInfo<const char*>& info)
{
    return QFileInfo(QString::fromUtf8(info.param)).fileName().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Samples, Sweep, testing::ValuesIn(applications), caseName);

} // namespace

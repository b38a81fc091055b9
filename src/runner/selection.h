#pragma once

#include "runner/commandline.h"
#include "runner/suite.h"

#include <QVector>

namespace Torvix {

/** The suites of a run with those of their cases that the options ask for. */
struct Selection
{
    QVector<Suite> suites;

    int caseCount() const;
    /** Of the run, for reports. */
    QString name() const;
};

/** False with one line of what is wrong; a selection without cases is no error. */
bool select(const RunOptions& options, Selection* selection, QString* error);

} // namespace Torvix

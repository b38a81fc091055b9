#pragma once

#include <benchmark/benchmark.h>

#include <sched.h>

/**
 * Runs the benchmarks of a program with all its processes on one processor: a wake-up of an idle one
 * costs more than the calls that are measured, and the scheduler would spare it now the one, now the
 * other side of a ratio. False when the command line is not understood.
 */
inline bool runBenchmarksOnOneProcessor(int argc, char** argv)
{
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(0, &first);
    sched_setaffinity(0, sizeof first, &first);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return false;
    benchmark::RunSpecifiedBenchmarks();
    return true;
}

#pragma once

#include <cstdarg>

namespace Torvix {

/**
 * Where a component writes its traces and errors: printf formats with their arguments.
 *
 * Level 0 is for tracing, level 1 for errors. Lines bring their own line end where they have one.
 */
class LogInterface
{
public:
    virtual ~LogInterface() = default;
    virtual void log(int level, const char* format, ...) __attribute__((format(printf, 3, 4))) = 0;
    virtual void vlog(int level, const char* format, va_list arguments)
        __attribute__((format(printf, 3, 0))) = 0;
};

/** Swallows everything. Its users do not even format for it. */
class NullLog : public LogInterface
{
public:
    void log(int, const char*, ...) override {}
    void vlog(int, const char*, va_list) override {}
};

} // namespace Torvix

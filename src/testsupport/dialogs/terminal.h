#pragma once

#include "testsupport/export.h"

#include <QString>

#include <memory>

namespace Torvix {

/** The terminal of the person who runs the tests, also when the standard streams are redirected. */
class TORVIXTEST_EXPORT Terminal
{
public:
    enum class Echo { On, Off };

    /** Null when there is none. */
    static std::unique_ptr<Terminal> open();
    /** Another device than the controlling terminal, for tests; empty goes back to it. */
    static void setDevice(const QString& path);

    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void write(const QString& text);
    /** Waits for a line. False when the person ended the input instead (Ctrl-D), and when the script is
     *  to end. */
    bool readLine(QString* line, Echo echo = Echo::On);

private:
    explicit Terminal(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace Torvix

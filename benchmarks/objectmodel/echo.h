#pragma once

#include <sys/types.h>

/**
 * The peer to measure against: a process that sends back what it gets over a local socket, 40 bytes at
 * a time, with nothing but blocking reads and writes.
 */
class Echo
{
public:
    static constexpr int size = 40;

    Echo();
    ~Echo();
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;

    /** There and back; false when the other process is gone. */
    bool roundTrip();

private:
    int m_socket = -1;
    pid_t m_pid = -1;
};

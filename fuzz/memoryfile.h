#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/** A file in memory for readers that want a name. */
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : m_handle(memfd_create("fuzz", 0))
    {
        for (std::size_t done = 0; done < size;) {
            const ssize_t count = write(m_handle, data + done, size - done);
            if (count <= 0)
                break;
            done += static_cast<std::size_t>(count);
        }
    }
    ~MemoryFile() { close(m_handle); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string name() const { return "/proc/self/fd/" + std::to_string(m_handle); }

private:
    int m_handle;
};

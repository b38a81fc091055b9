#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace TorvixTest {

/** A server program that ends with the object, or with this process. */
class ChildServer
{
public:
    ChildServer() = default;
    ~ChildServer();
    ChildServer(const ChildServer&) = delete;
    ChildServer& operator=(const ChildServer&) = delete;

    /** Starts a python script of this folder, which prints its port; waits for that port. */
    void startPython(const std::string& script);

    /** Starts a program that makes a file once it listens on `port`; false if it ended instead. */
    bool startOnPort(const std::vector<std::string>& command, unsigned short port,
                     const std::string& readyFile);

    void stop();

    unsigned short port() const { return m_port; }

private:
    void spawn(const std::vector<std::string>& command, const std::vector<std::string>& environment,
               int output);

    pid_t m_process = -1;
    unsigned short m_port = 0;
};

/** nginx with the given locations of one server, its files in a temporary folder of its own. */
class NginxServer
{
public:
    /** `locations` goes into the server block, `files` (name, content) into its root. */
    NginxServer(const std::string& locations,
                const std::vector<std::pair<std::string, std::string>>& files = {});
    ~NginxServer();

    std::string url(const std::string& path) const;
    unsigned short port() const { return m_server.port(); }

private:
    void writeConfiguration(unsigned short port, const std::string& locations) const;

    std::string m_folder;
    ChildServer m_server;
};

} // namespace TorvixTest

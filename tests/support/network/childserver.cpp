#include "support/network/childserver.h"

#include "support/network/rawserver.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace TorvixTest {

namespace {

std::string readLine(int descriptor, int timeoutMs)
{
    std::string line;
    char byte = 0;
    for (;;) {
        pollfd waiting = {descriptor, POLLIN, 0};
        if (::poll(&waiting, 1, timeoutMs) <= 0 || ::read(descriptor, &byte, 1) != 1)
            throw std::runtime_error("the server did not start");
        if (byte == '\n')
            return line;
        line += byte;
    }
}

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (const std::string& text : texts)
        result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

} // namespace

ChildServer::~ChildServer()
{
    stop();
}

void ChildServer::stop()
{
    if (m_process <= 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
}

void ChildServer::spawn(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                        int output)
{
    const std::vector<char*> arguments = pointers(command);
    const std::vector<char*> variables = pointers(environment);
    const pid_t parent = ::getpid();
    m_process = ::fork();
    if (m_process < 0)
        throw std::runtime_error("fork failed");
    if (m_process > 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    if (output >= 0)
        ::dup2(output, STDOUT_FILENO);
    ::execve(arguments[0], arguments.data(), variables.data());
    ::_exit(127);
}

void ChildServer::startPython(const std::string& script)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe failed");
    const std::string path = std::string(TORVIX_NETWORK_SUPPORT_DIR) + "/" + script;
    spawn({"/usr/bin/python3", "-W", "ignore", path}, {"PYTHONDONTWRITEBYTECODE=1", "LC_ALL=C.UTF-8"},
          ends[1]);
    ::close(ends[1]);
    const std::string line = readLine(ends[0], 60000);
    ::close(ends[0]);
    m_port = static_cast<unsigned short>(std::stoi(line));
}

bool ChildServer::startOnPort(const std::vector<std::string>& command, unsigned short port,
                              const std::string& readyFile)
{
    spawn(command, {"LC_ALL=C.UTF-8"}, -1);
    m_port = port;
    for (int waited = 0; waited < 10000; ++waited) {
        if (::waitpid(m_process, nullptr, WNOHANG) == m_process) {
            m_process = -1;
            return false;
        }
        if (std::filesystem::exists(readyFile))
            return true;
        ::usleep(1000);
    }
    throw std::runtime_error("the server does not listen");
}

NginxServer::NginxServer(const std::string& locations,
                         const std::vector<std::pair<std::string, std::string>>& files)
{
    std::string pattern = (std::filesystem::temp_directory_path() / "torvix-nginx-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    m_folder = pattern;
    std::filesystem::create_directory(m_folder + "/root");
    for (const auto& [name, content] : files)
        std::ofstream(m_folder + "/root/" + name, std::ios::binary) << content;
    // nginx chooses no port itself. One that was free may be taken before it listens: then the next.
    for (int attempt = 0; attempt < 20; ++attempt) {
        const unsigned short port = Listener(Listener::State::BoundOnly).port();
        writeConfiguration(port, locations);
        if (m_server.startOnPort(
                {"/usr/sbin/nginx", "-e", m_folder + "/error.log", "-c", m_folder + "/nginx.conf"}, port,
                m_folder + "/pid"))
            return;
    }
    throw std::runtime_error("nginx did not start");
}

void NginxServer::writeConfiguration(unsigned short port, const std::string& locations) const
{
    std::ofstream(m_folder + "/nginx.conf")
        << "daemon off; master_process off; pid " << m_folder << "/pid;\n"
        << "error_log " << m_folder << "/error.log;\nevents { worker_connections 64; }\n"
        << "http { access_log off; default_type text/plain; keepalive_requests 100000;\n"
        << "client_body_temp_path " << m_folder << "/body; proxy_temp_path " << m_folder << "/proxy;\n"
        << "fastcgi_temp_path " << m_folder << "/fastcgi; uwsgi_temp_path " << m_folder << "/uwsgi;\n"
        << "scgi_temp_path " << m_folder << "/scgi;\n"
        << "server { listen 127.0.0.1:" << port << "; root " << m_folder << "/root;\n"
        << locations << "\n} }\n";
}

NginxServer::~NginxServer()
{
    m_server.stop();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

std::string NginxServer::url(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(port()) + path;
}

} // namespace TorvixTest

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
                        int listener, int output)
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
    if (listener >= 0 && ::dup2(listener, 3) == listener)
        ::fcntl(3, F_SETFD, 0);
    ::execve(arguments[0], arguments.data(), variables.data());
    ::_exit(127);
}

void ChildServer::startPython(const std::string& script)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe failed");
    const std::string path = std::string(TORVIX_NETWORK_SUPPORT_DIR) + "/" + script;
    spawn({"/usr/bin/python3", "-W", "ignore", path}, {"PYTHONDONTWRITEBYTECODE=1", "LC_ALL=C.UTF-8"}, -1,
          ends[1]);
    ::close(ends[1]);
    const std::string line = readLine(ends[0], 60000);
    ::close(ends[0]);
    m_port = static_cast<unsigned short>(std::stoi(line));
}

void ChildServer::startWithListener(const std::vector<std::string>& command,
                                    const std::vector<std::string>& environment, const Listener& listener)
{
    m_port = listener.port();
    spawn(command, environment, listener.descriptor(), -1);
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
    // The socket is ours and comes through the variable that nginx uses to replace its own program,
    // so that no port is chosen twice; the port in the file only has to be the same.
    const Listener listener;
    const std::string address = "127.0.0.1:" + std::to_string(listener.port());
    std::ofstream(m_folder + "/nginx.conf")
        << "daemon off; master_process off; worker_processes 1; pid " << m_folder << "/pid;\n"
        << "error_log " << m_folder << "/error.log;\nevents { worker_connections 64; }\n"
        << "http { access_log off; default_type text/plain; keepalive_requests 100000;\n"
        << "client_body_temp_path " << m_folder << "/body; proxy_temp_path " << m_folder << "/proxy;\n"
        << "fastcgi_temp_path " << m_folder << "/fastcgi; uwsgi_temp_path " << m_folder << "/uwsgi;\n"
        << "scgi_temp_path " << m_folder << "/scgi;\n"
        << "server { listen " << address << "; root " << m_folder << "/root;\n"
        << locations << "\n} }\n";
    m_server.startWithListener(
        {"/usr/sbin/nginx", "-e", m_folder + "/error.log", "-c", m_folder + "/nginx.conf"}, {"NGINX=3;"},
        listener);
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

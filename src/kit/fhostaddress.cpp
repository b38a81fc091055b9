#include "kit/fhostaddress.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>

FHostAddress::FHostAddress(const sockaddr* address)
{
    if (address && address->sa_family == AF_INET) {
        sockaddr_in ipv4;
        std::memcpy(&ipv4, address, sizeof ipv4);
        m_family = Family::IPv4;
        std::memcpy(m_bytes.data(), &ipv4.sin_addr, sizeof ipv4.sin_addr);
    } else if (address && address->sa_family == AF_INET6) {
        sockaddr_in6 ipv6;
        std::memcpy(&ipv6, address, sizeof ipv6);
        m_family = Family::IPv6;
        std::memcpy(m_bytes.data(), &ipv6.sin6_addr, sizeof ipv6.sin6_addr);
        m_scopeId = ipv6.sin6_scope_id;
    }
}

QString FHostAddress::toString() const
{
    if (isNull())
        return QString();
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(m_family == Family::IPv4 ? AF_INET : AF_INET6, m_bytes.data(), text, sizeof text);
    QString result = QString::fromLatin1(text);
    char interfaceName[IF_NAMESIZE] = "";
    if (m_scopeId != 0 && if_indextoname(m_scopeId, interfaceName))
        result += QLatin1Char('%') + QString::fromLocal8Bit(interfaceName);
    return result;
}

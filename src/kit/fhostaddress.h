#pragma once

#include "kit/export.h"

#include <QString>

#include <array>

struct sockaddr;

/** An IPv4 or IPv6 address, or none. */
class TORVIXKIT_EXPORT FHostAddress
{
public:
    enum class Family { None, IPv4, IPv6 };

    FHostAddress() = default;

    /** The address of an AF_INET or AF_INET6 socket address; none for any other. */
    explicit FHostAddress(const sockaddr* address);

    Family family() const { return m_family; }
    bool isNull() const { return m_family == Family::None; }

    /**
     * "127.0.0.1", "::1" (RFC 5952), "fe80::1%eth0" for a link-local address with its interface;
     * the empty text for none.
     */
    QString toString() const;

private:
    Family m_family = Family::None;
    /** In network order; IPv4 uses the first four. */
    std::array<unsigned char, 16> m_bytes = {};
    unsigned int m_scopeId = 0;
};

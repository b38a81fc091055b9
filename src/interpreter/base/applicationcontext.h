#pragma once

#include "shared/base/sharedptr.h"

#include <QDateTime>
#include <QString>

#include <vector>

namespace Torvix {

/**
 * One application under test as the runner knows it.
 *
 * The runner makes and fills it; scripts and the object model only read it. A default-constructed
 * context stands for "no application".
 */
class ApplicationContext : public Shared
{
public:
    /** True for a context that the runner has numbered, also after its application has ended. */
    bool isValid() const { return id >= 0; }

    /**
     * True while the application can be talked to: it has an id and a connection, has told its
     * protocol version, and its greeting has been received.
     */
    bool isUsable() const
    {
        return id != -1 && connection != -1 && protocolVersion != 0 && greeting.data() != nullptr;
    }

    int id = -1;                ///< number of the context, 0 or more; -1 for none
    QString name;               ///< name that scripts find it by
    QString commandLine;        ///< program and arguments as they were started
    int connection = -1;        ///< number of the runner's connection to it; -1 for none
    int protocolVersion = 0;    ///< version that the application speaks; 0 before it has told
    QDateTime startTime;        ///< invalid when not known
    std::vector<char> greeting; ///< the application's first message, undecoded; empty before it
};

} // namespace Torvix

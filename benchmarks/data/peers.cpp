#include "peers.h"

#include <QProcess>
#include <cstdio>
#include <cstdlib>

namespace {

QByteArray runPeers(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("/usr/bin/python3"),
                  QStringList(QStringLiteral(TORVIX_BENCHMARK_SOURCE_DIR "/peers.py")) + arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        std::fprintf(stderr, "benchmark: the peer could not be run; see benchmarks/data/peers.py\n");
        std::exit(3);
    }
    return process.readAllStandardOutput();
}

} // namespace

void makeInput(const QString& kind, const QString& file)
{
    runPeers({QStringLiteral("make"), kind, file});
}

double peerSeconds(const QString& kind, const QString& file)
{
    return runPeers({QStringLiteral("read"), kind, file}).toDouble();
}

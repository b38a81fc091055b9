#include "protocol/channel.h"

#include <QElapsedTimer>

namespace Torvix::Protocol {

bool Channel::writeAll(const QByteArray& bytes, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    for (int written = 0; written < bytes.size();) {
        const qint64 count = write(bytes.constData() + written, bytes.size() - written);
        if (count < 0)
            return false;
        written += int(count);
        if (count > 0 || written == bytes.size())
            continue;
        const int left = timeoutMs < 0 ? -1 : qMax(0, timeoutMs - int(timer.elapsed()));
        if (!wait(Wait::Writable, left))
            return false;
    }
    return true;
}

namespace {

/** What one end has written and the other has not read yet. */
struct Pipe
{
    QByteArray bytes;
    bool closed = false;
};

class MemoryChannel : public Channel
{
public:
    MemoryChannel(std::shared_ptr<Pipe> in, std::shared_ptr<Pipe> out)
        : m_in(std::move(in))
        , m_out(std::move(out))
    {
    }
    ~MemoryChannel() override { m_in->closed = m_out->closed = true; }

    qint64 read(char* data, qint64 size) override
    {
        const auto count = qMin<qint64>(size, m_in->bytes.size());
        if (count == 0)
            return m_in->closed ? -1 : 0;
        memcpy(data, m_in->bytes.constData(), size_t(count));
        m_in->bytes.remove(0, int(count));
        return count;
    }

    qint64 write(const char* data, qint64 size) override
    {
        if (m_out->closed)
            return -1;
        m_out->bytes.append(data, int(size));
        return size;
    }

    bool wait(Wait what, int) override
    {
        return what == Wait::Writable || m_in->closed || !m_in->bytes.isEmpty();
    }

private:
    std::shared_ptr<Pipe> m_in;
    std::shared_ptr<Pipe> m_out;
};

} // namespace

std::pair<std::unique_ptr<Channel>, std::unique_ptr<Channel>> memoryChannels()
{
    auto there = std::make_shared<Pipe>();
    auto back = std::make_shared<Pipe>();
    return {std::make_unique<MemoryChannel>(there, back), std::make_unique<MemoryChannel>(back, there)};
}

} // namespace Torvix::Protocol

#include "shared/testdata/linereader.h"

#include "shared/testdata/packedcells.h"

#include <QTextCodec>
#include <cstring>

namespace Torvix {

namespace {

constexpr int FirstBlock = 1 << 16;
constexpr int MaxText = int(PackedCells::MaxBytes) - 64; // what a byte array can hold
constexpr int Utf8Mib = 106; // the number of UTF-8 in the IANA registry of character sets

bool startsWithMark(const QByteArray& text)
{
    for (const char* mark : {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"})
        if (text.startsWith(mark))
            return true;
    return text.startsWith(QByteArray("\0\0\xFE\xFF", 4));
}

} // namespace

std::unique_ptr<LineReader> LineReader::open(const QString& fileName)
{
    std::unique_ptr<LineReader> reader(new LineReader(fileName));
    if (!reader->m_file.open(QIODevice::ReadOnly) || reader->m_file.size() > MaxText)
        return nullptr;
    reader->readMore();
    if (startsWithMark(reader->m_text))
        reader->convertFromMarkedEncoding();
    return reader;
}

void LineReader::convertFromMarkedEncoding()
{
    const QTextCodec* utf8 = QTextCodec::codecForMib(Utf8Mib);
    const QTextCodec* codec = QTextCodec::codecForUtfText(m_text, QTextCodec::codecForMib(Utf8Mib));
    if (codec == utf8) {
        m_position = 3;
        return;
    }
    readAll();
    m_text = codec->toUnicode(m_text).toUtf8();
}

bool LineReader::readMore(qint64 wanted)
{
    if (m_complete)
        return false;
    const int before = m_text.size();
    const int block = int(std::min<qint64>(wanted, MaxText - before));
    m_text.resize(before + block);
    const qint64 got = std::max<qint64>(0, m_file.read(m_text.data() + before, block));
    m_text.resize(before + int(got));
    m_complete = got == 0;
    // What was not found so far may be in the new block.
    m_nextQuote = m_nextLineFeed = -1;
    return !m_complete;
}

bool LineReader::readMore()
{
    // Doubling, so that a line which is looked through again after each block costs linear time.
    return readMore(std::max(m_text.size(), FirstBlock));
}

void LineReader::readAll()
{
    readMore(std::max<qint64>(m_file.size() - m_text.size() + 1, FirstBlock));
    while (readMore()) {
    }
}

bool LineReader::atEnd()
{
    return m_position >= m_text.size() && !readMore();
}

int LineReader::findNext(char wanted, int& cached, int from) const
{
    if (cached < from) {
        const char* begin = m_text.constData();
        const void* found = std::memchr(begin + from, wanted, std::size_t(m_text.size() - from));
        cached = found ? int(static_cast<const char*>(found) - begin) : m_text.size();
    }
    return cached;
}

std::optional<int> LineReader::findLineFeed()
{
    const int size = m_text.size();
    int at = m_position;
    while (at < size) {
        const int quote = findNext('"', m_nextQuote, at);
        const int lineFeed = findNext('\n', m_nextLineFeed, at);
        if (lineFeed < quote)
            return lineFeed;
        // Over the quoted stretch; a doubled quote is the end of one and the start of the next.
        if (quote == size)
            break;
        const int closing = findNext('"', m_nextQuote, quote + 1);
        at = closing + 1;
    }
    return std::nullopt;
}

std::string_view LineReader::next()
{
    if (atEnd())
        return {};
    std::optional<int> lineFeed = findLineFeed();
    while (!lineFeed && readMore())
        lineFeed = findLineFeed();

    const int start = m_position;
    int end = lineFeed.value_or(m_text.size());
    m_position = end + 1;
    if (lineFeed && end > start && m_text.at(end - 1) == '\r')
        --end;
    return std::string_view(m_text.constData() + start, std::size_t(end - start));
}

} // namespace Torvix

#include "testsupport/verification/textdiff.h"

#include <algorithm>
#include <vector>

namespace Torvix {

namespace {

enum class Kind { Same, Expected, Actual };

struct Step
{
    Kind kind;
    QString line;
    int expectedLine; ///< from 1, of the expected text, where the step stands
};

/**
 * The edit script by E. Myers, "An O(ND) Difference Algorithm" (1986), forward variant. Above the
 * limit of differences the rest is told as one block: quadratic memory helps nobody.
 */
class LineDiff
{
public:
    LineDiff(const QStringList& expected, const QStringList& actual) : m_a(expected), m_b(actual) {}

    std::vector<Step> steps()
    {
        int prefix = 0;
        while (prefix < m_a.size() && prefix < m_b.size() && m_a[prefix] == m_b[prefix])
            ++prefix;
        m_aEnd = m_a.size();
        m_bEnd = m_b.size();
        while (m_aEnd > prefix && m_bEnd > prefix && m_a[m_aEnd - 1] == m_b[m_bEnd - 1]) {
            --m_aEnd;
            --m_bEnd;
        }
        for (int i = 0; i < prefix; ++i)
            add(Kind::Same, i);
        m_offset = prefix;
        if (!search())
            addBlock();
        for (int i = m_aEnd; i < m_a.size(); ++i)
            add(Kind::Same, i);
        return std::move(m_steps);
    }

private:
    static constexpr int maxDifferences = 2000;

    void add(Kind kind, int index)
    {
        if (kind == Kind::Actual)
            m_steps.push_back({kind, m_b[index], nextExpectedLine()});
        else
            m_steps.push_back({kind, m_a[index], index + 1});
    }

    int nextExpectedLine() const
    {
        if (m_steps.empty())
            return 1;
        const Step& last = m_steps.back();
        return last.kind == Kind::Actual ? last.expectedLine : last.expectedLine + 1;
    }

    void addBlock()
    {
        for (int i = m_offset; i < m_aEnd; ++i)
            add(Kind::Expected, i);
        for (int i = m_offset; i < m_bEnd; ++i)
            add(Kind::Actual, i);
    }

    bool search()
    {
        const int n = m_aEnd - m_offset;
        const int m = m_bEnd - m_offset;
        const int limit = std::min(n + m, maxDifferences);
        std::vector<int> furthest(2 * std::size_t(limit) + 3, 0);
        const auto at = [limit](int k) { return std::size_t(k + limit + 1); };
        std::vector<std::vector<int>> trace;
        for (int d = 0; d <= limit; ++d) {
            trace.push_back(furthest);
            for (int k = -d; k <= d; k += 2) {
                const bool down = k == -d || (k != d && furthest[at(k - 1)] < furthest[at(k + 1)]);
                int x = down ? furthest[at(k + 1)] : furthest[at(k - 1)] + 1;
                while (x < n && x - k < m && m_a[m_offset + x] == m_b[m_offset + x - k])
                    ++x;
                furthest[at(k)] = x;
                if (x >= n && x - k >= m) {
                    walkBack(trace, at, n, m);
                    return true;
                }
            }
        }
        return false;
    }

    template <class At>
    void walkBack(const std::vector<std::vector<int>>& trace, At at, int x, int y)
    {
        std::vector<std::pair<Kind, int>> reversed;
        for (int d = int(trace.size()) - 1; d >= 0; --d) {
            const std::vector<int>& furthest = trace[std::size_t(d)];
            const int k = x - y;
            const bool down = k == -d || (k != d && furthest[at(k - 1)] < furthest[at(k + 1)]);
            const int previousK = down ? k + 1 : k - 1;
            const int previousX = d == 0 ? 0 : furthest[at(previousK)];
            const int previousY = d == 0 ? 0 : previousX - previousK;
            while (x > previousX && y > previousY) {
                --x;
                --y;
                reversed.emplace_back(Kind::Same, m_offset + x);
            }
            if (d > 0)
                reversed.emplace_back(down ? Kind::Actual : Kind::Expected,
                                      m_offset + (down ? previousY : previousX));
            x = previousX;
            y = previousY;
        }
        for (auto step = reversed.rbegin(); step != reversed.rend(); ++step)
            add(step->first, step->second);
    }

    const QStringList& m_a;
    const QStringList& m_b;
    int m_offset = 0;
    int m_aEnd = 0;
    int m_bEnd = 0;
    std::vector<Step> m_steps;
};

} // namespace

QString textDifference(const QStringList& expected, const QStringList& actual, int linesAround)
{
    const std::vector<Step> steps = LineDiff(expected, actual).steps();
    std::vector<bool> isShown(steps.size(), false);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].kind == Kind::Same)
            continue;
        const std::size_t around = std::size_t(linesAround);
        const std::size_t first = i > around ? i - around : 0;
        const std::size_t last = std::min(steps.size() - 1, i + around);
        std::fill(isShown.begin() + long(first), isShown.begin() + long(last) + 1, true);
    }
    QStringList lines;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!isShown[i])
            continue;
        if (i > 0 && !isShown[i - 1])
            lines += QStringLiteral("@@ line %1 @@").arg(steps[i].expectedLine);
        const char* sign = steps[i].kind == Kind::Same ? "  " : steps[i].kind == Kind::Expected ? "- " : "+ ";
        lines += QLatin1String(sign) + steps[i].line;
    }
    return lines.join(QLatin1Char('\n'));
}

QString textDifference(const QString& expected, const QString& actual, int linesAround)
{
    return textDifference(expected.split(QLatin1Char('\n')), actual.split(QLatin1Char('\n')), linesAround);
}

} // namespace Torvix

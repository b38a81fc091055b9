#include "runner/nearestname.h"

#include <algorithm>
#include <vector>

namespace Torvix {

namespace {

/**
 * The least number of characters to put in, take out, change or swap with their neighbour (optimal string
 * alignment), case aside.
 */
int editDistance(const QString& from, const QString& to)
{
    const auto width = std::size_t(to.size()) + 1;
    std::vector<int> costs((std::size_t(from.size()) + 1) * width);
    const auto cost = [&](int i, int j) -> int& { return costs[std::size_t(i) * width + std::size_t(j)]; };
    const auto isSame = [&](int i, int j) { return from[i - 1].toLower() == to[j - 1].toLower(); };
    for (int i = 0; i <= from.size(); ++i) {
        for (int j = 0; j <= to.size(); ++j) {
            if (i == 0 || j == 0) {
                cost(i, j) = i + j;
                continue;
            }
            cost(i, j) = std::min(
                {cost(i - 1, j) + 1, cost(i, j - 1) + 1, cost(i - 1, j - 1) + (isSame(i, j) ? 0 : 1)});
            if (i > 1 && j > 1 && isSame(i, j - 1) && isSame(i - 1, j))
                cost(i, j) = std::min(cost(i, j), cost(i - 2, j - 2) + 1);
        }
    }
    return costs.back();
}

} // namespace

QString didYouMean(const QString& given, const QStringList& known)
{
    QString nearest;
    // A third of the characters may be wrong, and the beginning of a name is always near.
    int least = given.size() / 3 + 1;
    for (const QString& name : known) {
        const bool isBeginning = given.size() > 2 && name.startsWith(given, Qt::CaseInsensitive);
        const int distance = isBeginning ? 0 : editDistance(given, name);
        if (distance < least) {
            least = distance;
            nearest = name;
        }
    }
    return nearest.isEmpty() ? QString() : QStringLiteral(" (did you mean '%1'?)").arg(nearest);
}

} // namespace Torvix

#include "shared/text/nearestname.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Torvix {

int editDistance(const QString& from, const QString& to)
{
    const auto width = std::size_t(to.size()) + 1;
    std::vector<int> costs((std::size_t(from.size()) + 1) * width);
    const auto cost = [&](int i, int j) -> int& { return costs[std::size_t(i) * width + std::size_t(j)]; };
    const auto isSame = [&](int i, int j) { return from[i - 1] == to[j - 1]; };
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

QString nearestName(const QString& given, const QStringList& known)
{
    const QString wanted = given.toCaseFolded();
    QString nearest;
    // A third of the characters may be wrong, and the beginning of a name is always near.
    int least = wanted.size() / 3 + 1;
    for (const QString& name : known) {
        const QString candidate = name.toCaseFolded();
        if (wanted.size() > 2 && candidate.startsWith(wanted))
            return name;
        // The lengths alone are that far apart.
        if (std::abs(candidate.size() - wanted.size()) >= least)
            continue;
        const int distance = editDistance(wanted, candidate);
        if (distance < least) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

QString didYouMean(const QString& given, const QStringList& known)
{
    const QString nearest = nearestName(given, known);
    return nearest.isEmpty() ? QString() : QStringLiteral(" (did you mean '%1'?)").arg(nearest);
}

} // namespace Torvix

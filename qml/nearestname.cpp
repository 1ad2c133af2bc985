#include "nearestname.h"

#include <QtCore/QVector>

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace
{

constexpr int longestName = 100; // of what a script gave; no name of the platform has so many letters

/// Letters to put in, to take away or to replace.
int distance(const QString &a, const QString &b)
{
    QVector<int> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], i + 1);
        for (int j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a.at(i) == b.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({replaced, diagonal + 1, row.at(j) + 1});
        }
    }
    return row.constLast();
}

} // namespace

QString nearestName(const QString &name, const QStringList &known)
{
    if (name.size() > longestName)
        return {};
    QString nearest;
    std::pair<int, int> least(std::numeric_limits<int>::max(), 0); // first without regard to case
    for (const QString &candidate : known) {
        const std::pair<int, int> current(distance(name.toLower(), candidate.toLower()), distance(name, candidate));
        if (current < least && current.first * 2 <= name.size()) {
            least = current;
            nearest = candidate;
        }
    }
    return nearest;
}

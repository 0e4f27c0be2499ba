#include "cli/near_word.h"

#include <algorithm>
#include <vector>

namespace
{

// One slip for every three letters, one at least: "dmp", "vreify", "ovrewrit".
int allowedSlips(const QString &typed)
{
    return std::max(1, static_cast<int>(typed.size()) / 3);
}

// The number of letters added, left out, exchanged or swapped with their neighbour.
int slipsBetween(const QString &left, const QString &right)
{
    const int width = static_cast<int>(right.size()) + 1;
    const int height = static_cast<int>(left.size()) + 1;
    std::vector<int> slips(static_cast<std::size_t>(width * height));
    const auto at = [&slips, width](int row, int column) -> int & {
        return slips[static_cast<std::size_t>(row * width + column)];
    };
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            if (row == 0 || column == 0) {
                at(row, column) = row + column;
                continue;
            }
            const int changed = left[row - 1] == right[column - 1] ? 0 : 1;
            int least = std::min(at(row - 1, column), at(row, column - 1)) + 1;
            least = std::min(least, at(row - 1, column - 1) + changed);
            if (row > 1 && column > 1 && left[row - 1] == right[column - 2] &&
                left[row - 2] == right[column - 1])
                least = std::min(least, at(row - 2, column - 2) + 1);
            at(row, column) = least;
        }
    }
    return at(height - 1, width - 1);
}

} // namespace

QString nearWord(const QString &typed, const QStringList &words)
{
    constexpr int kShortestBeginning = 3;
    const QString sought = typed.toLower();
    QString nearest;
    int least = allowedSlips(sought) + 1;
    for (const QString &word : words) {
        int slips = slipsBetween(sought, word);
        if (sought.size() >= kShortestBeginning && word.startsWith(sought))
            slips = std::min(slips, 1);
        if (slips < least) {
            least = slips;
            nearest = word;
        }
    }
    return nearest;
}

#include "presentation/palette/filteredItems.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

namespace tarnvale {

namespace {

constexpr std::size_t mostWithoutWords = 60;

QStringList wordsOf(const QString &query) {
    const QString text = forPaletteSearch(query).simplified(); // single blanks between words, none around
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

std::vector<std::size_t> filteredItems(const std::vector<PaletteItem> &items, const QString &query) {
    const QStringList words = wordsOf(query);
    std::vector<std::size_t> found;
    if (words.isEmpty()) {
        found.resize(std::min(items.size(), mostWithoutWords));
        std::iota(found.begin(), found.end(), std::size_t{0});
        return found;
    }
    for (std::size_t place = 0; place < items.size(); ++place)
        if (std::all_of(words.begin(), words.end(),
                        [&](const QString &word) { return items[place].searched.contains(word); }))
            found.push_back(place);
    return found;
}

} // namespace tarnvale

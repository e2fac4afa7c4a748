#pragma once

#include <QCache>
#include <QImage>

#include <functional>
#include <tuple>
#include <utility>

namespace tarnvale {

/// The pictures that parts of a page share with those that look the same, up to a number of bytes. `Key` is a
/// tuple of all that a picture depends on.
template<typename Key> class PictureCache {
public:
    explicit PictureCache(int mostBytes) : m_known(mostBytes) {}

    /// The picture of that key, made by `make` where it isn't known.
    QImage picture(const Key &key, const std::function<QImage()> &make) {
        const std::size_t hash =
            std::apply([](const auto &...parts) { return qHashMulti(0, parts...); }, key);
        if (const auto *known = m_known.object(hash); known != nullptr && known->first == key)
            return known->second;
        QImage image = make();
        m_known.insert(hash, new std::pair(key, image), static_cast<int>(image.sizeInBytes()));
        return image;
    }

private:
    QCache<std::size_t, std::pair<Key, QImage>> m_known;
};

} // namespace tarnvale

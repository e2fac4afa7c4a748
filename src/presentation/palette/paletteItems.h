#pragma once

#include "presentation/groupedRows.h"
#include "presentation/palette/PaletteItem.h"
#include "presentation/shared/SidebarItem.h"
#include "store/Stack.h"

#include <functional>
#include <memory>
#include <vector>

namespace tarnvale {

/// What the palette's items do. None is left out.
struct PaletteActions {
    std::function<void(const ListeningPort &)> open; ///< in the browser
    std::function<void(const ListeningPort &)> show; ///< in the window
    std::function<void(const ListeningPort &)> copy; ///< its address
    std::function<void(const ListeningPort &)> restart;
    std::function<void(const ListeningPort &)> stop;
    std::function<void(const Stack &)> startStack;
    std::function<void(SidebarItem)> navigate;
    std::function<void()> refresh;
    std::function<void()> flipShowAll;
};

/// What the list is made of.
struct PaletteContents {
    std::vector<RowEntry> rows;
    std::vector<Stack> stacks;
    bool showAll = false; ///< system processes are listed

    bool operator==(const PaletteContents &) const = default;
};

/// The whole list: for each row what can be done with its port, then the stacks, the pages, and what is
/// always there. The items share `actions`.
[[nodiscard]] std::vector<PaletteItem> paletteItems(const PaletteContents &contents,
                                                    const std::shared_ptr<const PaletteActions> &actions);

} // namespace tarnvale

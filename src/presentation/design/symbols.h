#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <string_view>
#include <vector>

namespace tarnvale {

/// The names of all symbols and logos there are.
[[nodiscard]] std::vector<std::string_view> symbolNames();

/// The resource with the drawing (SVG, 24 units wide) of the symbol or logo of this name; empty for an
/// unknown one.
[[nodiscard]] QString symbolFile(QStringView name);

/// How a symbol is drawn.
struct SymbolStyle {
    QColor color;
    double stroke = 2; ///< the width of its lines, in units of 24 a side
};

/// The symbol or logo of this name with `side` pixels a side; a null image for an unknown one.
[[nodiscard]] QImage renderSymbol(QStringView name, int side, const SymbolStyle &style);

} // namespace tarnvale

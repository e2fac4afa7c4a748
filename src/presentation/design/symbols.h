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

/// The sides of a symbol's box in a text of that size, in units: a logo's is as large as the text, a symbol's
/// a little larger.
[[nodiscard]] int symbolBox(QStringView name, double fontSize);

/// The stroke for a text of that size: thin lines vanish in small symbols and look coarse in large ones.
[[nodiscard]] double symbolStroke(double fontSize);

/// Where what is `side` long stands in the middle of `room`, on the pixels as anchors have it.
[[nodiscard]] double middleIn(double room, double side);

/// The symbol or logo of this name with `side` pixels a side; a null image for an unknown one.
[[nodiscard]] QImage renderSymbol(QStringView name, int side, const SymbolStyle &style);

} // namespace tarnvale

#include "presentation/design/symbols.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tarnvale {

namespace {

/// How a drawing that is all lines becomes a symbol. Its parts are elements such as `<path ... />`; of a pair
/// of ground and sign on it, the ground is the first or the last.
enum class Look : std::uint8_t {
    outline,
    filled,
    firstFilled,
    firstCutOut, ///< the ground filled, the sign cut out of it
    lastCutOut,
    logo, ///< filled as it comes
};

struct Drawing {
    std::string_view name;
    std::string_view file;
    Look look;
};

constexpr auto symbols = std::to_array<Drawing>({
#include "presentation/design/symbols.inl"
});

const Drawing *findSymbol(QStringView name) {
    const auto *found = std::ranges::find_if(symbols, [&](const Drawing &symbol) {
        return name == QLatin1String(symbol.name.data(), static_cast<qsizetype>(symbol.name.size()));
    });
    return found == symbols.end() ? nullptr : found;
}

QString fileOf(const Drawing &symbol) {
    const QString folder = symbol.look == Look::logo ? QStringLiteral("logos/") : QStringLiteral("symbols/");
    return QStringLiteral(":/tarnvale/") + folder +
           QString::fromUtf8(symbol.file.data(), static_cast<qsizetype>(symbol.file.size())) +
           QStringLiteral(".svg");
}

/// Where an element of the drawing begins and ends.
struct Span {
    qsizetype from = 0;
    qsizetype size = 0;
};

/// The first or the last element in the `<svg>`, or nothing when it has none.
std::optional<Span> findElement(const QByteArray &drawing, bool first) {
    const qsizetype body = drawing.indexOf('>', drawing.indexOf("<svg")) + 1;
    const qsizetype end = first ? drawing.indexOf("/>", body) : drawing.lastIndexOf("/>");
    const qsizetype from = end < body ? -1 : drawing.lastIndexOf('<', end);
    return from < body ? std::nullopt : std::optional(Span{from, end + 2 - from});
}

void paint(QImage &image, const QByteArray &drawing, QPainter::CompositionMode mode) {
    QSvgRenderer renderer(drawing);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(mode);
    renderer.render(&painter, QRectF(image.rect()));
}

QByteArray allFilled(QByteArray drawing) {
    return drawing.replace("fill=\"none\"", "fill=\"black\"");
}

QByteArray firstFilled(QByteArray drawing) {
    const std::optional<Span> ground = findElement(drawing, true);
    return ground ? drawing.insert(ground->from + ground->size - 2, " fill=\"black\" ") : drawing;
}

void paintCutOut(QImage &image, const QByteArray &drawing, bool first) {
    const std::optional<Span> ground = findElement(drawing, first);
    paint(image, allFilled(drawing), QPainter::CompositionMode_SourceOver);
    if (!ground)
        return;
    QByteArray sign = drawing;
    paint(image, allFilled(sign.remove(ground->from, ground->size)),
          QPainter::CompositionMode_DestinationOut);
}

void paintSymbol(QImage &image, const QByteArray &drawing, Look look) {
    constexpr auto over = QPainter::CompositionMode_SourceOver;
    switch (look) {
    case Look::filled:
        return paint(image, allFilled(drawing), over);
    case Look::firstFilled:
        return paint(image, firstFilled(drawing), over);
    case Look::firstCutOut:
        return paintCutOut(image, drawing, true);
    case Look::lastCutOut:
        return paintCutOut(image, drawing, false);
    case Look::outline:
    case Look::logo:
        return paint(image, drawing, over);
    }
}

/// The drawing in black, its lines `stroke` wide.
QByteArray readDrawing(const QString &path, double stroke) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll()
        .replace("currentColor", "black")
        .replace("stroke-width=\"2\"", "stroke-width=\"" + QByteArray::number(stroke) + '"');
}

} // namespace

std::vector<std::string_view> symbolNames() {
    std::vector<std::string_view> names;
    std::ranges::transform(symbols, std::back_inserter(names), &Drawing::name);
    return names;
}

QString symbolFile(QStringView name) {
    const Drawing *symbol = findSymbol(name);
    return symbol == nullptr ? QString() : fileOf(*symbol);
}

int symbolBox(QStringView name, double fontSize) {
    return static_cast<int>(std::lround(name.startsWith(u"logo-") ? fontSize : fontSize * 1.2));
}

double symbolStroke(double fontSize) {
    if (fontSize < 12)
        return 2.25;
    return fontSize < 22 ? 2 : 1.5;
}

double middleIn(double room, double side) {
    return std::ceil(room / 2) - std::ceil(side / 2);
}

QImage renderSymbol(QStringView name, int side, const SymbolStyle &style) {
    const Drawing *symbol = findSymbol(name);
    if (symbol == nullptr || side <= 0)
        return {};
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    paintSymbol(image, readDrawing(fileOf(*symbol), style.stroke), symbol->look);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), style.color);
    return image;
}

} // namespace tarnvale

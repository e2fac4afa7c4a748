#include "updates/plainNotes.h"

#include "discovery/text.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tarnvale {

namespace {

constexpr std::size_t mostBytes = 64 << 10;
constexpr qsizetype mostCharacters = 256 << 10;

/// Text that grows by characters and line breaks: white space is one blank, and no more than one line is
/// empty.
class Lines {
public:
    void add(QChar character) {
        if (character.isSpace() && character != QChar::Nbsp) {
            m_hasBlank = true;
            return;
        }
        if (!m_text.isEmpty() && m_breaks > 0)
            m_text += QString(m_breaks, QLatin1Char('\n'));
        else if (!m_text.isEmpty() && m_hasBlank)
            m_text += QLatin1Char(' ');
        m_breaks = 0;
        m_hasBlank = false;
        m_text += character == QChar::Nbsp ? QChar(QLatin1Char(' ')) : character;
    }
    void add(QStringView text) {
        for (const QChar character : text)
            add(character);
    }
    void breakLine(int count) { m_breaks = std::max(m_breaks, count); }

    [[nodiscard]] const QString &text() const { return m_text; }

private:
    QString m_text;
    int m_breaks = 0;
    bool m_hasBlank = false;
};

struct Tag {
    QString name; ///< lower case, without "/"; "!--" for a comment
    bool isEnd = false;
};

/// The tag that `text` begins with, which holds a ">" somewhere; nothing when it is no tag.
std::optional<Tag> tagAt(QStringView text) {
    if (text.startsWith(QLatin1String("<!--")))
        return Tag{QStringLiteral("!--"), false};
    Tag tag{.name = {}, .isEnd = text.startsWith(QLatin1String("</"))};
    const qsizetype start = tag.isEnd ? 2 : 1;
    constexpr qsizetype longestName = 32;
    qsizetype end = start;
    while (end < text.size() && end < start + longestName &&
           (text[end].isLetterOrNumber() || (end == start && text[end] == QLatin1Char('!'))))
        ++end;
    if (end == start || text[start].isDigit())
        return std::nullopt;
    tag.name = text.mid(start, end - start).toString().toLower();
    return tag;
}

/// The empty lines that an element puts around itself, and the line break: 2, 1 or 0.
int breaksOf(const QString &name) {
    static const std::array apart{"p",  "h1", "h2", "h3",    "h4", "h5",         "h6",
                                  "ul", "ol", "dl", "table", "hr", "blockquote", "pre"};
    static const std::array own{"br",      "div",     "li",     "tr",     "dt",    "dd",
                                "section", "article", "header", "footer", "title", "body"};
    const auto is = [&name](const char *other) { return name == QLatin1String(other); };
    if (std::any_of(apart.begin(), apart.end(), is))
        return 2;
    return std::any_of(own.begin(), own.end(), is) ? 1 : 0;
}

/// Where the text goes on after the element `name` whose content is for machines; the end if it isn't closed.
qsizetype endOfHidden(QStringView text, qsizetype from, const QString &name) {
    const bool isComment = name == QLatin1String("!--");
    const QString closing = isComment ? QStringLiteral("-->") : QStringLiteral("</") + name;
    const qsizetype end = text.indexOf(closing, from, Qt::CaseInsensitive);
    const qsizetype close = end < 0 ? -1 : text.indexOf(QLatin1Char('>'), end);
    return close < 0 ? text.size() : close + 1;
}

bool isHidden(const Tag &tag) {
    static const std::array names{"!--", "script", "style", "head", "svg", "iframe", "object", "template"};
    return !tag.isEnd && std::any_of(names.begin(), names.end(),
                                     [&tag](const char *name) { return tag.name == QLatin1String(name); });
}

char32_t codePointOf(QStringView number) {
    const bool isHex = number.startsWith(QLatin1Char('x'), Qt::CaseInsensitive);
    bool isNumber = false;
    constexpr int hexadecimal = 16;
    constexpr int decimal = 10;
    const uint point = (isHex ? number.mid(1) : number).toUInt(&isNumber, isHex ? hexadecimal : decimal);
    const bool isText =
        isNumber && point > 0 && point <= QChar::LastValidCodePoint && !QChar::isSurrogate(point);
    return isText ? point : U'\uFFFD';
}

/// The text of the entity in "&name;"; empty for one that isn't known.
QString entity(QStringView name) {
    struct Row {
        const char *name;
        char16_t character;
    };
    static constexpr std::array rows{
        Row{"amp", u'&'},         Row{"lt", u'<'},         Row{"gt", u'>'},         Row{"quot", u'"'},
        Row{"apos", u'\''},       Row{"nbsp", u'\u00A0'},  Row{"ndash", u'\u2013'}, Row{"mdash", u'\u2014'},
        Row{"hellip", u'\u2026'}, Row{"bull", u'\u2022'},  Row{"copy", u'\u00A9'},  Row{"lsquo", u'\u2018'},
        Row{"rsquo", u'\u2019'},  Row{"ldquo", u'\u201C'}, Row{"rdquo", u'\u201D'}};
    if (name.startsWith(QLatin1Char('#'))) {
        const char32_t point = codePointOf(name.mid(1));
        return QString::fromUcs4(&point, 1);
    }
    for (const Row &row : rows)
        if (name == QLatin1String(row.name))
            return {QChar(row.character)};
    return {};
}

/// Adds the character or the entity at `at`; where the text goes on.
qsizetype addText(QStringView text, qsizetype at, Lines &lines) {
    constexpr qsizetype longestEntity = 10;
    const qsizetype end =
        text[at] == QLatin1Char('&') ? text.mid(at, longestEntity).indexOf(QLatin1Char(';')) : -1;
    const QString known = end > 1 ? entity(text.mid(at + 1, end - 1)) : QString();
    if (known.isEmpty()) {
        lines.add(text[at]);
        return at + 1;
    }
    lines.add(QStringView(known));
    return at + end + 1;
}

QString withoutMarkup(QStringView html) {
    Lines lines;
    const qsizetype lastEnd = html.lastIndexOf(QLatin1Char('>'));
    for (qsizetype at = 0; at < html.size();) {
        const auto tag =
            html[at] == QLatin1Char('<') && at < lastEnd ? tagAt(html.mid(at)) : std::optional<Tag>();
        if (!tag) {
            at = addText(html, at, lines);
            continue;
        }
        lines.breakLine(breaksOf(tag->name));
        if (tag->name == QLatin1String("li") && !tag->isEnd)
            lines.add(u"• ");
        at = isHidden(*tag) ? endOfHidden(html, at, tag->name) : html.indexOf(QLatin1Char('>'), at) + 1;
    }
    return lines.text();
}

/// Whether a browser would see any element in it.
bool hasTags(QStringView text) {
    const qsizetype lastEnd = text.lastIndexOf(QLatin1Char('>'));
    for (qsizetype at = text.indexOf(QLatin1Char('<')); at >= 0 && at < lastEnd;
         at = text.indexOf(QLatin1Char('<'), at + 1))
        if (tagAt(text.mid(at)))
            return true;
    return false;
}

/// Where the character begins that the byte at `at` belongs to.
std::size_t startOfCharacter(std::string_view text, std::size_t at) {
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0u) == 0x80u)
        --at;
    return at;
}

/// The lines of plain text, each fit to be shown, with no more than one empty line in a row.
std::string tidied(QString text) {
    text.replace(QChar(QChar::LineSeparator), QLatin1Char('\n'));
    text.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
    text.replace(QLatin1Char('\t'), QLatin1Char(' ')).remove(QLatin1Char('\r'));
    std::string result;
    int empty = 0;
    const std::string bytes = text.trimmed().toStdString();
    for (const std::string_view line : split(bytes, '\n')) {
        const std::size_t end = line.find_last_not_of(' ');
        empty = end == line.npos ? empty + 1 : 0;
        if (empty < 2)
            result += printable(end == line.npos ? std::string_view() : line.substr(0, end + 1)) + "\n";
    }
    result.pop_back(); // the last line's end
    if (result.size() > mostBytes)
        result.resize(startOfCharacter(result, mostBytes));
    return result;
}

} // namespace

std::string plainNotes(const QString &notes, bool isHtml) {
    const QString text = notes.left(mostCharacters);
    return tidied(isHtml && hasTags(text) ? withoutMarkup(text) : text);
}

} // namespace tarnvale

#include "updates/parseAppcast.h"

#include "discovery/text.h"
#include "updates/httpsAddress.h"
#include "updates/plainNotes.h"
#include "updates/verifyFile.h"

#include <QDateTime>
#include <QXmlStreamReader>

#include <array>
#include <optional>

namespace tarnvale {

namespace {

// <rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
//   <item>
//     <title>Version 2.0</title> <sparkle:version>42</sparkle:version>
//     <sparkle:shortVersionString>2.0</sparkle:shortVersionString>
//     <description><![CDATA[<ul><li>Faster</li></ul>]]></description>
//     <pubDate>Sat, 01 Mar 2025 12:00:00 +0000</pubDate>
//     <enclosure url="https://example.com/app.deb" length="1024" type="application/vnd.debian.binary-package"
//       sparkle:os="linux" sparkle:edSignature="..."/>
//   </item>
// </channel></rss>
// Older generators write the two versions as attributes of the enclosure.

constexpr int deepest = 64;
constexpr int mostAttributes = 64;
constexpr qsizetype longestVersion = 64;
constexpr qsizetype longestLine = 200;
constexpr qsizetype longestNotes = 256 << 10; // characters, markup included
constexpr qsizetype longestAddress = 2048;

const QString extensions = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

std::string asLine(QStringView text) {
    return printable(text.toString().simplified().left(longestLine).toStdString());
}

struct Enclosure {
    std::string url;
    std::int64_t length = 0;
    std::string type;
    std::string signature;
    QString version;
    QString shortVersion;
    bool isForLinux = false;
};

/// What an item says, before it is known whether it can be used.
struct Draft {
    UpdateItem item;
    QString version;
    QString shortVersion;
    std::optional<Enclosure> enclosure;
    bool isOfChannel = false;
};

std::optional<Enclosure> readEnclosure(const QXmlStreamAttributes &attributes) {
    const auto extra = [&](const char *name) { return attributes.value(extensions, QLatin1String(name)); };
    const QStringView system = extra("os").trimmed();
    const auto url = httpsAddress(attributes.value(QLatin1String("url")).trimmed().left(longestAddress + 1));
    const auto length = parseInteger<std::int64_t>(
        attributes.value(QLatin1String("length")).trimmed().toUtf8().toStdString());
    const std::string signature = extra("edSignature").trimmed().left(longestLine).toUtf8().toStdString();
    const bool isForLinux = system.compare(QLatin1String("linux"), Qt::CaseInsensitive) == 0;
    if ((!isForLinux && !system.isEmpty()) || !url || !length || *length < 1 || *length > mostUpdateBytes ||
        !isSignature(signature))
        return std::nullopt;
    return Enclosure{.url = *url,
                     .length = *length,
                     .type = asLine(attributes.value(QLatin1String("type"))),
                     .signature = signature,
                     .version = extra("version").trimmed().left(longestVersion + 1).toString(),
                     .shortVersion = extra("shortVersionString").trimmed().left(longestLine).toString(),
                     .isForLinux = isForLinux};
}

/// The item, when it can be used.
std::optional<UpdateItem> finished(Draft draft) {
    if (draft.isOfChannel || !draft.enclosure)
        return std::nullopt;
    Enclosure &enclosure = *draft.enclosure;
    const QString version = draft.version.isEmpty() ? enclosure.version : draft.version;
    if (version.isEmpty() || version.size() > longestVersion)
        return std::nullopt;
    UpdateItem item = std::move(draft.item);
    item.version = asLine(version);
    item.shortVersion = asLine(draft.shortVersion.isEmpty() ? enclosure.shortVersion : draft.shortVersion);
    if (item.shortVersion.empty())
        item.shortVersion = item.version;
    item.url = std::move(enclosure.url);
    item.length = enclosure.length;
    item.type = std::move(enclosure.type);
    item.signature = std::move(enclosure.signature);
    item.isForLinux = enclosure.isForLinux;
    return item;
}

/// How much of `rest`, which begins with "<", belongs to what it begins; all of it when it isn't closed.
/// Counts its quoted values.
qsizetype markupLength(QByteArrayView rest, int &values) {
    struct Row {
        QByteArrayView start;
        QByteArrayView end;
    };
    static constexpr std::array rows{Row{"<!--", "-->"}, Row{"<![CDATA[", "]]>"}, Row{"<?", "?>"}};
    for (const Row &row : rows)
        if (rest.startsWith(row.start)) {
            const qsizetype end = rest.indexOf(row.end, row.start.size());
            return end < 0 ? rest.size() : end + row.end.size();
        }
    for (qsizetype at = 1; at < rest.size(); ++at) {
        if (rest[at] == '>')
            return at + 1;
        if (rest[at] != '"' && rest[at] != '\'')
            continue;
        ++values;
        at = rest.indexOf(rest[at], at + 1);
        if (at < 0)
            break;
    }
    return rest.size();
}

/// Whether Qt's reader, whose time grows with the square of an element's attributes, comes to an end with it.
/// A zero byte stands in no feed, but in encodings in which "<" couldn't be found.
bool isReadable(QByteArrayView feed) {
    if (feed.contains('\0'))
        return false;
    for (qsizetype at = feed.indexOf('<'); at >= 0; at = feed.indexOf('<', at)) {
        int values = 0;
        at += markupLength(feed.sliced(at), values);
        if (values > mostAttributes)
            return false;
    }
    return true;
}

class AppcastReader {
public:
    explicit AppcastReader(const QByteArray &feed) : m_xml(feed) {}

    std::expected<std::vector<UpdateItem>, FeedError> read() {
        std::vector<UpdateItem> items;
        if (!findRoot())
            return std::unexpected(m_xml.hasError() ? FeedError::malformed : FeedError::notAFeed);
        while (nextChild()) {
            if (m_xml.name() == QLatin1String("channel"))
                readChannel(items);
            else
                skip();
        }
        while (!m_xml.atEnd()) // what follows the root must be well-formed, too
            m_xml.readNext();
        if (m_xml.hasError())
            return std::unexpected(FeedError::malformed);
        return items;
    }

private:
    /// A document type is refused before anything that it declares is used.
    bool findRoot() {
        while (!m_xml.atEnd()) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::DTD)
                return false;
            if (token == QXmlStreamReader::StartElement)
                return m_xml.name() == QLatin1String("rss");
        }
        return false;
    }

    void readChannel(std::vector<UpdateItem> &items) {
        while (nextChild()) {
            if (m_xml.name() != QLatin1String("item"))
                skip();
            else if (auto item = finished(readItem()))
                items.push_back(std::move(*item));
        }
    }

    Draft readItem() {
        Draft draft;
        while (nextChild()) {
            if (m_xml.namespaceUri() == extensions)
                readExtension(draft);
            else
                readField(draft);
        }
        return draft;
    }

    void readField(Draft &draft) {
        const QString name = m_xml.name().toString();
        if (name == QLatin1String("title")) {
            draft.item.title = asLine(takeText(longestLine));
        } else if (name == QLatin1String("description")) {
            const QStringView format = m_xml.attributes().value(extensions, QLatin1String("format"));
            const bool isHtml = format.isEmpty() || format == QLatin1String("html");
            const QString notes = takeText(longestNotes);
            if (draft.item.notes.empty()) // the first of several languages
                draft.item.notes = plainNotes(notes, isHtml);
        } else if (name == QLatin1String("pubDate")) {
            const QDateTime date = QDateTime::fromString(takeText(longestLine).simplified(), Qt::RFC2822Date);
            if (date.isValid())
                draft.item.published = Instant(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
        } else if (name == QLatin1String("enclosure")) {
            auto enclosure = readEnclosure(m_xml.attributes());
            if (enclosure && (!draft.enclosure || (enclosure->isForLinux && !draft.enclosure->isForLinux)))
                draft.enclosure = std::move(enclosure);
            skip();
        } else {
            skip();
        }
    }

    void readExtension(Draft &draft) {
        const QString name = m_xml.name().toString();
        if (name == QLatin1String("version"))
            draft.version = takeText(longestLine).trimmed();
        else if (name == QLatin1String("shortVersionString"))
            draft.shortVersion = takeText(longestLine).trimmed();
        else if (name == QLatin1String("releaseNotesLink"))
            draft.item.notesUrl = httpsAddress(takeText(longestAddress + 1).trimmed()).value_or("");
        else if (name == QLatin1String("channel"))
            draft.isOfChannel = !takeText(longestLine).trimmed().isEmpty();
        else
            skip(); // among others the differences to earlier versions, with enclosures of their own
    }

    /// Goes to the next element in this one; false at its end, and where the feed is broken.
    bool nextChild() { return m_xml.readNextStartElement(); }

    /// Goes behind this element; the first `limit` characters of the text in it.
    QString takeText(qsizetype limit) {
        QString text;
        for (int depth = 1; depth > 0 && !m_xml.atEnd();) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement && ++depth > deepest)
                m_xml.raiseError(QStringLiteral("too deep"));
            else if (token == QXmlStreamReader::EndElement)
                --depth;
            else if (token == QXmlStreamReader::Characters && text.size() < limit)
                text += m_xml.text().left(limit - text.size());
        }
        return text;
    }

    void skip() { (void)takeText(0); }

    QXmlStreamReader m_xml;
};

} // namespace

std::expected<std::vector<UpdateItem>, FeedError> parseAppcast(const QByteArray &feed) {
    if (feed.size() > mostFeedBytes)
        return std::unexpected(FeedError::tooLarge);
    if (!isReadable(feed))
        return std::unexpected(FeedError::malformed);
    return AppcastReader(feed).read();
}

} // namespace tarnvale

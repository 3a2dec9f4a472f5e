#include "BookmarkReader.h"
#include "BookmarkText.h"

#include <cctype>
#include <cstring>
#include <utility>

using Reason = BookmarkProblem::Reason;

namespace {
// So much that a caller with an eye on the clock may look at it after each call.
constexpr qsizetype bytesAtOnce = 64 * 1024;
// Characters.
constexpr qsizetype longestTitle = 8 * 1024;
constexpr qsizetype longestAddress = 1024 * 1024;
// The longest writing of a character, a reference such as "&quot;".
constexpr qsizetype bytesPerCharacter = 6;
constexpr qsizetype longestTitleBytes = bytesPerCharacter * longestTitle;
constexpr qsizetype longestAddressBytes = bytesPerCharacter * longestAddress;
constexpr qsizetype longestNote = 200;

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n' || byte == '\f';
}

bool isLetter(char byte)
{
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'z';
}

bool is(QByteArrayView name, const char *other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

// A heading below the page's own is the name of a folder.
bool isFolderHeading(QByteArrayView name)
{
    return name.size() == 2 && (name[0] | 0x20) == 'h' && name[1] >= '2' && name[1] <= '6';
}

// Without the part of a character that cutting the bytes off may have left at the end.
QByteArrayView wholeCharacters(QByteArrayView bytes)
{
    constexpr qsizetype longestCharacter = 4;
    qsizetype end = bytes.size();
    while (end > 0 && bytes.size() - end < longestCharacter && (bytes[end - 1] & 0xc0) == 0x80)
        --end;
    return end > 0 && (bytes[end - 1] & 0x80) != 0 ? bytes.first(end - 1) : bytes;
}

QString readTitle(QByteArrayView bytes)
{
    if (bytes.size() == longestTitleBytes)
        bytes = wholeCharacters(bytes);
    QString text = BookmarkText::resolved(BookmarkText::decode(bytes), false);
    if (text.size() > longestTitle)
        text.truncate(text.at(longestTitle).isLowSurrogate() ? longestTitle - 1 : longestTitle);
    return BookmarkText::title(text);
}

// What cannot stand inside the title of a link or folder.
bool endsTitle(QByteArrayView name)
{
    return is(name, "a") || is(name, "dt") || is(name, "dd") || is(name, "dl") || is(name, "hr")
        || (name.size() == 2 && (name[0] | 0x20) == 'h');
}
}

BookmarkReader::BookmarkReader(const QByteArray &bytes, const Found &found, const Skipped &skipped)
    : m_bytes(bytes)
    , m_found(found)
    , m_skipped(skipped)
{
}

bool BookmarkReader::readSome()
{
    const qsizetype until = m_at + bytesAtOnce;
    while (!m_done && m_at < until) {
        readText();
        if (m_at < m_bytes.size())
            readMarkup();
        else
            endAll();
    }
    return !m_done;
}

void BookmarkReader::readText()
{
    const qsizetype rest = m_bytes.size() - m_at;
    const char *from = m_bytes.constData() + m_at;
    const void *found = rest > 0 ? std::memchr(from, '<', static_cast<size_t>(rest)) : nullptr;
    const qsizetype length = found ? static_cast<const char *>(found) - from : rest;
    if (m_open != Open::Nothing)
        m_title.append(from, std::min(length, longestTitleBytes - m_title.size()));
    m_at += length;
}

// At a "<".
void BookmarkReader::readMarkup()
{
    const char next = m_at + 1 < m_bytes.size() ? m_bytes[m_at + 1] : '\0';
    const char afterSlash = m_at + 2 < m_bytes.size() ? m_bytes[m_at + 2] : '\0';
    if (next == '!' || next == '?') {
        skipDeclaration();
    } else if (isLetter(next) || (next == '/' && isLetter(afterSlash))) {
        readTag(next == '/');
    } else {
        if (m_open != Open::Nothing && m_title.size() < longestTitleBytes)
            m_title.append('<');
        ++m_at;
    }
}

void BookmarkReader::skipDeclaration()
{
    if (m_commentsEnd && QByteArrayView(m_bytes).sliced(m_at).startsWith("<!--")) {
        const qsizetype end = m_bytes.indexOf("-->", m_at + 4);
        if (end >= 0) {
            m_at = end + 3;
            return;
        }
        m_commentsEnd = false;
    }
    ++m_at;
    while (m_at < m_bytes.size() && m_bytes[m_at] != '<') {
        if (m_bytes[m_at++] == '>')
            return;
    }
}

void BookmarkReader::readTag(bool ends)
{
    const qsizetype tag = m_at;
    m_at += ends ? 2 : 1;
    const qsizetype nameAt = m_at;
    while (m_at < m_bytes.size() && (isLetter(m_bytes[m_at]) || isdigit(uchar(m_bytes[m_at]))))
        ++m_at;
    const QByteArrayView name = QByteArrayView(m_bytes).sliced(nameAt, m_at - nameAt);
    if (endsTitle(name))
        finishOpen();
    m_openAt = m_open == Open::Nothing ? tag : m_openAt;
    if (ends) {
        readAttributes();
        endTag(name);
    } else {
        startTag(name);
    }
}

void BookmarkReader::startTag(QByteArrayView name)
{
    const Attributes attributes = readAttributes();
    if (is(name, "a")) {
        leaveFolderEmpty();
        m_attributes = attributes;
        begin(Open::Link);
    } else if (isFolderHeading(name)) {
        leaveFolderEmpty();
        m_attributes = attributes;
        begin(Open::Folder);
    } else if (is(name, "dl")) {
        m_lists.push_back(m_hasFolder);
        if (std::exchange(m_hasFolder, false))
            m_found(m_folder);
    }
}

void BookmarkReader::endTag(QByteArrayView name)
{
    if (is(name, "dl"))
        endList();
}

void BookmarkReader::skipBlanks()
{
    while (m_at < m_bytes.size() && (isBlank(m_bytes[m_at]) || m_bytes[m_at] == '/'))
        ++m_at;
}

// Behind a tag's name; up to and with its ">", or up to the next tag where there is none.
BookmarkReader::Attributes BookmarkReader::readAttributes()
{
    Attributes result;
    while (!result.broken) {
        skipBlanks();
        if (m_at >= m_bytes.size() || m_bytes[m_at] == '<')
            break;
        if (m_bytes[m_at] == '>') {
            ++m_at;
            break;
        }
        const qsizetype nameAt = m_at;
        while (m_at < m_bytes.size() && !isBlank(m_bytes[m_at]) && !strchr("=></", m_bytes[m_at]))
            ++m_at;
        const QByteArrayView name = QByteArrayView(m_bytes).sliced(nameAt, m_at - nameAt);
        skipBlanks();
        if (m_at >= m_bytes.size() || m_bytes[m_at] != '=') {
            // A NUL is in no set of characters and would be met for ever.
            m_at += name.isEmpty() && m_at == nameAt ? 1 : 0;
            continue;
        }
        ++m_at;
        const QByteArrayView value = readValue(result.broken);
        if (is(name, "href"))
            result.href = value;
        else if (is(name, "feedurl"))
            result.feed = value;
        else if (is(name, "add_date"))
            result.added = value;
        else if (is(name, "last_modified"))
            result.modified = value;
    }
    return result;
}

QByteArrayView BookmarkReader::readValue(bool &broken)
{
    while (m_at < m_bytes.size() && isBlank(m_bytes[m_at]))
        ++m_at;
    const QByteArrayView all(m_bytes);
    const char quote = m_at < m_bytes.size() ? m_bytes[m_at] : '\0';
    if (quote != '"' && quote != '\'') {
        const qsizetype from = m_at;
        while (m_at < m_bytes.size() && !isBlank(m_bytes[m_at]) && m_bytes[m_at] != '>')
            ++m_at;
        return all.sliced(from, m_at - from);
    }
    const qsizetype from = ++m_at;
    qsizetype limit = 0;
    const qsizetype end = closingQuote(quote, limit);
    if (end < 0) {
        // The next tag is worth more than what this one might have been.
        broken = true;
        const qsizetype close = all.sliced(0, limit).indexOf('>', from);
        m_at = close < 0 ? limit : close + 1;
        return all.sliced(from, (close < 0 ? limit : close) - from);
    }
    m_at = end + 1;
    const QByteArrayView value = all.sliced(from, end - from);
    // The quote that was found opens the next value.
    const bool goesOn =
        m_at < m_bytes.size() && !isBlank(m_bytes[m_at]) && !strchr("/>", m_bytes[m_at]);
    if (goesOn && value.endsWith('=')) {
        const qsizetype limitHere = lineEnd(m_at);
        const qsizetype close = all.sliced(0, limitHere).indexOf('>', m_at);
        m_at = close < 0 ? limitHere : close + 1;
        broken = true;
    }
    return value;
}

qsizetype BookmarkReader::lineEnd(qsizetype from)
{
    if (m_lineEnd < from) {
        m_lineEnd = m_bytes.indexOf('\n', from);
        if (m_lineEnd < 0)
            m_lineEnd = m_bytes.size();
    }
    return m_lineEnd;
}

// The place of the quote that ends the value here, or -1: it has none where a line begins with a
// tag before it comes. `limit` is then the end of the line before.
qsizetype BookmarkReader::closingQuote(char quote, qsizetype &limit)
{
    for (qsizetype from = m_at;;) {
        limit = lineEnd(from);
        const qsizetype end = QByteArrayView(m_bytes).sliced(0, limit).indexOf(quote, from);
        if (end >= 0)
            return end;
        from = limit + 1;
        qsizetype next = from;
        while (next < m_bytes.size() && isBlank(m_bytes[next]))
            ++next;
        if (next >= m_bytes.size() || m_bytes[next] == '<') {
            m_lineEnd = -1;
            return -1;
        }
        from = next;
    }
}

void BookmarkReader::begin(Open what)
{
    m_open = what;
    m_title.clear();
}

void BookmarkReader::finishOpen()
{
    const Open open = std::exchange(m_open, Open::Nothing);
    if (open == Open::Link)
        finishLink();
    else if (open == Open::Folder)
        finishFolder();
}

void BookmarkReader::finishLink()
{
    BookmarkItem item;
    item.title = readTitle(m_title);
    const QByteArrayView href =
        m_attributes.href.trimmed().isEmpty() ? m_attributes.feed : m_attributes.href;
    const QString read =
        BookmarkText::decode(href.first(std::min(href.size(), longestAddressBytes)));
    item.url = BookmarkText::address(BookmarkText::resolved(read, true));
    const qint64 added = BookmarkText::date(m_attributes.added);
    item.date = added > 0 ? added : BookmarkText::date(m_attributes.modified);
    item.line = lineAt(m_openAt);

    BookmarkProblem problem;
    problem.line = item.line;
    problem.entry = (item.title.isEmpty() ? item.url : item.title).left(longestNote);
    if (m_attributes.broken)
        problem.reason = Reason::BrokenTag;
    else if (item.url.isEmpty())
        problem.reason = Reason::NoAddress;
    else if (href.size() > longestAddressBytes || item.url.size() > longestAddress)
        problem.reason = Reason::TooLong;
    else if (item.url.startsWith(QLatin1StringView("place:"), Qt::CaseInsensitive))
        problem.reason = Reason::Query;
    else
        return m_found(item);
    m_skipped(problem);
}

// The folder begins with its list, behind its description.
void BookmarkReader::finishFolder()
{
    m_hasFolder = true;
    m_folder = {};
    m_folder.kind = BookmarkItem::Kind::Folder;
    m_folder.title = readTitle(m_title);
    const qint64 added = BookmarkText::date(m_attributes.added);
    m_folder.date = added > 0 ? added : BookmarkText::date(m_attributes.modified);
    m_folder.line = lineAt(m_openAt);
}

void BookmarkReader::leaveFolderEmpty()
{
    if (!std::exchange(m_hasFolder, false))
        return;
    m_found(m_folder);
    m_found({BookmarkItem::Kind::EndOfFolder, {}, {}, 0, m_folder.line});
}

void BookmarkReader::endList()
{
    leaveFolderEmpty();
    if (m_lists.empty())
        return;
    const bool isFolder = m_lists.back();
    m_lists.pop_back();
    if (isFolder)
        m_found({BookmarkItem::Kind::EndOfFolder, {}, {}, 0, 0});
}

void BookmarkReader::endAll()
{
    finishOpen();
    leaveFolderEmpty();
    while (!m_lists.empty())
        endList();
    m_done = true;
}

// Asked for in the order of the file.
int BookmarkReader::lineAt(qsizetype position)
{
    while (m_linesUpTo < position) {
        const char *from = m_bytes.constData() + m_linesUpTo;
        const auto rest = static_cast<size_t>(position - m_linesUpTo);
        const void *end = std::memchr(from, '\n', rest);
        if (!end) {
            m_linesUpTo = position;
            break;
        }
        m_linesUpTo += static_cast<const char *>(end) - from + 1;
        ++m_lines;
    }
    return m_lines;
}

#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

/// What a bookmark file holds, in its order: folders that begin and end, and links in them.
struct BookmarkItem {
    enum class Kind { Folder, EndOfFolder, Link };

    Kind kind = Kind::Link;
    /// As `BookmarkText::title` leaves it; may be empty.
    QString title;
    QString url;
    /// Seconds since 1970; 0 when the file tells none.
    qint64 date = 0;
    /// Where it stands in the file, from 1.
    int line = 0;
};

/// An entry that is left out, and why.
struct BookmarkProblem {
    enum class Reason {
        /// A link without an address.
        NoAddress,
        /// A tag whose quotes do not close.
        BrokenTag,
        /// An address beyond all measure.
        TooLong,
        /// A "place:" query, which only the browser it comes from can answer.
        Query,
        /// A folder so deep that no path can name it; what is in it comes into the one above.
        TooDeep,
        /// It could not be written.
        NotWritten
    };

    Reason reason = Reason::NoAddress;
    int line = 0;
    /// Title, or address where there is none.
    QString entry;
};

/// Reads a bookmark file as browsers write them: an HTML list whose tags are closed or not, nested
/// well or not. It goes through the bytes once, in small steps, without recursion, and never gives
/// up: an entry that makes no sense is reported and the next one read.
class BookmarkReader {
public:
    using Found = std::function<void(const BookmarkItem &)>;
    using Skipped = std::function<void(const BookmarkProblem &)>;

    /// `bytes` in UTF-8; parts that are not valid UTF-8 are read as Windows-1252.
    BookmarkReader(const QByteArray &bytes, const Found &found, const Skipped &skipped);

    /// Reads some more; false when all is read and every folder ended.
    bool readSome();

    qint64 size() const { return m_bytes.size(); }
    qint64 position() const { return m_at; }

private:
    struct Attributes {
        QByteArrayView href;
        QByteArrayView feed;
        QByteArrayView added;
        QByteArrayView modified;
        bool broken = false;
    };
    enum class Open { Nothing, Link, Folder };

    void readText();
    void readMarkup();
    void skipDeclaration();
    void readTag(bool ends);
    void startTag(QByteArrayView name);
    void endTag(QByteArrayView name);
    Attributes readAttributes();
    QByteArrayView readValue(bool &broken);
    qsizetype lineEnd(qsizetype from);
    qsizetype closingQuote(char quote, qsizetype &limit);
    void skipBlanks();
    void begin(Open what);
    void finishOpen();
    void finishLink();
    void finishFolder();
    void leaveFolderEmpty();
    void endList();
    void endAll();
    int lineAt(qsizetype position);

    const QByteArray m_bytes;
    Found m_found;
    Skipped m_skipped;
    qsizetype m_at = 0;
    bool m_done = false;

    /// The link or folder whose title is being read.
    Open m_open = Open::Nothing;
    Attributes m_attributes;
    qsizetype m_openAt = 0;
    QByteArray m_title;
    /// A folder whose list has not begun yet.
    BookmarkItem m_folder;
    bool m_hasFolder = false;
    /// The lists that are open; true for those of a folder.
    std::vector<bool> m_lists;

    /// The first line end at or behind the place last asked for.
    qsizetype m_lineEnd = -1;
    bool m_commentsEnd = true;
    int m_lines = 1;
    qsizetype m_linesUpTo = 0;
};

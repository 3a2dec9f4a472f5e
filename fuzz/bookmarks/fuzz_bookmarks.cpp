// Random bookmark files for the reader. Whatever it is given, every folder it begins it ends, links
// have an address, and what it found is in the form that the import and the export count on.

#include "BookmarkReader.h"
#include "BookmarkSamples.h"
#include "BookmarkText.h"

#include <algorithm>
#include <cstdint>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *bytes, std::size_t size, std::size_t most);

namespace {
void require(bool good, const char *what)
{
    if (!good)
        qFatal("%s", what);
}

// Holds one reading against what is promised of every one.
class Watch {
public:
    explicit Watch(qsizetype size)
        : m_size(size)
    {
    }

    void found(const BookmarkItem &item)
    {
        using Kind = BookmarkItem::Kind;
        if (item.kind == Kind::EndOfFolder) {
            require(--m_depth >= 0, "a folder ends that has not begun");
            return;
        }
        seen(item.line);
        require(BookmarkText::title(item.title) == item.title, "a title is not in its last form");
        require(item.date >= 0, "a date before 1970");
        if (item.kind == Kind::Folder) {
            ++m_depth;
            return;
        }
        require(!item.url.isEmpty(), "a link without an address");
        require(BookmarkText::address(item.url) == item.url, "an address is not in its last form");
        comesBack(item);
    }
    void skipped(const BookmarkProblem &problem) { seen(problem.line); }
    void ended() const { require(m_depth == 0, "a folder never ends"); }

private:
    // No more comes out than was put in, and the lines only go on.
    void seen(int line)
    {
        require(++m_entries <= m_size, "more entries than bytes");
        require(line >= m_line, "the lines go back");
        m_line = line;
    }
    // What is written for the link is read as the same.
    static void comesBack(const BookmarkItem &link)
    {
        const QByteArray written = "<DT><A HREF=\"" + BookmarkText::escaped(link.url) + "\">"
            + BookmarkText::escaped(link.title) + "</A>\n";
        int links = 0;
        BookmarkReader reader(
            written,
            [&](const BookmarkItem &again) {
                ++links;
                require(again.title == link.title, "a title comes back as another");
                require(again.url == link.url, "an address comes back as another");
            },
            [](const BookmarkProblem &) { qFatal("what was written is not read"); });
        while (reader.readSome()) { }
        require(links == 1, "a link does not come back");
    }

    qsizetype m_size;
    qsizetype m_entries = 0;
    int m_depth = 0;
    int m_line = 1;
};

/// The bytes of one run, changed in steps that keep most of a file's structure.
class Change {
public:
    changed(QByteArray bytes, unsigned seed)
        : m_bytes(std::move(bytes))
        , m_random(seed)
    {
    }

    QByteArray made()
    {
        static const QList<BookmarkSample> samples = bookmarkSamples();
        static const QList<QByteArray> pieces = bookmarkPieces();
        for (qsizetype steps = 1 + below(4); steps > 0; --steps) {
            switch (below(5)) {
            case 0:
                m_bytes.insert(someTag(), samples.at(below(samples.size())).bytes);
                break;
            case 1:
                m_bytes.insert(someTag(), pieces.at(below(pieces.size())));
                break;
            case 2:
                m_bytes.insert(below(m_bytes.size() + 1), pieces.at(below(pieces.size())));
                break;
            case 3:
                m_bytes.insert(someTag(), part());
                break;
            default:
                const qsizetype from = someTag();
                m_bytes.remove(from, someTag() - from);
            }
        }
        return m_bytes;
    }

private:
    qsizetype below(qsizetype limit)
    {
        return std::uniform_int_distribution<qsizetype>(0, std::max<qsizetype>(limit - 1, 0))(
            m_random);
    }
    qsizetype someTag()
    {
        const qsizetype from = below(m_bytes.size() + 1);
        const qsizetype tag = m_bytes.indexOf('<', from);
        return tag < 0 ? from : tag;
    }
    QByteArray part()
    {
        constexpr qsizetype longest = 400;
        const qsizetype from = someTag();
        return m_bytes.mid(from, below(longest));
    }

    QByteArray m_bytes;
    std::minstd_rand m_random;
};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    Watch watch(bytes.size());
    BookmarkReader reader(
        bytes, [&watch](const BookmarkItem &item) { watch.found(item); },
        [&watch](const BookmarkProblem &problem) { watch.skipped(problem); });
    while (reader.readSome()) { }
    watch.ended();
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned seed)
{
    if (seed % 2 == 0)
        return LLVMFuzzerMutate(data, size, most);
    const QByteArray old(reinterpret_cast<const char *>(data), qsizetype(size));
    const QByteArray made = changed(old, seed).made().left(qsizetype(most));
    std::copy(made.cbegin(), made.cend(), data);
    return std::size_t(made.size());
}

// Colours one file: document FILE OUTPUT writes its rich text document and prints the process's
// highest memory use in kB.

#include "HtmlColouring.h"
#include "LineEnds.h"
#include "TextEncoding.h"

#include <QFile>
#include <QStringEncoder>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype piece = 500'000;

QByteArray read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

long highestMemory()
{
    for (const QByteArray &line : read(u"/proc/self/status"_s).split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).chopped(2).trimmed().toLong();
    }
    return 0;
}

}

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const QString text =
        LineEnds::fromLf(LineEnds::toLf(TextEncoding::decode(read(QFile::decodeName(argv[1])))));
    const QString document = HtmlColouring::colouredDocument(text);
    QFile out(QFile::decodeName(argv[2]));
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return 1;
    QStringEncoder encoder(QStringEncoder::Utf8);
    for (qsizetype from = 0; from < document.size(); from += piece) {
        const QByteArray bytes = encoder(QStringView(document).mid(from, piece));
        if (out.write(bytes) != bytes.size())
            return 1;
    }
    std::printf("%ld\n", highestMemory());
    return 0;
}

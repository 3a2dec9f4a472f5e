// Writes the rich text documents of files: document FILE OUTPUT, or document --into FOLDER FILE...
// Prints the process's highest memory use in kB.

#include "HtmlColouring.h"
#include "LineEnds.h"
#include "TextEncoding.h"

#include <QFile>
#include <QFileInfo>
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

bool colour(const QString &name, const QString &output)
{
    const QString text = LineEnds::fromLf(LineEnds::toLf(TextEncoding::decode(read(name))));
    const QString document = HtmlColouring::colouredDocument(text);
    QFile out(output);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    QStringEncoder encoder(QStringEncoder::Utf8);
    for (qsizetype from = 0; from < document.size(); from += piece) {
        const QByteArray bytes = encoder(QStringView(document).mid(from, piece));
        if (out.write(bytes) != bytes.size())
            return false;
    }
    return true;
}

}

int main(int argc, char **argv)
{
    const QByteArrayView first(argc > 1 ? argv[1] : "");
    const bool many = first == "--into";
    if (argc < 3 || (!many && argc != 3))
        return 2;
    for (int i = many ? 3 : 1; i < (many ? argc : 2); ++i) {
        const QString name = QFile::decodeName(argv[i]);
        const QString output = many
            ? QFile::decodeName(argv[2]) + u'/' + QFileInfo(name).fileName() + ".rtf"_L1
            : QFile::decodeName(argv[2]);
        if (!colour(name, output))
            return 1;
    }
    std::printf("%ld\n", highestMemory());
    return 0;
}

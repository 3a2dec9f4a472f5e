#pragma once

#include <QByteArray>
#include <QStringList>

/// The pages that are measured.
namespace Pages {
/// Real pages of a megabyte and more that this machine's documentation holds, up to `most`.
QStringList large(int most);
/// The real page whose size is nearest; empty when there is none of half that size or more.
QString nearest(qsizetype size);
QByteArray generated(qsizetype size);
/// `piece` again and again.
QString repeated(const QString &piece, qsizetype size);
}

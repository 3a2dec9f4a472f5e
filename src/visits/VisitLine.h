#pragma once

#include "Visit.h"

#include <QByteArrayView>
#include <optional>

/// A visit as a line of the file: its time, address and title with a tab in between, in UTF-8.
/// Nothing of a line is trusted, nor what a page says of itself.
namespace VisitLine {

/// Parts of a line that goes on living elsewhere.
struct Parts {
    qint64 time = 0;
    QByteArrayView address;
    QByteArrayView title;
};

/// How an address is kept: without user name and password; empty for one that is not kept at all:
/// of another kind than "http", "https" and "file", or longer than 4,000 characters.
QString keptAddress(const QString &address);
/// The title in one line of 500 characters at most.
QString keptTitle(const QString &title);

/// With its line feed. Address and title are kept ones.
QByteArray of(const Visit &visit);
/// A line without its line feed; nothing where it is none of a visit.
std::optional<Parts> read(QByteArrayView line);
}

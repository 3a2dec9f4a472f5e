#pragma once

#include <QStringView>
#include <span>

/// A named character reference of HTML: what stands behind its "&", with its semicolon where it
/// needs one, and the one or two characters it stands for.
struct HtmlReference {
    QStringView name;
    QStringView text;
};

/// All of them, by name in the order of code units. The table is made from a library's when the
/// program is built.
std::span<const HtmlReference> htmlReferences();

"""Writes HtmlReferences.cpp: Python's table of HTML's named character references, as C++.

The names that need no semicolon come without one as well. Sorted by code units, for a binary
search.
"""

import sys
from html.entities import html5


def literal(text):
    units = text.encode("utf-16-be")
    return "".join(f"\\x{units[i]:02x}{units[i + 1]:02x}" for i in range(0, len(units), 2))


def main():
    with open(sys.argv[1], "w", encoding="ascii") as out:
        out.write('#include "HtmlReferences.h"\n\n#include <array>\n\nnamespace {\n')
        out.write(f"constexpr std::array<HtmlReference, {len(html5)}> table = {{{{\n")
        for name in sorted(html5):
            out.write(f'    {{u"{name}", u"{literal(html5[name])}"}},\n')
        out.write("}};\n}\n\n")
        out.write("std::span<const HtmlReference> htmlReferences()\n{\n    return table;\n}\n")


if __name__ == "__main__":
    main()

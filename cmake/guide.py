"""guide.py CMARK PAGE.md FILE.html: a page of the guide as the program shows it, whole in itself."""

import base64
import html
import pathlib
import re
import subprocess
import sys

TEMPLATE = """<!DOCTYPE html>
<html lang="{language}">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'">
<meta name="referrer" content="no-referrer">
<meta name="viewport" content="width=device-width">
<meta name="color-scheme" content="light dark">
<title>{title}</title>
<style>{style}</style>
</head>
<body>
<nav>
{contents}
</nav>
<main>
{text}</main>
</body>
</html>
"""


def anchor(heading):
    """As the places that show the sources make it, which the links of the sources rely on."""
    words = html.unescape(re.sub(r"<[^>]*>", "", heading)).lower()
    return re.sub(r"[^\w\- ]", "", words).replace(" ", "-")


def with_anchors(text):
    """The text with a place to go to at each heading, and the list of those of the second rank."""
    seen = {}
    listed = []

    def place(match):
        rank, heading = match.groups()
        name = anchor(heading)
        seen[name] = seen.get(name, -1) + 1
        if seen[name]:
            name += f"-{seen[name]}"
        if rank == "2":
            listed.append((name, heading))
        return f'<h{rank} id="{html.escape(name)}">{heading}</h{rank}>'

    return re.sub(r"<h([1-6])>(.*?)</h\1>", place, text, flags=re.DOTALL), listed


def own_address(target, page):
    """The program's own address of a page of the guide; None where the guide has no such page."""
    file, _, place = target.partition("#")
    if file and not (page.parent / file).is_file():
        raise SystemExit(f"{page}: there is no {file}")
    name = pathlib.PurePath(file or page).stem
    address = "orvane:guide" if name == "user-guide" else f"orvane:guide/{name}"
    return address + (f"#{place}" if place else "")


def with_own_links(text, page):
    def link(match):
        target = html.unescape(match.group(1))
        if re.match(r"[a-z]+:", target):
            return match.group(0)
        return f'<a href="{html.escape(own_address(target, page))}"'

    return re.sub(r'<a href="([^"]*)"', link, text)


def with_own_pictures(text, page):
    def picture(match):
        data = (page.parent / match.group(1)).read_bytes()
        return f'<img src="data:image/png;base64,{base64.b64encode(data).decode("ascii")}"'

    return re.sub(r'<img src="([^"]*)"', picture, text)


def contents(page, headings):
    """The pages of the guide by their titles, this one with what is in it."""
    start = page.parent / "user-guide.md"
    pages = [start] + sorted(set(linked(start)), key=lambda other: other.name)
    lines = ["<ul>"]
    for other in pages:
        link = f'<a href="{own_address(other.name, page)}">{html.escape(title(other))}</a>'
        if other == page:
            link = f'<strong aria-current="page">{html.escape(title(other))}</strong>\n<ul>' + "".join(
                f'\n<li><a href="{html.escape(own_address("#" + name, page))}">{text}</a></li>'
                for name, text in headings) + "\n</ul>"
        lines.append(f"<li>{link}</li>")
    return "\n".join(lines + ["</ul>"])


def linked(start):
    """The other pages that the first one of the guide leads to."""
    for target in re.findall(r"\]\(([\w-]+\.md)", start.read_text(encoding="utf-8")):
        if target != start.name:
            yield start.parent / target


def title(page):
    return page.read_text(encoding="utf-8").split("\n", 1)[0].removeprefix("# ")


def main():
    cmark, page, out = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    text = subprocess.run([cmark, "--extension", "table", page], check=True,
                          capture_output=True, encoding="utf-8").stdout
    # A table without headings.
    text = re.sub(r"<thead>(?:\s|</?tr>|<th></th>)*</thead>", "", text)
    text, headings = with_anchors(text)
    text = with_own_pictures(with_own_links(text, page), page)
    style = pathlib.Path(__file__).with_name("guide.css").read_text(encoding="utf-8")
    language = "en" if page.parent.name == "docs" else page.parent.name
    out.parent.mkdir(parents=True, exist_ok=True)
    out.write_text(TEMPLATE.format(language=language, title=html.escape(title(page)), style=style,
                                   contents=contents(page, headings), text=text),
                   encoding="utf-8")


main()

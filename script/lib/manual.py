#!/usr/bin/python3
"""The manual as HTML: manual.py [--pictures] SOURCE... FOLDER

Renders each docs/manual[.LANGUAGE].md into FOLDER/manual[.LANGUAGE].html. Its
pictures are expected below FOLDER/LANGUAGE/; without --pictures the pages say
that they come without any.
"""
import html
import re
import sys
from pathlib import Path

import markdown

SENTENCES = {
    "en": ("English", "This copy of the manual was built without its pictures."),
    "fr": ("Français", "Cet exemplaire du manuel a été fait sans ses images."),
}
STYLE = """
:root { color-scheme: light dark; }
body { font: 1rem/1.55 system-ui, sans-serif; max-width: 46rem; margin: 2rem auto; padding: 0 1rem; }
img { max-width: 100%; height: auto; border: 1px solid #8886; border-radius: 6px; }
table { border-collapse: collapse; } td, th { padding: .3rem .8rem; border-bottom: 1px solid #8886; text-align: start; }
code { font-size: .92em; } nav { font-size: .95em; } h2 { margin-top: 2.4rem; } .plain { font-style: italic; }
"""


def language_of(source: Path) -> str:
    return source.suffixes[0][1:] if len(source.suffixes) == 2 else "en"


def contents(page: str) -> str:
    chapters = re.findall(r'<h2 id="([^"]+)">(.*?)</h2>', page)
    return "<nav><ul>" + "".join(f'<li><a href="#{name}">{title}</a></li>' for name, title in chapters) + "</ul></nav>"


def others(sources: list[Path], own: Path) -> str:
    links = [f'<a href="{s.stem}.html" lang="{language_of(s)}">{SENTENCES[language_of(s)][0]}</a>'
             for s in sources if s != own]
    return f'<p class="languages">{" ".join(links)}</p>'


def rendered(source: Path, sources: list[Path], with_pictures: bool) -> str:
    language = language_of(source)
    body = markdown.markdown(source.read_text(encoding="utf-8"),
                             extensions=["tables", "attr_list", "sane_lists"], output_format="html5")
    if with_pictures:
        body = body.replace('src="pictures/', f'src="{language}/')
    else:
        body = re.sub(r"<p><img [^>]*/?></p>\n?", "", body)
        body = body.replace("</h1>", f'</h1>\n<p class="plain">{SENTENCES[language][1]}</p>', 1)
    title = html.escape(re.sub(r"<[^>]+>", "", re.search(r"<h1[^>]*>(.*?)</h1>", body).group(1)), quote=False)
    body = body.replace("<h2", contents(body) + "\n<h2", 1)
    return (f'<!DOCTYPE html>\n<html lang="{language}"><head><meta charset="utf-8">\n<title>{title}</title>\n'
            f'<meta name="viewport" content="width=device-width"><style>{STYLE}</style></head>\n'
            f"<body>{others(sources, source)}\n{body}\n</body></html>\n")


def main() -> None:
    arguments = sys.argv[1:]
    with_pictures = "--pictures" in arguments
    *sources, folder = [Path(a) for a in arguments if a != "--pictures"]
    folder.mkdir(parents=True, exist_ok=True)
    for source in sources:
        (folder / f"{source.stem}.html").write_text(rendered(source, sources, with_pictures), encoding="utf-8")


if __name__ == "__main__":
    main()

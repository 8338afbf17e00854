#!/usr/bin/env python3
"""Shows both source checks small trees with one fault each."""
import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_includes  # noqa: E402
import check_texts  # noqa: E402


def run(check, files):
    """What `check` prints about a tree of these files, and its exit code."""
    with tempfile.TemporaryDirectory() as folder:
        for name, content in files.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content, encoding="utf-8")
        sys.argv = ["check", folder]
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            code = check.main()
        return code, out.getvalue()


def table(*messages):
    lines = [f'<message id="{key}"><translation>{text}</translation></message>' for key, text in messages]
    return "<TS><context><name></name>" + "".join(lines) + "</context></TS>"


def texts(source='text("a.b"_text); text("a.c %@"_text, x);', en=None, fr=None):
    good = table(("a.b", "B"), ("a.c %@", "C %@"))
    return {
        "src/ui/x.cpp": source,
        "resources/i18n/orvelle_en.ts": en or good,
        "resources/i18n/orvelle_fr.ts": fr or good,
    }


class Texts(unittest.TestCase):
    def test_a_good_tree_passes(self):
        self.assertEqual(run(check_texts, texts())[0], 0)

    def test_faults_are_named(self):
        faults = {
            "no text for 'a.c %@' of src/ui/x.cpp": texts(fr=table(("a.b", "B"))),
            "'a.c %@' is used nowhere": texts(source='text("a.b"_text)'),
            "'a.b' has no text": texts(en=table(("a.b", " "), ("a.c %@", "C %@"))),
            "'a.b' stands twice": texts(en=table(("a.b", "B"), ("a.b", "B"), ("a.c %@", "C %@"))),
            "'a.c %@' has other placeholders": texts(fr=table(("a.b", "B"), ("a.c %@", "C %lld"))),
        }
        for expected, files in faults.items():
            with self.subTest(expected):
                code, out = run(check_texts, files)
                self.assertEqual(code, 1)
                self.assertIn(expected, out)


class Includes(unittest.TestCase):
    HEADERS = {
        f"src/{name}.h": ""
        for name in ("base/b", "platform/p", "platform/freedesktop/f", "links/l", "menubar/m", "ui/common/c", "ui/menu/u")
    }

    def verdict(self, includer, line):
        return run(check_includes, self.HEADERS | {f"src/{includer}": f"#include {line}\n"})

    def test_right_directions_pass(self):
        for includer, line in [
            ("links/x.cpp", '"platform/p.h"'), ("ui/settings/x.cpp", '"ui/common/c.h"'), ("ui/menu/x.cpp", '"ui/menu/u.h"'),
            ("app/x.cpp", '"platform/freedesktop/f.h"'), ("ui/menu/x.cpp", "<QMenu>"), ("links/x.cpp", "<QObject>"),
        ]:
            with self.subTest(f"{includer} {line}"):
                self.assertEqual(self.verdict(includer, line)[0], 0)

    def test_wrong_directions_are_named(self):
        for includer, line in [
            ("base/x.cpp", '"platform/p.h"'), ("links/x.cpp", '"menubar/m.h"'), ("menubar/x.cpp", '"ui/common/c.h"'),
            ("ui/menu/x.cpp", '"platform/freedesktop/f.h"'), ("platform/x.h", '"platform/freedesktop/f.h"'),
            ("ui/settings/x.cpp", '"ui/menu/u.h"'), ("ui/common/x.cpp", '"ui/menu/u.h"'), ("links/x.cpp", "<QMenu>"),
            ("menubar/x.cpp", "<QtWidgets/QWidget>"), ("links/x.cpp", '"l.h"'),
        ]:
            with self.subTest(f"{includer} {line}"):
                code, out = self.verdict(includer, line)
                self.assertEqual(code, 1)
                self.assertIn(includer, out)


if __name__ == "__main__":
    unittest.main()

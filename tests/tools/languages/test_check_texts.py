"""The check of a pack's source finds what a translator may get wrong."""
import os
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools", "languages"))

from check_texts import differences, main, read_texts  # noqa: E402

GERMAN = os.path.join(ROOT, "res", "languages", "0407.rc")


class Differences(unittest.TestCase):
    def setUp(self):
        self.original = {"IDS_APPLICATIONS_TITLE": "Applications (%1!i!)", "IDS_FREE_OF": "%2 free of %1", "LABEL_OPEN": "Open"}

    def find(self, **changes):
        texts = {"IDS_APPLICATIONS_TITLE": "Anwendungen (%1!i!)", "IDS_FREE_OF": "%2 von %1 frei", "LABEL_OPEN": "Öffnen"}
        texts.update({name: text for name, text in changes.items()})
        return list(differences({name: text for name, text in texts.items() if text is not None}, self.original))

    def test_a_whole_translation_has_none(self):
        self.assertEqual(self.find(), [])

    def test_inserts_may_change_their_order_only(self):
        self.assertEqual(self.find(IDS_FREE_OF="%1: %2"), [])
        for text in ("Anwendungen", "(%1)", "(%1!x!)", "(%2!i!)", "(%1!i!, %1!i!)", "(%1!i"):
            self.assertEqual(len(self.find(IDS_APPLICATIONS_TITLE=text)), 1, text)

    def test_breaks_and_percent_signs_are_free(self):
        self.assertEqual(self.find(IDS_FREE_OF="%2%n100 %% %1"), [])

    def test_missing_empty_and_strange_texts_are_told(self):
        self.assertIn("missing", self.find(LABEL_OPEN=None)[0])
        self.assertIn("empty", self.find(LABEL_OPEN=" ")[0])
        self.assertIn("no text", self.find(LABEL_CLOSE="Zu")[0])


class Scripts(unittest.TestCase):
    def test_a_changed_script_fails_and_the_shipped_one_passes(self):
        with open(GERMAN, encoding="utf-8") as file:
            source = file.read()
        self.assertEqual(main([GERMAN]), 0)
        for changed in (source.replace("(%1!i!)", "(%1!s!)", 1), source.replace("#define LABEL_UP", "#define LABEL_DOWN"),
                        source + '\n    IDS_PROGRAM "Vantor"\n'):
            with tempfile.NamedTemporaryFile("w", suffix=".rc", encoding="utf-8") as file:
                file.write(changed)
                file.flush()
                self.assertEqual(main([file.name]), 1)

    def test_texts_with_quotes_are_read_whole(self):
        with tempfile.NamedTemporaryFile("w", suffix=".rc", encoding="utf-8") as file:
            file.write('    7 "a ""b"" c\\n%1"\n#define LABEL_X "y"\n')
            file.flush()
            self.assertEqual(read_texts(file.name), {"7": 'a ""b"" c\\n%1', "LABEL_X": "y"})


if __name__ == "__main__":
    unittest.main()

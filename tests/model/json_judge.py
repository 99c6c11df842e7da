#!/usr/bin/python3
"""Python's json as an outside judge of the program's reader: on generated and damaged texts both
accept the same ones, and read the same values from them. Differences, all of them: Python takes
values on top that are no list or object, NaN and Infinity, and any depth; half a surrogate pair
stays one there, and here reads as U+FFFD."""
import json
import random
import subprocess
import sys
import unittest

BLANKS = ("", "", "", " ", "\n", "\t ", "\r\n")
NAMES = ("", "a", "/", "State", "ID", "\u00e9", "\U0001f600", "\\", '"', "\x01", "\ufffd", "/tmp/x")
NUMBERS = ("0", "-0", "1", "1.0", "10e-1", "-12.5E+3", "1e400", "1e-400", "18446744073709551617",
           "0.1", "123456789012345678901234567890.5")
DAMAGE = [bytes([code]) for code in b'"\\{}[],:0-.eu \n\x00\x1f\x7f\x80\xc3\xed\xffaN'] + [
    b"\\ud800", b"\\udce9", b"\xef\xbb\xbf", b"01", b"NaN", b"-Infinity", b"\xed\xa0\x80", b"1."]


class Writer:
    def __init__(self, seed):
        self.random = random.Random(seed)

    def blank(self):
        return self.random.choice(BLANKS)

    def text(self):
        out = '"'
        for character in self.random.choice(NAMES) + self.random.choice(NAMES):
            units = character.encode("utf-16-be")
            if character in '"\\' or character < " " or self.random.random() < 0.3:
                out += "".join("\\u%02x%02X" % (units[i], units[i + 1])
                               for i in range(0, len(units), 2))
            else:
                out += character
        return out + self.random.choice(("", "", "", "\\/", "\\n", "\\udce9", "\\ud800")) + '"'

    def value(self, depth):
        kind = self.random.randrange(8 if depth < 6 else 5)
        if kind == 0:
            return self.random.choice(("true", "false", "null"))
        if kind in (1, 2):
            return self.random.choice(NUMBERS)
        if kind in (3, 4):
            return self.text()
        return self.container(depth + 1)

    def container(self, depth=1):
        count = self.random.randrange(6)
        if self.random.random() < 0.3:
            items = [self.value(depth) for _ in range(count)]
            begin, end = "[]"
        else:
            items = [self.text() + self.blank() + ":" + self.blank() + self.value(depth)
                     for _ in range(count)]
            begin, end = "{}"
        inner = ",".join(self.blank() + item + self.blank() for item in items)
        return self.blank() + begin + (inner or self.blank()) + end + self.blank()

    def damaged(self, text):
        for _ in range(self.random.randint(1, 3)):
            at = self.random.randrange(len(text) + 1)
            length = self.random.choice((0, 0, 1, 1, 4))
            text = text[:at] + self.random.choice(DAMAGE + [b""]) + text[at + length:]
        return text


def number(spelling):
    """Sign, digits and exponent, in their only form: numbers of any size and precision."""
    mantissa, _, exponent = spelling.lower().partition("e")
    whole_part, _, fraction = mantissa.lstrip("-").partition(".")
    digits = (whole_part + fraction).lstrip("0")
    power = int(exponent or "0") - len(fraction) + len(digits) - len(digits.rstrip("0"))
    if not digits:
        return "number", False, "", 0
    return "number", spelling.startswith("-"), digits.rstrip("0"), power


def refused(_):
    raise ValueError("no number")


def whole(text):
    """The text with U+FFFD for each half of a surrogate pair."""
    return text.encode("utf-16-be", "surrogatepass").decode("utf-16-be", "replace_half")


def replace_half(error):
    return "\ufffd", error.start + 2


def judged(text):
    """What Python reads, in the form that `parsed` gives; None for a text that it refuses."""
    import codecs
    codecs.register_error("replace_half", replace_half)
    try:
        value = json.loads(text.decode("utf-8"), parse_float=number, parse_int=number,
                           parse_constant=refused,
                           object_pairs_hook=lambda pairs: {whole(k): v for k, v in pairs})
    except (ValueError, RecursionError):
        return None
    return tidy(value) if isinstance(value, (dict, list)) else None


def tidy(value):
    if isinstance(value, dict):
        return {name: tidy(item) for name, item in value.items()}
    if isinstance(value, list):
        return [tidy(item) for item in value]
    return whole(value) if isinstance(value, str) else value


def parsed(words):
    """The value that the words of json_reading say, from the last one of the reversed list on."""
    word = words.pop()
    kind, rest = word[0], word[1:]
    if kind in "nft":
        return {"n": None, "f": False, "t": True}[kind]
    if kind == "N":
        return number(rest)
    if kind == "T":
        return bytes.fromhex(rest).decode("utf-8")
    if kind == "L":
        return [parsed(words) for _ in range(int(rest))]
    members = [(parsed(words), parsed(words)) for _ in range(int(rest))]
    assert len(dict(members)) == len(members), "a name stands twice"
    return dict(members)


def read_by_program(texts):
    given = b"".join(b"%d\n%s" % (len(text), text) for text in texts)
    lines = subprocess.run([READER], input=given, stdout=subprocess.PIPE, check=True,
                           timeout=100).stdout.decode().splitlines()
    return [None if line == "absent" else parsed(line.split()[:0:-1]) for line in lines]


class Judge(unittest.TestCase):
    def compare(self, texts):
        results = read_by_program(texts)
        self.assertEqual(len(results), len(texts))
        for text, ours in zip(texts, results):
            with self.subTest(text=text):
                self.assertEqual(ours, judged(text))
        return results

    def test_generated_texts_are_read_alike(self):
        writer = Writer(1)
        results = self.compare([writer.container().encode() for _ in range(3000)])
        self.assertNotIn(None, results)

    def test_damaged_texts_are_refused_alike(self):
        writer = Writer(2)
        results = self.compare([writer.damaged(writer.container().encode()) for _ in range(6000)])
        self.assertGreater(sum(result is None for result in results), 3000)
        self.assertGreater(sum(result is not None for result in results), 300)


if __name__ == "__main__":
    READER = sys.argv.pop(1)
    unittest.main()

"""The program's texts by key, as its own resources have them."""
import functools
import xml.etree.ElementTree

from desktop_session import PROJECT


@functools.cache
def _table(language):
    root = xml.etree.ElementTree.parse(PROJECT / "resources" / "texts" / f"{language}.ts")
    return {message.get("id"): message.findtext("translation")
            for message in root.iter("message")}


def text(key, language="en"):
    return _table(language)[key]

"""Manual pages and bus files, judged by the programs that read them."""
import pathlib
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PACKAGING = PROJECT / "packaging"
BUS_DEFINITIONS = pathlib.Path("/usr/share/xml/dbus-1")
# Attributes that dbus-daemon(1) documents and that the bus's own definition still lacks.
LACKING = "".join(f"<!ATTLIST {rule} send_destination CDATA #IMPLIED send_interface CDATA #IMPLIED"
                  " send_member CDATA #IMPLIED>\n" for rule in ("allow", "deny"))


def complaints(*command):
    done = subprocess.run(command, capture_output=True, text=True, timeout=60,
                          env={"LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin", "MANWIDTH": "80",
                               "XML_CATALOG_FILES": str(BUS_DEFINITIONS / "catalog.xml")})
    return done.stderr.strip() + ("" if done.returncode == 0 else f" (status {done.returncode})")


class Documents(unittest.TestCase):
    def test_manual_pages_have_no_warning(self):
        pages = sorted(PACKAGING.rglob("*.[1-8]"))
        self.assertGreaterEqual(len(pages), 2)
        for page in pages:
            with self.subTest(page=page.name):
                self.assertEqual(complaints("man", "--warnings=w", "-l", "-Tutf8", "-Z", str(page)), "")

    def judge(self, files, definition, lacking=""):
        files = sorted(files)
        self.assertTrue(files, definition)
        with tempfile.NamedTemporaryFile("w", suffix=".dtd") as whole:
            whole.write((BUS_DEFINITIONS / definition).read_text() + lacking)
            whole.flush()
            for file in files:
                with self.subTest(file=file.name):
                    self.assertEqual(complaints("xmllint", "--noout", "--nonet", "--dtdvalid", whole.name,
                                                str(file)), "")

    def test_bus_policies_are_what_the_bus_reads(self):
        self.judge(PACKAGING.rglob("com.korvale.*.conf"), "busconfig.dtd", LACKING)

    def test_bus_interfaces_are_what_the_bus_describes(self):
        self.judge(PACKAGING.rglob("dbus-interfaces/*.xml"), "introspect.dtd")


unittest.main()

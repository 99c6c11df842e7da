"""What skipped_tests.py makes of ctest's results."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent / "skipped_tests.py"
PASSED = """<testcase name="A.Passes" status="run"><system-out>[       OK ] A.Passes (0 ms)</system-out></testcase>"""
BY_NEED = """<testcase name="{name}" status="notrun"><skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
<system-out>[ RUN      ] {name}
/somewhere/{name}.cpp:15: Skipped
Only root can
do this.

[  SKIPPED ] {name} (0 ms)
</system-out></testcase>"""
BY_STATUS = """<testcase name="whole" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/>
<system-out>preparing
whole: there is no engine

</system-out></testcase>"""
WITHIN = """<testcase name="python" status="run"><system-out>
test_one (test_a.A.test_one) ... ok
test_two (test_a.A.test_two) ... skipped "it's too early"

OK (skipped=1)</system-out></testcase>"""
DISABLED = """<testcase name="B.Rests" status="disabled"><skipped message="Disabled"/></testcase>"""


class SkippedTests(unittest.TestCase):
    def said_of(self, *cases):
        with tempfile.TemporaryDirectory() as folder:
            results = pathlib.Path(folder) / "results.xml"
            results.write_text(f"<testsuite>{''.join(cases)}</testsuite>")
            return subprocess.run([sys.executable, SCRIPT, results], check=True, capture_output=True,
                                  text=True).stdout

    def test_none_is_said_too(self):
        self.assertEqual(self.said_of(PASSED), "0 skipped\n")

    def test_each_is_named_below_its_reason(self):
        self.assertEqual(self.said_of(BY_NEED.format(name="C.Two"), PASSED, BY_STATUS, WITHIN, DISABLED,
                                      BY_NEED.format(name="C.One")),
                         "5 skipped\n"
                         "  It is switched off.\n    B.Rests\n"
                         "  Only root can do this.\n    C.One\n    C.Two\n"
                         "  it's too early\n    python: test_two\n"
                         "  whole: there is no engine\n    whole\n")


unittest.main()

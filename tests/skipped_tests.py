#!/usr/bin/python3
"""Says which tests were skipped, and why. Argument: what ctest wrote with --output-junit."""
import collections
import re
import sys
import xml.etree.ElementTree

# Of GoogleTest, and of one test among those of a Python program.
REASON = re.compile(r": Skipped\n(.+?)\n\n", re.DOTALL)
WITHIN = re.compile(r"^(\w+) \([\w.]+\) \.\.\. skipped (['\"])(.*)\2$", re.MULTILINE)


def reason_of(skipped, output):
    told = REASON.search(output + "\n\n")
    if told:
        return " ".join(told[1].split())
    lines = output.split("\n")
    return next((line.strip() for line in reversed(lines) if line.strip()), skipped.get("message", "nobody says why"))


def skipped_tests(results):
    """Pairs of a test and the reason."""
    for case in results.iter("testcase"):
        output = case.findtext("system-out") or ""
        if case.get("status") == "disabled":
            yield case.get("name"), "It is switched off."
        elif (skipped := case.find("skipped")) is not None:
            yield case.get("name"), reason_of(skipped, output)
        else:
            for test, _, reason in WITHIN.findall(output):
                yield f"{case.get('name')}: {test}", reason


def main(path):
    results = xml.etree.ElementTree.parse(path).getroot()
    by_reason = collections.defaultdict(list)
    for test, reason in skipped_tests(results):
        by_reason[reason].append(test)
    print(f"{sum(map(len, by_reason.values()))} skipped")
    for reason, tests in sorted(by_reason.items()):
        print(f"  {reason}", *(f"    {test}" for test in sorted(tests)), sep="\n")


if __name__ == "__main__":
    main(sys.argv[1])

// Info.json, the packaged one or the administrator's.

#include "InputFiles.h"
#include "core/InfoDictionary.h"
#include "model/Values.h"

using namespace korvale;

namespace {

void readEverything(const InfoDictionary& info) {
    static_cast<void>(info.allowsCheckForPolicyUpdate());
    static_cast<void>(info.usesVexaAppIcon());
    fuzz::require(!info.isNoUIMode() || integerValue(info["NoKorvaleUI"]) == 1);
    for (const char* key : {"CFBundleIdentifier", "CFBundleName", "CFBundleDisplayName",
                            "CFBundleShortVersionString", "CFBundleVersion"}) {
        fuzz::require(valueText(info[key]).isValidUtf16());
    }
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::InputFolder folder;
    folder.write(QStringLiteral("input"), fuzz::textOf(data, size));
    folder.write(QStringLiteral("good"), R"({"CFBundleName":"K","NoKorvaleUI":0})");
    const QString input = folder.path(QStringLiteral("input"));
    const QString good = folder.path(QStringLiteral("good"));

    const InfoDictionary packaged = InfoDictionary::load(input, good);
    readEverything(packaged);
    fuzz::require(valueText(packaged["CFBundleName"]) == u"K"); // the administrator's counts
    const InfoDictionary administrators = InfoDictionary::load(good, input);
    readEverything(administrators);
    fuzz::require(administrators.isInstalled());
    fuzz::require(packaged.isInstalled() ==
                  (administrators.administratorsFile() == InfoFile::Used));
    fuzz::taken += packaged.isInstalled() ? 1U : 0U;
    return 0;
}

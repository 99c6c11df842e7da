// Desktop entries, and the system's files of assignments.

#include "Target.h"
#include "platform/AssignmentFile.h"
#include "platform/DesktopEntry.h"

using namespace korvale;

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::assignments;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray content = QByteArrayView(data, static_cast<qsizetype>(size)).toByteArray();
    const std::string_view text(content.constData(), size);
    const auto plain = parseDesktopEntry(text, {});
    const auto german = parseDesktopEntry(text, {"de_AT@x", "de_AT", "de"});
    fuzz::require(!plain || german); // another language never takes an entry away
    for (const auto& entry : {plain, german}) {
        if (entry) {
            fuzz::require(!entry->program.empty() && entry->name.isValidUtf16());
            fuzz::require(mayStart(
                text, [&entry](std::string_view program) { return program == entry->program; }));
            ++fuzz::taken;
        }
    }
    for (const char* key : {"PRETTY_NAME", "PRETTY_HOSTNAME", "Name"}) {
        const auto value = assignedValueIn(content, key);
        fuzz::require(!value || !value->isEmpty());
    }
    return 0;
}

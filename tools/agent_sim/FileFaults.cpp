#include "agent_sim/FileFaults.h"

#include "agent_sim/HostCacheWriter.h"

#include <array>

namespace korvale::sim {
namespace {

// Each text has the members of every file, so that it is wrong wherever it is put.
constexpr char kTruncated[] = R"({"MessageMask":3,"AnalyzedCount":7,"/cut/file":{"State":1,"I)";
constexpr char kNotJson[] = "\x7f"
                            "ELF this is not JSON";
constexpr char kWrongTypes[] =
    R"({"MessageMask":{"a":[1]},"ScannerState":"busy","AnalyzedCount":[],"BlockedExePath":7,)"
    R"("ProcessTerminated":[],"ProcessActionBlocked":{},"CurrentFile":false,)"
    R"("ConsumerNotificationMessage":5,"ConsumerNotificationUrl":{},)"
    R"("/wrong/number":5,"/wrong/text":"x","/wrong/list":[{"State":1}],"/wrong/null":null,)"
    R"("/wrong/members":{"State":"one","ID":7,"Score":[1],"Path":5,"PID":{"a":1},"Count":[],)"
    R"("When":5,"Category":7,"Event":"x","ItemType":5,"Device Type":{},"Action":1}})";
constexpr char kHugeNumber[] =
    R"({"MessageMask":123456789012345678901234567890,"ScannerState":1e308,)"
    R"("AnalyzedCount":-99999999999999999999999,)"
    R"("/huge/file":{"State":123456789012345678901234567890,"ID":"huge","Score":1e308,)"
    R"("Path":"/huge/file","PID":1e300,"Count":1e300,"When":"now","Category":"Threat",)"
    R"("Event":99999999999999999999}})";
constexpr char kDuplicate[] =
    R"({"MessageMask":0,"MessageMask":2071,"AnalyzedCount":1,"AnalyzedCount":2,)"
    R"("CurrentFile":"/duplicate/first","CurrentFile":"/duplicate/second",)"
    R"("/duplicate/file":{"State":1,"ID":"first"},"/duplicate/file":{"State":2,"ID":"second"}})";
constexpr char kInvalidUtf8[] = "{\"MessageMask\":1,\"CurrentFile\":\"/bad/\xff\xfe\"}";
constexpr qsizetype kNesting = 200'000;
/// More than a reader is expected to take in.
constexpr std::int64_t kTooLarge = (std::int64_t{256} << 20) + 1;

struct Kind {
    QLatin1String name;
    bool (*place)(HostCacheWriter& writer, const QString& file);
};

template <const auto& Content>
bool placeText(HostCacheWriter& writer, const QString& file) {
    return writer.write(file, QByteArray(Content));
}

constexpr std::array kKinds{
    Kind{QLatin1String("truncated"), &placeText<kTruncated>},
    Kind{QLatin1String("not-json"), &placeText<kNotJson>},
    Kind{QLatin1String("wrong-types"), &placeText<kWrongTypes>},
    Kind{QLatin1String("huge-number"), &placeText<kHugeNumber>},
    Kind{QLatin1String("duplicate"), &placeText<kDuplicate>},
    Kind{QLatin1String("invalid-utf8"), &placeText<kInvalidUtf8>},
    Kind{QLatin1String("list"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.write(file, QByteArray(R"([{"State":1,"ID":"x"},1,"text"])"));
         }},
    Kind{QLatin1String("deep"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.write(file, QByteArray(kNesting, '[') + QByteArray(kNesting, ']'));
         }},
    Kind{QLatin1String("empty"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.write(file, QByteArray());
         }},
    Kind{QLatin1String("empty-object"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.write(file, QByteArray("{}"));
         }},
    Kind{QLatin1String("fifo"),
         [](HostCacheWriter& writer, const QString& file) { return writer.placeFifo(file); }},
    Kind{QLatin1String("folder"),
         [](HostCacheWriter& writer, const QString& file) { return writer.placeFolder(file); }},
    Kind{QLatin1String("too-large"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.placeSparse(file, kTooLarge);
         }},
    Kind{QLatin1String("absent"),
         [](HostCacheWriter& writer, const QString& file) { return writer.remove(file); }},
};

} // namespace

QString placeFaultyFile(HostCacheWriter& writer, const QString& name, const QString& kind) {
    for (const Kind& known : kKinds) {
        if (known.name == kind) {
            return known.place(writer, name) ? QString() : writer.error();
        }
    }
    return QStringLiteral("no such kind; there are ") + faultyFileKinds().join(u' ');
}

QStringList faultyFileKinds() {
    QStringList names;
    for (const Kind& known : kKinds) {
        names.append(known.name);
    }
    return names;
}

} // namespace korvale::sim

#include "agent_sim/FileFaults.h"

#include "agent/publish/HostCacheWriter.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

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
constexpr qint64 kTooLarge = (qint64{256} << 20) + 1;
constexpr mode_t kReadableByAll = 0644;
constexpr mode_t kFolderOfAll = 0755;

struct Kind {
    QLatin1String name;
    QString (*place)(HostCacheWriter& writer, const QString& file); ///< empty, or what failed
};

QString written(HostCacheWriter& writer, const QString& file, const QByteArray& content) {
    return writer.write(file, content) ? QString() : writer.error();
}

template <const auto& Content>
QString placeText(HostCacheWriter& writer, const QString& file) {
    return written(writer, file, QByteArray(Content));
}

/// Takes away what is there, and has `make` put something else in its place.
template <typename Make>
QString placeInstead(HostCacheWriter& writer, const QString& file, const Make& make) {
    if (!writer.remove(file)) {
        return writer.error();
    }
    const QString path = writer.folder() + u'/' + file;
    return make(QFile::encodeName(path).constData())
               ? QString()
               : path + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

QString placeFifo(HostCacheWriter& writer, const QString& file) {
    return placeInstead(writer, file,
                        [](const char* path) { return ::mkfifo(path, kReadableByAll) == 0; });
}

QString placeFolder(HostCacheWriter& writer, const QString& file) {
    return placeInstead(writer, file,
                        [](const char* path) { return ::mkdir(path, kFolderOfAll) == 0; });
}

/// A file of holes.
QString placeSparse(HostCacheWriter& writer, const QString& file) {
    QString problem = written(writer, file, QByteArray());
    if (!problem.isEmpty()) {
        return problem;
    }
    const QString path = writer.folder() + u'/' + file;
    return QFile::resize(path, kTooLarge) ? QString() : QStringLiteral("cannot resize ") + path;
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
             return written(writer, file, QByteArray(R"([{"State":1,"ID":"x"},1,"text"])"));
         }},
    Kind{QLatin1String("deep"),
         [](HostCacheWriter& writer, const QString& file) {
             return written(writer, file, QByteArray(kNesting, '[') + QByteArray(kNesting, ']'));
         }},
    Kind{QLatin1String("empty"),
         [](HostCacheWriter& writer, const QString& file) {
             return written(writer, file, QByteArray());
         }},
    Kind{QLatin1String("empty-object"),
         [](HostCacheWriter& writer, const QString& file) {
             return written(writer, file, QByteArray("{}"));
         }},
    Kind{QLatin1String("fifo"), &placeFifo},
    Kind{QLatin1String("folder"), &placeFolder},
    Kind{QLatin1String("too-large"), &placeSparse},
    Kind{QLatin1String("absent"),
         [](HostCacheWriter& writer, const QString& file) {
             return writer.remove(file) ? QString() : writer.error();
         }},
};

} // namespace

QString placeFaultyFile(HostCacheWriter& writer, const QString& name, const QString& kind) {
    for (const Kind& known : kKinds) {
        if (known.name == kind) {
            return known.place(writer, name);
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

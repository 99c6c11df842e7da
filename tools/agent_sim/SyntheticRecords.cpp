#include "agent_sim/SyntheticRecords.h"

#include "agent/publish/HostCacheLists.h"

#include <QCryptographicHash>

#include <array>

namespace korvale::sim {
namespace {

constexpr std::array kFileStates{1, 2, 9, 10, 5};
constexpr std::array kProcessStates{0, 2, 3};
constexpr int kExploitTypes = 24;

template <std::size_t N>
int nth(const std::array<int, N>& values, int n) {
    return values.at(static_cast<std::size_t>(n) % N);
}

QString filePath(int n) {
    return QStringLiteral("/synthetic/folder-%1/File-%2.bin")
        .arg(n / 1000, 4, 10, QChar(u'0'))
        .arg(n, 7, 10, QChar(u'0'));
}

QString programPath(int n) {
    return QStringLiteral("/synthetic/programs/program-%1").arg(n, 7, 10, QChar(u'0'));
}

QString timeOf(int n) {
    return QDateTime(QDate(2024, 1, 1), QTime(0, 0), Qt::UTC)
        .addSecs(n)
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

void addFile(HostCacheLists& model, int n) {
    // Every fourth file shares the identifier of the one before it.
    const QByteArray content = filePath(n - (n % 4 == 3 ? 1 : 0)).toUtf8();
    const QByteArray id = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
    model.setFile(filePath(n), {nth(kFileStates, n), QString::fromLatin1(id), n % 101});
}

void addProcess(HostCacheLists& model, int n) {
    model.setProcess(QStringLiteral("synthetic-%1").arg(n), nth(kProcessStates, n), programPath(n),
                     10'000 + n, QString::number(1 + n % 9));
}

void addEvent(HostCacheLists& model, int n) {
    if (n % 3 != 0) {
        model.setEventTime(timeOf(n));
        model.addThreatEvent(filePath(n), nth(kFileStates, n), 1 << (n % 5));
        model.setEventTime(QString());
        return;
    }
    model.putEvent(QStringLiteral("synthetic-%1").arg(n),
                   {{QStringLiteral("When"), timeOf(n)},
                    {QStringLiteral("Category"), QStringLiteral("Exploit")},
                    {QStringLiteral("Path"), programPath(n)},
                    {QStringLiteral("Event"), nth(kProcessStates, n / 3)},
                    {QStringLiteral("ItemType"), QString::number(n % kExploitTypes)},
                    {QStringLiteral("PID"), 10'000 + n}});
}

void addDevice(HostCacheLists& model, int n) {
    model.putDeviceEvent(
        QStringLiteral("synthetic-%1").arg(n),
        {{QStringLiteral("Device Type"), QStringLiteral("USB Drive")},
         {QStringLiteral("When"), timeOf(n)},
         {QStringLiteral("Vendor ID"), QStringLiteral("%1").arg(n % 4096, 4, 16, QChar(u'0'))},
         {QStringLiteral("Product ID"), QStringLiteral("%1").arg(n % 8191, 4, 16, QChar(u'0'))},
         {QStringLiteral("Serial Number"), QStringLiteral("SN%1").arg(n, 8, 10, QChar(u'0'))},
         {QStringLiteral("Action"),
          n % 2 == 0 ? QStringLiteral("Block") : QStringLiteral("FullAccess")}});
}

struct Kind {
    QLatin1String name;
    void (*add)(HostCacheLists& model, int n);
};

constexpr std::array kKinds{
    Kind{QLatin1String("files"), &addFile},
    Kind{QLatin1String("processes"), &addProcess},
    Kind{QLatin1String("events"), &addEvent},
    Kind{QLatin1String("devices"), &addDevice},
    Kind{QLatin1String("all"),
         [](HostCacheLists& model, int n) {
             addFile(model, n);
             addProcess(model, n);
             addEvent(model, n);
             addDevice(model, n);
         }},
};

} // namespace

bool addSyntheticRecords(HostCacheLists& model, int count, const QString& kind) {
    for (const Kind& known : kKinds) {
        if (known.name == kind) {
            for (int n = 0; n < count; ++n) {
                known.add(model, n);
            }
            return true;
        }
    }
    return false;
}

QStringList syntheticKinds() {
    QStringList names;
    for (const Kind& known : kKinds) {
        names.append(known.name);
    }
    return names;
}

} // namespace korvale::sim

#include "agent/app/Configuration.h"

#include "fakes/TestFolder.h"

#include <QRegularExpression>

#include <sys/stat.h>

namespace korvale::agent {
namespace {

Configuration good(std::string_view text) {
    const ConfigurationResult result = parseConfiguration(text);
    if (const auto* problem = std::get_if<std::string>(&result)) {
        ADD_FAILURE() << *problem;
        return {};
    }
    return std::get<Configuration>(result);
}

std::string problemOf(std::string_view text) {
    const ConfigurationResult result = parseConfiguration(text);
    const auto* problem = std::get_if<std::string>(&result);
    return problem == nullptr ? "no problem" : *problem;
}

TEST(Configuration, AnEmptyFileIsAllDefaults) {
    EXPECT_EQ(good(""), Configuration());
    EXPECT_EQ(good("# only a comment\n[scan]\n"), Configuration());
}

TEST(Configuration, KeysSetWhatTheyName) {
    const Configuration configuration = good(R"(
device_name = "Empfang ✓"
log_level = "debug"
[policy]
name = "Office"
notifications = false
[folders]
state = "/srv/state"
[engine]
file_deadline = 5
units = []
[scan]
background = ["/home", "/srv"]
exclude = ["/home/x"]
other_file_systems = true
largest_file = 10
[quarantine]
unsafe = false
abnormal = true
[updates]
unit = "a.service"
)");
    EXPECT_EQ(configuration.deviceName, "Empfang ✓");
    EXPECT_EQ(configuration.logLevel, LogLevel::Debug);
    EXPECT_EQ(configuration.policyName, "Office");
    EXPECT_FALSE(configuration.policyNotifications);
    EXPECT_EQ(configuration.state, "/srv/state");
    EXPECT_EQ(configuration.fileDeadline, std::chrono::seconds(5));
    EXPECT_TRUE(configuration.engineUnits.empty());
    EXPECT_EQ(configuration.background, (std::vector<std::string>{"/home", "/srv"}));
    EXPECT_EQ(configuration.exclude, std::vector<std::string>{"/home/x"});
    EXPECT_TRUE(configuration.otherFileSystems);
    EXPECT_EQ(configuration.largestFile, 10 << 20);
    EXPECT_FALSE(configuration.quarantineUnsafe);
    EXPECT_TRUE(configuration.quarantineAbnormal);
    EXPECT_EQ(configuration.updaterUnit, "a.service");
}

struct BadCase {
    const char* text;
    const char* problem;
};

TEST(Configuration, AMistakeIsOneLineThatNamesItsPlace) {
    const BadCase cases[] = {
        {"\n\ncolour = 1", "line 3: there is no key colour"},
        {"[scan]\nspeed = 1", "line 2: there is no key scan.speed"},
        {"[scann]\nlargest_file = 1", "line 1: there is no key scann"},
        {"scan = 5", "line 1: [scan] is a section"},
        {"[scan]\nlargest_file = 0",
         "line 2: scan.largest_file must be a number of mebibytes from 1 to 1048576"},
        {"[scan]\nlargest_file = \"4\"",
         "line 2: scan.largest_file must be a number of mebibytes from 1 to 1048576"},
        {"[scan]\nlargest_file = 4.5",
         "line 2: scan.largest_file must be a number of mebibytes from 1 to 1048576"},
        {"[scan]\nexclude = \"/a\"", "line 2: scan.exclude must be a list of paths that begin with "
                                     "/ and have no . or .. in them"},
        {"[scan]\nexclude = [\"/a\", 5]", "line 2: scan.exclude must be a list of paths that begin "
                                          "with / and have no . or .. in them"},
        {"[scan]\nexclude = [\"/a/../b\"]", "line 2: scan.exclude must be a list of paths that "
                                            "begin with / and have no . or .. in them"},
        {"[folders]\nstate = \"var\"", "line 2: folders.state must be a path that begins with /"},
        {"[folders]\nstate = \"/a\\nb\"",
         "line 2: folders.state must be a path that begins with /"},
        {"log_level = \"loud\"",
         "line 1: log_level must be \"error\", \"warning\", \"info\" or \"debug\""},
        {"[quarantine]\nunsafe = 1", "line 2: quarantine.unsafe must be true or false"},
        {"[watch]\nfolders = [\"/home/*\"]",
         "line 2: watch.folders must be a list of folders that begin with / and have no *, ?, . or "
         ".. in them"},
        {"[watch]\nblock = true", "line 2: watch.block must be \"nothing\" or \"execute\""},
        {"[updates]\nunit = \"../x.service\"",
         "line 2: updates.unit must be the name of a unit of systemd (.service or .socket)"},
    };
    for (const BadCase& test : cases) {
        EXPECT_EQ(problemOf(test.text), test.problem);
    }
    for (const char* text :
         {"a = ", "[scan", "a = 1\na = 2", "\xff\xfe", "a = 'b\nc'", "a = n\n", "\"a\\nb\" = 1"}) {
        EXPECT_EQ(problemOf(text).rfind("line ", 0), 0U) << text << ": " << problemOf(text);
        EXPECT_EQ(problemOf(text).find('\n'), std::string::npos) << text;
    }
}

TEST(Configuration, AFileThatIsNotThereIsAllDefaults) {
    const TestFolder folder;
    const ConfigurationResult result =
        loadConfiguration(folder.path(QStringLiteral("none")).toStdString());
    ASSERT_TRUE(std::holds_alternative<Configuration>(result));
    EXPECT_EQ(std::get<Configuration>(result), Configuration());
}

TEST(Configuration, OnlyARegularFileOfMeasureIsRead) {
    const TestFolder folder;
    const std::string fifo = folder.path(QStringLiteral("fifo")).toStdString();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_TRUE(std::holds_alternative<std::string>(loadConfiguration(fifo)));
    EXPECT_TRUE(
        std::holds_alternative<std::string>(loadConfiguration(folder.path().toStdString())));
    folder.write(QStringLiteral("long"), QByteArray((1 << 20) + 1, '#'));
    EXPECT_TRUE(std::holds_alternative<std::string>(
        loadConfiguration(folder.path(QStringLiteral("long")).toStdString())));
    folder.write(QStringLiteral("file"), "log_level = \"error\"\n");
    const ConfigurationResult result =
        loadConfiguration(folder.path(QStringLiteral("file")).toStdString());
    ASSERT_TRUE(std::holds_alternative<Configuration>(result));
    EXPECT_EQ(std::get<Configuration>(result).logLevel, LogLevel::Error);
}

QByteArray documentText(const char* name) {
    QFile file(QStringLiteral(KORVALE_AGENT_PACKAGING "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

TEST(Configuration, TheManualDocumentsEveryKeyAndNoOther) {
    QStringList documented;
    QString section;
    for (const QByteArray& line : documentText("agent.toml.5").split('\n')) {
        if (line.startsWith(".SH")) {
            section = line.startsWith(".SH [") ? QString::fromUtf8(line.mid(5).chopped(1)) + u'.'
                                               : QString();
        } else if (line.startsWith(".B ") && QRegularExpression(QStringLiteral("^[.]B [a-z_]+$"))
                                                 .match(QString::fromUtf8(line))
                                                 .hasMatch()) {
            documented.append(section + QString::fromUtf8(line.mid(3)));
        }
    }
    QStringList known;
    for (const std::string& key : configurationKeys()) {
        known.append(QString::fromStdString(key));
    }
    EXPECT_EQ(documented, known);
}

TEST(Configuration, ThePackagedFileHoldsEveryKeyWithItsDefault) {
    const QByteArray text = documentText("agent.toml");
    // Without folders nothing is watched, and the installed agent shall watch.
    Configuration packaged = good(text.toStdString());
    EXPECT_EQ(packaged.watchFolders.size(), 8U);
    packaged.watchFolders.clear();
    EXPECT_EQ(packaged, Configuration());
    QByteArray allSet;
    for (const QByteArray& line : text.split('\n')) {
        const bool isKey = line.startsWith('#') && !line.startsWith("# ");
        allSet += (isKey ? line.mid(1) : line) + '\n';
    }
    Configuration set = good(allSet.toStdString());
    set.watchFolders.clear();
    EXPECT_EQ(set, Configuration());
    for (const std::string& key : configurationKeys()) {
        const std::string name = key.substr(key.find('.') + 1);
        EXPECT_TRUE(allSet.contains(('\n' + name + " = ").c_str())) << key;
    }
}

} // namespace
} // namespace korvale::agent

#include "core/InfoDictionary.h"

#include "core/BundleIdentity.h"
#include "core/VersionRecords.h"
#include "fakes/RecordingLogSink.h"
#include "model/Values.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

using testing::ElementsAre;

class InfoDictionaryTest : public testing::Test {
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    QString write(const char* name, const QByteArray& content) {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path(name);
    }
    InfoDictionary load(const QByteArray& packaged) {
        return InfoDictionary::load(write("packaged", packaged), path("administrators"));
    }
    QTemporaryDir m_folder;
};

TEST_F(InfoDictionaryTest, TheAdministratorReplacesSingleKeys) {
    write("administrators", R"({"NoKorvaleUI": 1, "CFBundleName": null})");
    const auto info = load(R"({"NoKorvaleUI": 0, "CFBundleName": "A", "CFBundleVersion": "7"})");
    EXPECT_TRUE(info.isNoUIMode());
    EXPECT_EQ(valueText(info["CFBundleName"]), QStringLiteral("A"));
    EXPECT_EQ(valueText(info["CFBundleVersion"]), QStringLiteral("7"));
    EXPECT_TRUE(info["Absent"].isNull());
    EXPECT_TRUE(info.isInstalled());
    EXPECT_EQ(info.administratorsFile(), InfoFile::Used);
}

TEST_F(InfoDictionaryTest, AnUnusablePackagedFileIsNoInstallation) {
    write("administrators", R"({"NoKorvaleUI": 1})");
    for (const char* content : {"", "{", "[]", "1", "null"}) {
        const auto info = load(content);
        EXPECT_FALSE(info.isInstalled()) << content;
        EXPECT_TRUE(info["CFBundleVersion"].isNull()) << content;
        EXPECT_TRUE(info.isNoUIMode()) << content;
    }
    for (const QString& unusable : {path("absent"), m_folder.path()}) {
        const auto info = InfoDictionary::load(unusable, path("administrators"));
        EXPECT_FALSE(info.isInstalled());
    }
}

TEST_F(InfoDictionaryTest, ABrokenAdministratorsFileChangesNothing) {
    for (const char* content : {"", "{\"NoKorvaleUI\": 1", "[1]"}) {
        write("administrators", content);
        const auto info = load("{}");
        EXPECT_EQ(info.administratorsFile(), InfoFile::NoObject) << content;
        EXPECT_FALSE(info.isNoUIMode());
    }
}

TEST_F(InfoDictionaryTest, AnAdministratorsFifoNeitherCountsNorBlocks) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path("administrators")).constData(), 0600), 0);
    const auto info = load("{}");
    EXPECT_EQ(info.administratorsFile(), InfoFile::Unreadable);
}

struct FlagCase {
    const char* value; ///< JSON; empty: absent
    bool expected;
};

TEST_F(InfoDictionaryTest, NoUIModeIsOnExactlyAtTheIntegerOne) {
    for (const FlagCase& one :
         {FlagCase{"1", true}, FlagCase{"1.9", true}, FlagCase{"true", true},
          FlagCase{"\"1\"", true}, FlagCase{"\" +1x\"", true}, FlagCase{"", false},
          FlagCase{"0", false}, FlagCase{"2", false}, FlagCase{"-1", false},
          FlagCase{"\"yes\"", false}, FlagCase{"\"x1\"", false}, FlagCase{"null", false},
          FlagCase{"[1]", false}, FlagCase{"false", false}}) {
        const QByteArray value(one.value);
        const auto info = load(value.isEmpty() ? "{}" : "{\"NoKorvaleUI\":" + value + "}");
        EXPECT_EQ(info.isNoUIMode(), one.expected) << one.value;
    }
}

TEST_F(InfoDictionaryTest, PolicyUpdatesMayBeCheckedUnlessForbidden) {
    for (const FlagCase& one :
         {FlagCase{"", true}, FlagCase{"null", true}, FlagCase{"true", true},
          FlagCase{"\"YES\"", true}, FlagCase{"1", true}, FlagCase{"false", false},
          FlagCase{"0", false}, FlagCase{"\"no\"", false}, FlagCase{"{}", false}}) {
        const QByteArray value(one.value);
        const auto info =
            load(value.isEmpty() ? "{}" : "{\"Allow Check For Policy Update\":" + value + "}");
        EXPECT_EQ(info.allowsCheckForPolicyUpdate(), one.expected) << one.value;
    }
}

TEST_F(InfoDictionaryTest, TheAlternativeIconsAreOffUnlessAskedFor) {
    EXPECT_FALSE(load("{}").usesVexaAppIcon());
    EXPECT_FALSE(load(R"({"Use Vexa App Icon": 0})").usesVexaAppIcon());
    EXPECT_TRUE(load(R"({"Use Vexa App Icon": true})").usesVexaAppIcon());
}

TEST_F(InfoDictionaryTest, TheAdministratorsFileStandsBelowTheRoot) {
    qputenv("KORVALE_ROOT", "/somewhere");
    EXPECT_EQ(InfoDictionary::administratorsPath(),
              QStringLiteral("/somewhere/etc/korvale-ui/Info.json"));
    qunsetenv("KORVALE_ROOT");
    EXPECT_EQ(InfoDictionary::administratorsPath(), QStringLiteral("/etc/korvale-ui/Info.json"));
}

class BundleIdentityTest : public InfoDictionaryTest {
protected:
    /// The version lines of a program with these keys.
    std::vector<std::string> versionLines(const QByteArray& info) {
        RecordingLogSink sink;
        EXPECT_EQ(OSLoggingStartup(load(info), QStringLiteral("process")), 0);
        UtilLogVersionNumber();
        return sink.lines();
    }
};

TEST_F(BundleIdentityTest, TheVersionLineHasNameAndBothVersions) {
    EXPECT_THAT(
        versionLines(R"({"CFBundleIdentifier": "com.example", "CFBundleDisplayName": "Shown",
            "CFBundleName": "Name", "CFBundleShortVersionString": "3.1", "CFBundleVersion": 1042})"),
        ElementsAre("INFO \"UtilLogVersionNumber() Korvale Bastion Shown version = 3.1 (1042)\""));
    EXPECT_EQ(bufferText(bundleIdentity().identifier), QStringLiteral("com.example"));
}

TEST_F(BundleIdentityTest, WithoutADisplayNameTheBundleNameIsLogged) {
    EXPECT_THAT(
        versionLines(R"({"CFBundleName": "Name", "CFBundleShortVersionString": "1"})"),
        ElementsAre("INFO \"UtilLogVersionNumber() Korvale Bastion Name version = 1 ((null))\""));
}

TEST_F(BundleIdentityTest, WithoutAnyNameTheProcessIsLogged) {
    EXPECT_THAT(
        versionLines("{}"),
        ElementsAre(
            "INFO \"UtilLogVersionNumber() Korvale Bastion process version = (null) ((null))\""));
    EXPECT_EQ(bufferText(bundleIdentity().identifier), QString());
}

TEST_F(BundleIdentityTest, ALongVersionIsCutAt128Bytes) {
    versionLines("{\"CFBundleShortVersionString\": \"" + QByteArray(127, 'v') +
                 "\", \"CFBundleVersion\": \"1\"}");
    EXPECT_EQ(bufferText(bundleIdentity().version),
              QString(127, QLatin1Char('v')) + QLatin1Char(' '));
    versionLines(R"({"CFBundleShortVersionString": "1", "CFBundleVersion": "2"})");
    EXPECT_EQ(bufferText(bundleIdentity().version), QStringLiteral("1 (2)"));
}

TEST_F(BundleIdentityTest, NoPartOfACharacterIsLeftWhereATextIsCut) {
    const auto nameOf = [this](const QString& name) {
        versionLines("{\"CFBundleName\": \"" + name.toUtf8() + "\"}");
        return bufferText(bundleIdentity().name);
    };
    for (const QString& character :
         {QStringLiteral("\u00E9"), QStringLiteral("\u65E5"), QStringLiteral("\U0001F600")}) {
        const qsizetype bytes = character.toUtf8().size();
        for (qsizetype kept = 0; kept < bytes; ++kept) {
            const QString before(128 - kept, QLatin1Char('x'));
            EXPECT_EQ(nameOf(before + character + QLatin1Char('y')), before);
        }
        const QString fits = QString(128 - bytes, QLatin1Char('x')) + character;
        EXPECT_EQ(nameOf(fits), fits);
        EXPECT_EQ(nameOf(fits + QLatin1Char('y')), fits);
    }
}

TEST_F(BundleIdentityTest, TheOperatingSystemIsLogged) {
    qputenv("KORVALE_ROOT", m_folder.path().toUtf8());
    QDir(m_folder.path()).mkpath(QStringLiteral("etc"));
    write("etc/os-release", "PRETTY_NAME=\"Test OS 7\"\n");
    RecordingLogSink sink;
    UtilLogOSVersionNumber();
    EXPECT_THAT(sink.lines(),
                ElementsAre("INFO \"UtilLogOSVersionNumber() System macOS version Test OS 7\""));
    qunsetenv("KORVALE_ROOT");
}

TEST_F(BundleIdentityTest, VersionLinesAreInformation) {
    setLogLevel(LogLevel::Warn);
    EXPECT_THAT(versionLines("{}"), testing::IsEmpty());
    setLogLevel(LogLevel::Info);
}

} // namespace
} // namespace korvale

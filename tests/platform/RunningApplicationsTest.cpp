#include "platform/DesktopEntryIndex.h"
#include "platform/ProcRunningApplications.h"
#include "platform/UserLanguages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

struct EntryCase {
    const char* name;
    QByteArray content;
    std::optional<std::pair<QString, std::string>> result; ///< name, program
};
class DesktopEntries : public testing::TestWithParam<EntryCase> {};

TEST_P(DesktopEntries, AreRead) {
    const std::string content = GetParam().content.toStdString();
    const auto entry = parseDesktopEntry(content, {"de_AT", "de"});
    ASSERT_EQ(entry.has_value(), GetParam().result.has_value());
    if (entry) {
        EXPECT_EQ(entry->name, GetParam().result->first);
        EXPECT_EQ(entry->program, GetParam().result->second);
        EXPECT_TRUE(mayStart(content, [&entry](std::string_view program) {
            return program == entry->program;
        })) << "the cheap look must not miss it";
    }
}

TEST(DesktopEntryLooks, NameEachProgramOnceUntilOneIsWanted) {
    std::vector<std::string> asked;
    const auto lookAt = [&asked](const char* content, const char* wanted) {
        asked.clear();
        return mayStart(content, [&asked, wanted](std::string_view program) {
            asked.emplace_back(program);
            return program == wanted;
        });
    };
    static constexpr const char* content =
        "[Desktop Entry]\nName[E]=Exec=no\nXExec=no\nExec=app --new\n \tExec = \"an other\" x\n"
        "Exec\nExec=\n[Desktop Action New]\nExec=app\nExec=app";
    EXPECT_FALSE(lookAt(content, "none"));
    EXPECT_THAT(asked, ElementsAre("app", "an other", "app"));
    EXPECT_TRUE(lookAt(content, "an other"));
    EXPECT_THAT(asked, ElementsAre("app", "an other"));
    EXPECT_FALSE(lookAt("", "app"));
    EXPECT_TRUE(lookAt("Exec=app", "app"));
    EXPECT_FALSE(lookAt("Exec=\"a\\\\b\"\nExec=\"c\\\\d\"\nExec=e", "f"));
    EXPECT_THAT(asked, ElementsAre("ab", "cd", "e"));
}

std::pair<QString, std::string> named(const char* name, const char* program) {
    return {QString::fromUtf8(name), program};
}

constexpr const char* head = "[Desktop Entry]\nType=Application\n";

INSTANTIATE_TEST_SUITE_P(
    Kinds, DesktopEntries,
    testing::Values(
        EntryCase{"Plain", QByteArray(head) + "Name=App\nExec=app %U\n", named("App", "app")},
        EntryCase{"Blanks", QByteArray(head) + "Name = App \nExec = /usr/bin/app --x\n",
                  named("App", "/usr/bin/app")},
        EntryCase{"QuotedProgram",
                  QByteArray(head) + "Name=App\nExec=\"/opt/my app/a\\\\\"b\" %f\n",
                  named("App", "/opt/my app/a\"b")},
        EntryCase{"BestLanguage",
                  QByteArray(head) + "Name[de]=Gut\nName=App\nName[de_AT]=Besser\nExec=app\n",
                  named("Besser", "app")},
        EntryCase{"SecondLanguage",
                  QByteArray(head) + "Name=App\nName[fr]=Non\nName[de]=Gut\nExec=app",
                  named("Gut", "app")},
        EntryCase{"BlanksAroundTheLanguage",
                  QByteArray(head) + "Name=App\n Name[de] = Gut\nName[de_AT]x=No\nExec=app",
                  named("Gut", "app")},
        EntryCase{"LanguageThatBeginsAlike",
                  QByteArray(head) + "Name=App\nName[d]=No\nName[de_ATX]=No\nName[de=No\nExec=app",
                  named("App", "app")},
        EntryCase{"OnlyForeignName", QByteArray(head) + "Name[fr]=Non\nExec=app\n", std::nullopt},
        EntryCase{"EscapedName", QByteArray(head) + "Name=A\\sB\\\\C\nExec=app\n",
                  named("A B\\C", "app")},
        EntryCase{"BackslashAtTheEnd", QByteArray(head) + "Name=A\\tB\\\nExec=app\n",
                  named("A\tB\\", "app")},
        EntryCase{"ActionsDoNotCount",
                  QByteArray(head) + "Name=App\nExec=app\n[Desktop Action n]\nName=New\nExec=new\n",
                  named("App", "app")},
        EntryCase{"LaterGroup", QByteArray("[Other]\nName=No\n") + head + "Name=App\nExec=app\n",
                  named("App", "app")},
        EntryCase{"Comment", QByteArray(head) + "#Name=No\nName=App\nExec=app\n",
                  named("App", "app")},
        EntryCase{"Hidden", QByteArray(head) + "Name=App\nExec=app\nHidden=true\n", std::nullopt},
        EntryCase{"NoDisplayStillNames", QByteArray(head) + "Name=App\nExec=app\nNoDisplay=true\n",
                  named("App", "app")},
        EntryCase{"Link", "[Desktop Entry]\nType=Link\nName=App\nExec=app\n", std::nullopt},
        EntryCase{"NoExec", QByteArray(head) + "Name=App\n", std::nullopt},
        EntryCase{"EmptyExec", QByteArray(head) + "Name=App\nExec=\n", std::nullopt},
        EntryCase{"Garbage", QByteArray("\0=\n[Desktop\n=x\nExec", 19), std::nullopt}),
    [](const auto& instance) { return instance.param.name; });

class UserLanguages : public testing::Test {
protected:
    void SetUp() override { TearDown(); }
    void TearDown() override {
        for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"}) {
            qunsetenv(variable);
        }
    }
};

TEST_F(UserLanguages, ComeFromTheLocaleMostSpecificFirst) {
    qputenv("LANG", "fr_FR.UTF-8");
    qputenv("LC_ALL", "de_AT.UTF-8@euro");
    EXPECT_THAT(userLanguages(), ElementsAre("de_AT@euro", "de_AT", "de@euro", "de"));
}

TEST_F(UserLanguages, WantedLanguagesComeBeforeTheLocales) {
    qputenv("LANG", "de_DE.UTF-8");
    qputenv("LANGUAGE", "ja:fr");
    EXPECT_THAT(userLanguages(), ElementsAre("ja", "fr", "de_DE", "de"));
}

TEST_F(UserLanguages, TheCLocaleHasNone) {
    qputenv("LANGUAGE", "ja");
    for (const char* locale : {"", "C", "POSIX", "C.UTF-8"}) {
        qputenv("LANG", locale);
        EXPECT_THAT(userLanguages(), IsEmpty()) << locale;
    }
}

/// A machine of files: processes, executables and desktop entries.
class RunningApplicationsTest : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    QString write(const QString& name, const QByteArray& content) {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile opened(file);
        EXPECT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(content);
        return file;
    }
    QString program(const QString& name) { return write(name, "#!"); }

    void process(int pid, const QString& executable, int start = 0,
                 const QByteArray& cgroup = "0::/\n") {
        const QString folder = QStringLiteral("proc/%1/").arg(pid);
        QByteArray stat = QByteArray::number(pid) + " (a ) b) S";
        for (int field = 4; field < 22; ++field) {
            stat += " 0";
        }
        write(folder + QStringLiteral("stat"), stat + ' ' + QByteArray::number(start) + " 0 0\n");
        write(folder + QStringLiteral("cgroup"), cgroup);
        EXPECT_TRUE(QFile::link(executable, path(folder + QStringLiteral("exe"))));
    }
    void entry(const QString& file, const QByteArray& content) {
        write(file, "[Desktop Entry]\nType=Application\n" + content);
    }

    std::vector<std::pair<std::string, int>> list(const QByteArray& session = {}) {
        DesktopEntryIndex::Sources entries;
        entries.dataFolders = {path(QStringLiteral("home")).toStdString(),
                               path(QStringLiteral("share")).toStdString()};
        entries.programFolders = {path(QStringLiteral("none")).toStdString(),
                                  path(QStringLiteral("bin")).toStdString()};
        entries.languages = {"de"};
        const ProcRunningApplications running(
            {path(QStringLiteral("proc")).toStdString(), m_user, session, m_root}, entries);
        std::vector<std::pair<std::string, int>> result;
        for (const RunningApplication& application : running.list()) {
            result.emplace_back(application.localizedName.toStdString(), application.pid);
        }
        return result;
    }

    QTemporaryDir m_folder;
    uid_t m_user = getuid();
    uid_t m_root = 0;
};

TEST_F(RunningApplicationsTest, AreNamedByTheirExecutableWithoutADesktopEntry) {
    process(20, program(QStringLiteral("bin/second")));
    process(3, program(QStringLiteral("bin/first")));
    EXPECT_THAT(list(), ElementsAre(Pair("first", 3), Pair("second", 20)));
}

TEST_F(RunningApplicationsTest, ProcessesOfOneExecutableAreOneWithThePidOfTheOldest) {
    const QString app = program(QStringLiteral("bin/app"));
    process(10, app, 500); // the counter of pids has wrapped around
    process(900, app, 400);
    process(950, app, 450);
    process(20, program(QStringLiteral("bin/other")), 1);
    EXPECT_THAT(list(), ElementsAre(Pair("other", 20), Pair("app", 900)));
}

TEST_F(RunningApplicationsTest, TheDesktopEntryGivesTheNameInTheUsersLanguage) {
    process(5, program(QStringLiteral("bin/app")));
    entry(QStringLiteral("share/applications/app.desktop"),
          "Name=App\nName[de]=Programm\nExec=app %U\n");
    EXPECT_THAT(list(), ElementsAre(Pair("Programm", 5)));
}

TEST_F(RunningApplicationsTest, ExecMayNameALinkToTheExecutable) {
    const QString app = program(QStringLiteral("lib/real"));
    process(5, app);
    QDir().mkpath(path(QStringLiteral("bin")));
    ASSERT_TRUE(QFile::link(app, path(QStringLiteral("bin/app"))));
    entry(QStringLiteral("share/applications/app.desktop"),
          "Name=Linked\nExec=" + path(QStringLiteral("bin/app")).toUtf8() + "\n");
    EXPECT_THAT(list(), ElementsAre(Pair("Linked", 5)));
}

TEST_F(RunningApplicationsTest, AnEntryOfTheUserHidesTheSystemsOfTheSameId) {
    process(5, program(QStringLiteral("bin/app")));
    entry(QStringLiteral("home/applications/sub/app.desktop"), "Name=Mine\nExec=app\n");
    entry(QStringLiteral("share/applications/sub-app.desktop"), "Name=Theirs\nExec=app\n");
    EXPECT_THAT(list(), ElementsAre(Pair("Mine", 5)));
    entry(QStringLiteral("home/applications/sub/app.desktop"),
          "Name=Mine\nExec=app\nHidden=true\n");
    EXPECT_THAT(list(), ElementsAre(Pair("app", 5)));
}

TEST_F(RunningApplicationsTest, AHelpersEntryGivesWayToOneThatMenusShow) {
    process(5, program(QStringLiteral("bin/app")));
    entry(QStringLiteral("share/applications/a.desktop"),
          "Name=Helper\nExec=app\nNoDisplay=true\n");
    EXPECT_THAT(list(), ElementsAre(Pair("Helper", 5)));
    entry(QStringLiteral("share/applications/b.desktop"), "Name=App\nExec=app\n");
    entry(QStringLiteral("share/applications/c.desktop"), "Name=Later\nExec=app\n");
    EXPECT_THAT(list(), ElementsAre(Pair("App", 5)));
}

TEST_F(RunningApplicationsTest, OfSeveralEntriesTheFirstFoldersThenTheFirstByIdNamesIt) {
    process(5, program(QStringLiteral("bin/app")));
    for (const char* id : {"m", "z", "b", "k"}) {
        entry(QStringLiteral("share/applications/%1.desktop").arg(QLatin1String(id)),
              QByteArray("Exec=app\nName=Theirs ") + id + '\n');
    }
    EXPECT_THAT(list(), ElementsAre(Pair("Theirs b", 5)));
    entry(QStringLiteral("home/applications/z.desktop"), "Name=Mine z\nExec=app\n");
    entry(QStringLiteral("home/applications/x.desktop"), "Name=Mine x\nExec=app\n");
    EXPECT_THAT(list(), ElementsAre(Pair("Mine x", 5)));
}

TEST_F(RunningApplicationsTest, ADeletedExecutableKeepsItsName) {
    process(5, path(QStringLiteral("bin/app (deleted)")));
    process(6, path(QStringLiteral("bin/gone (deleted)")));
    entry(QStringLiteral("share/applications/a.desktop"),
          "Name=Gone App\nExec=" + path(QStringLiteral("bin/gone")).toUtf8() + "\n");
    EXPECT_THAT(list(), ElementsAre(Pair("app", 5), Pair("Gone App", 6)));
}

TEST_F(RunningApplicationsTest, AnUpgradedExecutableIsOneApplicationWithItsNewFile) {
    const QString app = program(QStringLiteral("bin/app"));
    process(5, app + QStringLiteral(" (deleted)"), 1);
    process(6, app, 2);
    EXPECT_THAT(list(), ElementsAre(Pair("app", 5)));
}

TEST_F(RunningApplicationsTest, OtherSessionsAreLeftOutTheUsersServiceManagerIsNot) {
    process(1, program(QStringLiteral("bin/mine")), 0,
            "0::/user.slice/user-1.slice/session-2.scope\n");
    process(2, program(QStringLiteral("bin/ssh")), 0,
            "0::/user.slice/user-1.slice/session-31.scope\n");
    process(3, program(QStringLiteral("bin/managed")), 0,
            "0::/user.slice/user-1.slice/user@1.service/app.slice/a.scope\n");
    EXPECT_THAT(list("2"), ElementsAre(Pair("mine", 1), Pair("managed", 3)));
    EXPECT_THAT(list(), ElementsAre(Pair("mine", 1), Pair("ssh", 2), Pair("managed", 3)));
}

TEST_F(RunningApplicationsTest, OtherUsersAreLeftOut) {
    process(1, program(QStringLiteral("bin/app")));
    ++m_user;
    EXPECT_THAT(list(), IsEmpty());
}

/// readlink(2) fails for another reason than that there is none.
TEST_F(RunningApplicationsTest, AnUnreadableExecutableLeavesTheNameInProc) {
    for (const int pid : {7, 8}) {
        const QString folder = QStringLiteral("proc/%1/").arg(pid);
        write(folder + QStringLiteral("exe"), "not a link");
        write(folder + QStringLiteral("comm"), "KorvaleBASTION\n");
    }
    write(QStringLiteral("proc/9/exe"), "not a link");
    EXPECT_THAT(list(), ElementsAre(Pair("KorvaleBASTION", 7)));
}

TEST_F(RunningApplicationsTest, WhatRunsAsRootIsTheUsersWhoStartedIt) {
    m_root = getuid();
    m_user = 4711;
    write(QStringLiteral("proc/7/status"), "Name:\tx\nUid:\t4711\t0\t0\t0\n");
    write(QStringLiteral("proc/8/status"), "Name:\tx\nUid:\t0\t0\t0\t0\n");
    write(QStringLiteral("proc/9/status"), "Name:\tUid:\t4711");
    for (const int pid : {7, 8, 9}) {
        write(QStringLiteral("proc/%1/exe").arg(pid), "not a link");
        write(QStringLiteral("proc/%1/comm").arg(pid), "program" + QByteArray::number(pid));
    }
    EXPECT_THAT(list(), ElementsAre(Pair("program7", 7)));
}

TEST_F(RunningApplicationsTest, WhatIsNoProcessOrEndsMeanwhileIsLeftOut) {
    write(QStringLiteral("proc/self/x"), "");
    write(QStringLiteral("proc/12x/x"), "");
    write(QStringLiteral("proc/13/stat"), "13 (kernel thread) S 2\n");
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(RunningApplicationsTest, BrokenEntriesAndFoldersDoNoHarm) {
    process(5, program(QStringLiteral("bin/app")));
    write(QStringLiteral("share/applications/a.desktop"), QByteArray("\0\xff[[=", 5));
    write(QStringLiteral("share/applications/b.desktop/nested"), "");
    ASSERT_TRUE(QFile::link(path(QStringLiteral("share/applications")),
                            path(QStringLiteral("share/applications/loop.desktop"))));
    EXPECT_THAT(list(), ElementsAre(Pair("app", 5)));
}

TEST(RunningApplicationsOfThisMachine, HoldThisVeryProgram) {
    const auto applications = ProcRunningApplications().list();
    // With the pid of the oldest process of it: other tests of this program may run beside this
    // one.
    EXPECT_TRUE(std::any_of(applications.begin(), applications.end(), [](const auto& application) {
        return application.localizedName == QStringLiteral("host_facts_test");
    }));
}

} // namespace
} // namespace korvale

#include "platform/HostIdentity.h"

#include "platform/AssignmentFile.h"
#include "platform/LoginUser.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

namespace korvale {
namespace {

struct Assignment {
    const char* name;
    QByteArray content;
    std::optional<QString> value;
};
class Assignments : public testing::TestWithParam<Assignment> {};

TEST_P(Assignments, AreReadAsAShellWould) {
    EXPECT_EQ(assignedValueIn(GetParam().content, "KEY"), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Assignments,
    testing::Values(Assignment{"Plain", "KEY=a b\n", QStringLiteral("a b")},
                    Assignment{"DoubleQuotes", "OTHER=1\nKEY=\"a b\"\n", QStringLiteral("a b")},
                    Assignment{"SingleQuotes", "KEY='a\\b'", QStringLiteral("a\\b")},
                    Assignment{"Escapes", "KEY=\"a \\\"b\\\" \\$c\"", QStringLiteral("a \"b\" $c")},
                    Assignment{"LastCounts", "KEY=1\nKEY=2\n", QStringLiteral("2")},
                    Assignment{"Comment", "#KEY=1\n", std::nullopt},
                    Assignment{"Empty", "KEY=\"\"\n", std::nullopt},
                    Assignment{"LongerKey", "KEYS=1\nMYKEY=2\n", std::nullopt},
                    Assignment{"Absent", "", std::nullopt},
                    Assignment{"Unicode", "KEY=\"R\u00e9seau\"", QStringLiteral("R\u00e9seau")},
                    Assignment{"LoneQuote", "KEY=\"", QStringLiteral("\"")},
                    Assignment{"TrailingBackslash", "KEY=a\\", QStringLiteral("a\\")}),
    [](const auto& instance) { return instance.param.name; });

class HostIdentity : public testing::Test {
protected:
    void SetUp() override { qputenv("KORVALE_ROOT", m_root.path().toUtf8()); }
    void TearDown() override { qunsetenv("KORVALE_ROOT"); }

    void write(const char* path, const QByteArray& content) {
        const QString file = m_root.filePath(QString::fromLatin1(path));
        QDir().mkpath(QFileInfo(file).path());
        QFile opened(file);
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(content);
    }
    QTemporaryDir m_root;
};

TEST_F(HostIdentity, ThePrettyHostNameComesFirst) {
    write("etc/machine-info", "CHASSIS=laptop\nPRETTY_HOSTNAME=\"Anna's laptop\"\n");
    EXPECT_EQ(hostDisplayName(), QStringLiteral("Anna's laptop"));
}

TEST_F(HostIdentity, WithoutAPrettyNameTheKernelsIsShown) {
    EXPECT_EQ(hostDisplayName(), QSysInfo::machineHostName());
    EXPECT_FALSE(hostDisplayName().isEmpty());
}

TEST_F(HostIdentity, TheOperatingSystemIsNamedByOsRelease) {
    write("usr/lib/os-release", "PRETTY_NAME=\"Vendor OS\"\n");
    EXPECT_EQ(operatingSystemName(), QStringLiteral("Vendor OS"));
    write("etc/os-release", "NAME=Test\nPRETTY_NAME=\"Test OS 7\"\n");
    EXPECT_EQ(operatingSystemName(), QStringLiteral("Test OS 7"));
}

TEST(LoginUser, AKnownNameHasItsUserId) {
    EXPECT_EQ(userId("nobody"), 65534U);
}

TEST(LoginUser, AnUnknownNameIsZero) {
    EXPECT_EQ(userId("no-such-user-here"), 0U);
    EXPECT_EQ(userId(""), 0U);
}

TEST(LoginUser, IsThatOfTheLoginNameOrZeroWithoutOne) {
    const char* name = getlogin();
    EXPECT_EQ(getCurrentLoginUID(), name == nullptr ? 0 : userId(name));
}

} // namespace
} // namespace korvale

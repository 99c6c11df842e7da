// Every text in every language.
#include "platform/Texts.h"

#include "shell/Translations.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <vector>

namespace korvale {
namespace {

using Texts = std::map<QString, QString>;

const QStringList& languages() {
    static const QStringList all{QStringLiteral("de"), QStringLiteral("en"), QStringLiteral("es"),
                                 QStringLiteral("fr"), QStringLiteral("ja")};
    return all;
}

/// Fails the test for an entry that is there twice or is marked as unfinished or vanished.
Texts textsOf(const QString& language) {
    QFile file(QStringLiteral(KORVALE_TEXTS "/") + language + QStringLiteral(".ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    QXmlStreamReader reader(&file);
    Texts texts;
    QString key;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("message")) {
            key = reader.attributes().value(QLatin1String("id")).toString();
            EXPECT_FALSE(key.isEmpty());
        } else if (reader.isStartElement() && reader.name() == QLatin1String("translation")) {
            EXPECT_FALSE(reader.attributes().hasAttribute(QLatin1String("type")))
                << qPrintable(key);
            EXPECT_TRUE(texts.emplace(key, reader.readElementText()).second) << qPrintable(key);
        }
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    return texts;
}

std::vector<QString> placeholdersOf(const QString& text) {
    static const QStringList all{QStringLiteral("%@"), QStringLiteral("%s"), QStringLiteral("%i"),
                                 QStringLiteral("%d"), QStringLiteral("%u"), QStringLiteral("%li"),
                                 QStringLiteral("%ld")};
    std::vector<QString> found;
    for (qsizetype at = text.indexOf(u'%'); at >= 0; at = text.indexOf(u'%', at + 1)) {
        const auto known = std::find_if(all.begin(), all.end(), [&](const QString& placeholder) {
            return QStringView(text).sliced(at).startsWith(placeholder);
        });
        found.push_back(known == all.end() ? QStringLiteral("unknown") : *known);
    }
    std::sort(found.begin(), found.end());
    return found;
}

constexpr const char* wantedKeys[] = {
    // status item, menu, status line, window
    "ProductEP", "Company", "Url", "ShowDetailsMenu", "CheckForUpdates", "CM_CheckForPolicyUpdate",
    "CM_ShowNotifications", "About", "Exit", "TM_Logging", "TM_Error", "TM_Warning",
    "TM_Information", "TM_All", "TM_Detection", "TM_Background", "TM_Folder", "TM_Stop", "Safe",
    "Unsafe", "OfflineMode", "NotRunning", "NoNetwork", "NoDriver", "Inspecting",
    "EventThreatStringFromValueRunning", "HPS_Threats", "HPS_Exploits", "HPS_Events",
    "HPS_ExternalDevices", "AboutPolicy", "AboutPolicyLastUpdated", "KorvaleSONDAR",
    "DefaultPolicyName", "DefaultPolicyMode", "Analyzed", "HPS_Quarantined",
    // states, rows
    "Abnormal", "Quarantined", "Waived", "Alert", "Blocked", "Ignored", "Terminated", "Unknown",
    "EventThreatStringFromValueNone", "EventThreatStringFromValueDetected",
    "EventThreatStringFromValueRemoved", "EventThreatStringFromValueStateChange", "CategoryTooltip",
    "FoundTooltip", "EventStrThreat", "EventStrExploitApplication", "EventStrExploitViolation",
    "FullAccess",
    // columns
    "HPS_ColFile", "HPS_ColCategory", "HPS_ColFound", "HPS_ColID", "HPS_ColProcess", "HPS_ColPID",
    "HPS_ColWhen", "HPS_ColEvent", "HPS_ColDetails", "HPS_ColDeviceType", "HPS_ColVendorID",
    "HPS_ColProductID", "HPS_ColSerialNumber", "HPS_ColAction",
    // notifications
    "NotificationMessageUnsafeDetected", "NotificationMessageUnsafesDetected",
    "NotificationMessageUnsafeQuarantined", "NotificationMessageUnsafesQuarantined",
    "NotificationMessageAbnormalDetected", "NotificationMessageAbnormalsDetected",
    "NotificationMessageAbnormalQuarantined", "NotificationMessageAbnormalsQuarantined",
    "NotificationSubtitleUnsafeDetected", "NotificationSubtitleUnsafesDetected",
    "NotificationSubtitleUnsafeQuarantined", "NotificationSubtitleUnsafesQuarantined",
    "NotificationSubtitleAbnormalDetected", "NotificationSubtitleAbnormalsDetected",
    "NotificationSubtitleAbnormalQuarantined", "NotificationSubtitleAbnormalsQuarantined",
    "NotificationMessageNewExploit", "NotificationMessageExploitDetectedPID",
    "NotificationSubtitleExploitAttemptDetected", "NotificationSubtitleExecutionBlock",
    "NotificationSubtitleProcessActionBlocked", "NotificationSubtitleProcessTerminated",
    "NotificationMessagePolicyExpired", "NotificationSubtitlePolicyExpired",
    "NotificationMessagePolicyInvalidCompanyId", "NotificationSubtitlePolicyInvalidCompanyId",
    "NotificationMessagePolicyInvalidSignature", "NotificationSubtitlePolicyInvalidSignature",
    "BTDFinishedScanningTitle", "BTDFinishedScanningMessage", "NotificationActionOpenLink"};

/// The keys that stand in the sources as localizedText("Key") or as "Key" of a fixed prefix.
std::set<QString> keysInSources() {
    std::set<QString> keys;
    const QString call = QStringLiteral("localizedText(\"");
    QDirIterator files(QStringLiteral(KORVALE_SOURCES), {QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString source = QString::fromUtf8(file.readAll());
        for (const QString& start : {call, QStringLiteral("\"HPS_"), QStringLiteral("\"TM_")}) {
            for (qsizetype at = source.indexOf(start); at >= 0;
                 at = source.indexOf(start, at + 1)) {
                const qsizetype begin = source.indexOf(u'"', at) + 1;
                keys.insert(source.mid(begin, source.indexOf(u'"', begin) - begin));
            }
        }
    }
    return keys;
}

TEST(Texts, EveryKeyHasATextInEveryLanguage) {
    for (const QString& language : languages()) {
        const Texts texts = textsOf(language);
        for (const char* key : wantedKeys) {
            const auto found = texts.find(QString::fromLatin1(key));
            EXPECT_TRUE(found != texts.end() && !found->second.trimmed().isEmpty())
                << qPrintable(language) << ' ' << key;
        }
    }
}

TEST(Texts, EveryKeyThatTheProgramLooksUpIsThere) {
    const Texts texts = textsOf(QStringLiteral("en"));
    const std::set<QString> used = keysInSources();
    EXPECT_GT(used.size(), 20U);
    for (const QString& key : used) {
        EXPECT_TRUE(texts.contains(key)) << qPrintable(key);
    }
}

TEST(Texts, EveryLanguageHasTheKeysOfEnglishWithTheSamePlaceholders) {
    const Texts english = textsOf(QStringLiteral("en"));
    for (const QString& language : languages()) {
        const Texts texts = textsOf(language);
        for (const auto& [key, text] : texts) {
            EXPECT_FALSE(text.trimmed().isEmpty()) << qPrintable(language + u' ' + key);
            const auto original = english.find(key);
            ASSERT_NE(original, english.end()) << qPrintable(language + u' ' + key);
            EXPECT_EQ(placeholdersOf(text), placeholdersOf(original->second))
                << qPrintable(language + u' ' + key);
        }
        EXPECT_EQ(texts.size(), english.size()) << qPrintable(language);
    }
}

/// Keys beside those of notifications whose texts take one value.
const std::set<QString> oneValueKeys{
    QStringLiteral("AboutVersion"),        QStringLiteral("HPS_LastScan"),
    QStringLiteral("HPS_WhyThreats"),      QStringLiteral("HPS_WhyThreatsOffline"),
    QStringLiteral("HPS_WhyExploits"),     QStringLiteral("HPS_TermNotUtf8"),
    QStringLiteral("HPS_TermFound"),       QStringLiteral("HPS_TermMore"),
    QStringLiteral("HPS_TermRefused"),     QStringLiteral("HPS_TermSays"),
    QStringLiteral("HPS_TermScan"),        QStringLiteral("HPS_ExportNoFile"),
    QStringLiteral("HPS_ExportNoRoom"),    QStringLiteral("HPS_ExportRuns"),
    QStringLiteral("HPS_ExportCancelled"), QStringLiteral("HPS_PaneMore")};
/// And those that take two.
const std::set<QString> twoValueKeys{
    QStringLiteral("HPS_FindCount"),      QStringLiteral("HPS_TermNoFolder"),
    QStringLiteral("HPS_ExportDone"),     QStringLiteral("HPS_ExportFailed"),
    QStringLiteral("HPS_ExportSelected"), QStringLiteral("HPS_ExportShown")};

TEST(Texts, HavePlaceholdersForWhatTheyAreFilledWith) {
    const Texts english = textsOf(QStringLiteral("en"));
    for (const auto& [key, text] : english) {
        std::size_t expected = 0;
        const bool isMessage = key.startsWith(QLatin1String("NotificationMessage"));
        if (key == QLatin1String("NotificationMessageExploitDetectedPID")) {
            expected = 3;
        } else if (isMessage && (key.contains(QLatin1String("Unsafe")) ||
                                 key.contains(QLatin1String("Abnormal")))) {
            expected = 1;
        } else if (twoValueKeys.contains(key)) {
            expected = 2;
        } else if (oneValueKeys.contains(key)) {
            expected = 1;
        }
        EXPECT_EQ(placeholdersOf(text).size(), expected) << qPrintable(key);
    }
}

TEST(Texts, TheEnglishCategoryWordsAreFixed) {
    const Texts english = textsOf(QStringLiteral("en"));
    for (const char* word : {"Unsafe", "Abnormal", "Quarantined", "Waived", "Alert", "Blocked",
                             "Terminated", "Ignored"}) {
        EXPECT_EQ(english.at(QString::fromLatin1(word)), QString::fromLatin1(word));
    }
}

TEST(Texts, MenuItemsAreUniqueInEveryLanguage) {
    constexpr const char* items[] = {"ShowDetailsMenu",
                                     "CheckForUpdates",
                                     "CM_CheckForPolicyUpdate",
                                     "About",
                                     "CM_ShowNotifications",
                                     "TM_Logging",
                                     "TM_Detection",
                                     "Exit"};
    for (const QString& language : languages()) {
        const Texts texts = textsOf(language);
        std::set<QString> titles;
        for (const char* item : items) {
            titles.insert(texts.at(QString::fromLatin1(item)));
        }
        EXPECT_EQ(titles.size(), std::size(items)) << qPrintable(language);
    }
}

struct Locale {
    std::vector<QByteArray> languages;
    const char* unsafe;
};
class Locales : public testing::TestWithParam<Locale> {};

TEST_P(Locales, ChooseTheLanguage) {
    const Translations translations(GetParam().languages);
    EXPECT_EQ(localizedText("Unsafe"), QString::fromUtf8(GetParam().unsafe));
}

INSTANTIATE_TEST_SUITE_P(All, Locales,
                         testing::Values(Locale{{"en-US"}, "Unsafe"}, Locale{{"de"}, "Unsicher"},
                                         Locale{{"de-AT", "de"}, "Unsicher"},
                                         Locale{{"fr-FR"}, "Dangereux"},
                                         Locale{{"es-MX"}, "No seguro"}, Locale{{"ja-JP"}, "危険"},
                                         Locale{{"pt-BR"}, "Unsafe"}, Locale{{}, "Unsafe"},
                                         Locale{{"de_AT@euro"}, "Unsicher"},
                                         Locale{{"C"}, "Unsafe"}, Locale{{"den"}, "Unsafe"},
                                         Locale{{"pt-BR", "fr-FR"}, "Dangereux"},
                                         Locale{{"en-GB", "de"}, "Unsafe"}));

TEST(Translations, AMissingKeyIsItsOwnText) {
    const Translations translations({"de"});
    EXPECT_EQ(localizedText("NoSuchKey_%@&"), QStringLiteral("NoSuchKey_%@&"));
}

TEST(Translations, SpeakForTheToolkitToo) {
    const auto cancel = [](const QByteArray& language) {
        const Translations translations({language});
        return QCoreApplication::translate("QPlatformTheme", "Cancel");
    };
    EXPECT_EQ(cancel("en"), QStringLiteral("Cancel"));
    EXPECT_EQ(cancel("de"), QStringLiteral("Abbrechen"));
    EXPECT_EQ(cancel("es"), QStringLiteral("Cancelar"));
    EXPECT_EQ(cancel("fr"), QStringLiteral("Annuler"));
    EXPECT_EQ(cancel("ja"), QStringLiteral("キャンセル"));
}

TEST(Translations, FollowTheEnvironmentAsGettextDoes) {
    const auto unsafe = [](const char* all, const char* wanted) {
        qputenv("LC_ALL", all);
        qputenv("LANGUAGE", wanted);
        const Translations translations;
        qunsetenv("LC_ALL");
        qunsetenv("LANGUAGE");
        return localizedText("Unsafe");
    };
    EXPECT_EQ(unsafe("de_DE.UTF-8", ""), QStringLiteral("Unsicher"));
    EXPECT_EQ(unsafe("en_US.UTF-8", "de"), QStringLiteral("Unsicher"));
    EXPECT_EQ(unsafe("de_DE.UTF-8", "pt:fr"), QStringLiteral("Dangereux"));
    EXPECT_EQ(unsafe("C", "de"), QStringLiteral("Unsafe"));
    EXPECT_EQ(unsafe("POSIX", "de"), QStringLiteral("Unsafe"));
}

TEST(Translations, AreInstalledOnlyWhileTheyLive) {
    { const Translations translations({"de"}); }
    EXPECT_EQ(localizedText("Unsafe"), QStringLiteral("Unsafe"));
    EXPECT_EQ(localizedText("ProductEP"), QStringLiteral("ProductEP"));
}

TEST(Texts, TheTooltipOfTheFoundColumnFitsFilesAndProcesses) {
    const std::map<QString, QString> file{{QStringLiteral("de"), QStringLiteral("Datei")},
                                          {QStringLiteral("en"), QStringLiteral("file")},
                                          {QStringLiteral("es"), QStringLiteral("archivo")},
                                          {QStringLiteral("fr"), QStringLiteral("fichier")},
                                          {QStringLiteral("ja"), QStringLiteral("ファイル")}};
    for (const auto& [language, word] : file) {
        const QString text = textsOf(language).at(QStringLiteral("FoundTooltip"));
        EXPECT_FALSE(text.isEmpty());
        EXPECT_FALSE(text.contains(word)) << qPrintable(text);
    }
}

} // namespace
} // namespace korvale

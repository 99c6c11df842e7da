#include "platform/UserLanguages.h"

#include <QList>

#include <algorithm>

namespace korvale {
namespace {

void addLocale(QByteArray locale, std::vector<QByteArray>& languages) {
    QByteArray modifier;
    if (const qsizetype at = locale.indexOf('@'); at >= 0) {
        modifier = locale.mid(at);
        locale.truncate(at);
    }
    if (const qsizetype dot = locale.indexOf('.'); dot >= 0) {
        locale.truncate(dot);
    }
    if (locale.isEmpty() || locale == "C" || locale == "POSIX") {
        return;
    }
    const QByteArray language = locale.split('_').first();
    for (const QByteArray& key : {locale + modifier, locale, language + modifier, language}) {
        if (std::find(languages.begin(), languages.end(), key) == languages.end()) {
            languages.push_back(key);
        }
    }
}

} // namespace

std::vector<QByteArray> userLanguages() {
    QByteArray locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = qgetenv(variable);
        if (!locale.isEmpty()) {
            break;
        }
    }
    std::vector<QByteArray> languages;
    addLocale(locale, languages);
    if (languages.empty()) {
        return {}; // LANGUAGE does not count there
    }
    const QByteArray wanted = qgetenv("LANGUAGE");
    if (!wanted.isEmpty()) {
        languages.clear();
        for (const QByteArray& one : wanted.split(':')) {
            addLocale(one, languages);
        }
        addLocale(locale, languages);
    }
    return languages;
}

} // namespace korvale

#pragma once

#include <QStringList>
#include <QTranslator>

#include <memory>
#include <vector>

namespace korvale {

/// The program's texts for localizedText: English, and on top of it the user's language, so that a
/// text which that language lacks stands there in English. Installed while the object lives; made
/// before anything is worded, after the QCoreApplication. Main thread.
class Translations {
public:
    /// In the language that the user's locale asks for.
    Translations();
    /// In the first of `languages` (BCP 47, "de-AT") that there is; English without any.
    explicit Translations(const QStringList& languages);

private:
    void install(const QString& language);

    // QTranslator's destructor takes it out of the application.
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace korvale

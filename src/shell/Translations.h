#pragma once

#include <QByteArray>
#include <QTranslator>

#include <memory>
#include <vector>

namespace korvale {

/// The program's texts for localizedText: English, and on top of it the user's language, so that a
/// text which that language lacks stands there in English; in that language also the toolkit's own
/// texts, as far as they are installed. Installed while the object lives; made
/// before anything is worded, after the QCoreApplication. Main thread.
class Translations {
public:
    /// In the language that the user's locale asks for.
    Translations();
    /// In the first of `languages` ("de_AT@euro", "de-AT") that there is; English without any.
    explicit Translations(const std::vector<QByteArray>& languages);

private:
    void install(const QString& language);
    void installToolkits(const QString& language);
    void add(std::unique_ptr<QTranslator> translator);

    // QTranslator's destructor takes it out of the application.
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace korvale

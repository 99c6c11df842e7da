#include "tables/RowExport.h"

#include "model/Values.h"

#include <utility>

namespace korvale {
namespace {

void appendCell(QString text, std::string& out) {
    // The full-width ones do the same in East Asia.
    constexpr QStringView formulaStarts = u"=+-@\t\r\n\uFF1D\uFF0B\uFF0D\uFF20";
    constexpr std::string_view parting = ",;\"\t\r\n";
    text.replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter));
    if (!text.isEmpty() && formulaStarts.contains(text.front())) {
        text.prepend(u'\'');
    }
    const std::string cell = text.toStdString();
    if (cell.find_first_of(parting) == std::string::npos) {
        out += cell;
        return;
    }
    out += '"';
    for (const char c : cell) {
        out.append(c == '"' ? 2 : 1, c);
    }
    out += '"';
}

void appendText(QStringView text, std::string& out) {
    const QByteArray utf8 = text.toUtf8();
    appendQuoted(out, {utf8.data(), static_cast<std::size_t>(utf8.size())});
}

void appendList(const QString& texts, std::string& out) {
    char before = '[';
    for (const QStringView text : QStringView(texts).split(QChar(u'\0'))) {
        out += std::exchange(before, ',');
        appendText(text, out);
    }
    out += ']';
}

} // namespace

void RowExport::begin(std::string& out) const {
    if (m_format == ExportFormat::Json) {
        out += '[';
        return;
    }
    for (const ExportField& field : m_fields) {
        out += field.name;
        out += &field == &m_fields.back() ? "\r\n" : ",";
    }
}

void RowExport::append(const RowList& rows, std::size_t row, std::string& out) {
    if (m_format == ExportFormat::Csv) {
        appendCsv(rows, row, out);
        return;
    }
    out += std::exchange(m_isFirst, false) ? "\n" : ",\n";
    appendJson(rows, row, out);
}

void RowExport::end(std::string& out) const {
    if (m_format == ExportFormat::Json) {
        out += m_isFirst ? "]\n" : "\n]\n";
    }
}

void RowExport::appendCsv(const RowList& rows, std::size_t row, std::string& out) const {
    for (const ExportField& field : m_fields) {
        QString text = rows.text(row, field.key).value_or(QString());
        if (field.key == RowKey::ExactPaths) {
            text.replace(QChar(u'\0'), QChar(u'\n'));
        }
        appendCell(std::move(text), out);
        out += &field == &m_fields.back() ? "\r\n" : ",";
    }
}

void RowExport::appendJson(const RowList& rows, std::size_t row, std::string& out) const {
    char before = '{';
    for (const ExportField& field : m_fields) {
        out += std::exchange(before, ',');
        appendQuoted(out, field.name);
        out += ':';
        const std::optional<QString> text = rows.text(row, field.key);
        if (!text) {
            out += "null";
        } else if (field.key == RowKey::ExactPaths) {
            appendList(*text, out);
        } else {
            appendText(*text, out);
        }
    }
    out += '}';
}

} // namespace korvale

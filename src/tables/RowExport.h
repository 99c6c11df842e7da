#pragma once

#include "tables/RowList.h"
#include "tables/TableDescription.h"

#include <cstdint>
#include <span>
#include <string>

namespace korvale {

enum class ExportFormat : std::uint8_t { Csv, Json };

/// Rows as text in UTF-8, one after the other, for programs to read: texts as they are, names that
/// no language changes. Any thread.
///
/// CSV is RFC 4180's, with a header line. What a row lacks is empty, several paths stand in one
/// cell, one a line. Spreadsheets take some texts for formulas: those get an apostrophe in front,
/// and whatever a spreadsheet of any country may part stands in quotes. A NUL is U+FFFD.
/// JSON is a list of one object a row, each on a line of its own; what a row lacks is null, paths
/// are a list.
class RowExport {
public:
    /// `fields` outlive the object.
    RowExport(std::span<const ExportField> fields, ExportFormat format)
        : m_fields(fields), m_format(format) {}

    /// What stands before the first row.
    void begin(std::string& out) const;
    /// The row at `row` of `rows`.
    void append(const RowList& rows, std::size_t row, std::string& out);
    /// What stands behind the last row.
    void end(std::string& out) const;

private:
    void appendCsv(const RowList& rows, std::size_t row, std::string& out) const;
    void appendJson(const RowList& rows, std::size_t row, std::string& out) const;

    std::span<const ExportField> m_fields;
    ExportFormat m_format;
    bool m_isFirst = true;
};

} // namespace korvale

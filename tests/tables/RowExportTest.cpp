#include "tables/RowExport.h"

#include "fakes/RecordingRowBatch.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

constexpr ExportField fields[] = {
    {"file", RowKey::File}, {"score", RowKey::Score}, {"paths", RowKey::ExactPaths}};

std::string exported(const std::vector<FakeRow>& rows, ExportFormat format) {
    const RowList list(listedRows(rows));
    RowExport text(fields, format);
    std::string out;
    text.begin(out);
    for (std::size_t row = 0; row < list.size(); ++row) {
        text.append(list, row, out);
    }
    text.end(out);
    return out;
}

FakeRow threat(const QString& file, const QString& paths = {}) {
    return {{RowKey::File, file}, {RowKey::Score, u"7"_s}, {RowKey::ExactPaths, paths}};
}

/// What stands in the CSV for that text.
std::string cell(const QString& text) {
    const std::string out = exported({threat(text)}, ExportFormat::Csv);
    const std::string start = "file,score,paths\r\n";
    const std::string end = ",7,\r\n";
    EXPECT_TRUE(out.starts_with(start) && out.ends_with(end)) << out;
    return out.substr(start.size(), out.size() - start.size() - end.size());
}

QJsonArray read(const std::string& json) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << json;
    return document.array();
}

TEST(RowExport, ACsvHasAHeaderLineAndALineForEachRow) {
    EXPECT_EQ(exported({}, ExportFormat::Csv), "file,score,paths\r\n");
    EXPECT_EQ(exported({threat(u"a.exe"_s, u"/x/a.exe"_s), {}}, ExportFormat::Csv),
              "file,score,paths\r\na.exe,7,/x/a.exe\r\n,,\r\n")
        << "what a row lacks is empty";
}

TEST(RowExport, WhatPartsCellsOrLinesStandsInQuotes) {
    EXPECT_EQ(cell(u"plain name.exe"_s), "plain name.exe");
    EXPECT_EQ(cell(u"a,b"_s), "\"a,b\"");
    EXPECT_EQ(cell(u"a;b"_s), "\"a;b\"") << "parts cells in some countries";
    EXPECT_EQ(cell(u"say \"hi\""_s), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(cell(u"two\nlines"_s), "\"two\nlines\"") << "line feeds are kept";
    EXPECT_EQ(cell(u"a\r\nb"_s), "\"a\r\nb\"");
    EXPECT_EQ(cell(u"Größe 請求書 😀"_s), "Größe 請求書 😀");
}

TEST(RowExport, WhatASpreadsheetTakesForAFormulaIsHarmless) {
    for (const char* start : {"=", "+", "-", "@", "＝", "＋", "－", "＠"}) {
        const std::string text = std::string(start) + "cmd|' /C calc'!A0";
        EXPECT_EQ(cell(QString::fromStdString(text)), "'" + text);
    }
    EXPECT_EQ(cell(u"\t=1"_s), "\"'\t=1\"");
    EXPECT_EQ(cell(u"\r=1"_s), "\"'\r=1\"");
    EXPECT_EQ(cell(u"\n=1"_s), "\"'\n=1\"");
    EXPECT_EQ(cell(u"=\"x\",1"_s), "\"'=\"\"x\"\",1\"");
    EXPECT_EQ(cell(u"a;=1+1"_s), "\"a;=1+1\"") << "no cell of its own wherever it is read";
    EXPECT_EQ(cell(u"a=b"_s), "a=b");
    EXPECT_EQ(cell(QString(QChar(0)) + u"x"_s), "\uFFFDx") << "readers of CSV stop at a NUL";
}

TEST(RowExport, SeveralPathsAreLinesOfOneCellAndAListInJson) {
    const QString paths = u"/a/b"_s + QChar(u'\0') + u"/c\nd"_s;
    EXPECT_EQ(exported({threat(u"b"_s, paths)}, ExportFormat::Csv),
              "file,score,paths\r\nb,7,\"/a/b\n/c\nd\"\r\n");
    const QJsonObject row =
        read(exported({threat(u"b"_s, paths)}, ExportFormat::Json))[0].toObject();
    EXPECT_EQ(row[u"paths"_s].toArray(), (QJsonArray{u"/a/b"_s, u"/c\nd"_s}));
}

TEST(RowExport, JsonIsOneObjectARowEachOnALine) {
    EXPECT_EQ(exported({}, ExportFormat::Json), "[]\n");
    const std::string out =
        exported({threat(u"=a \"q\"\\\n\u0001é😀"_s, u"/x"_s), {}}, ExportFormat::Json);
    EXPECT_EQ(out, "[\n{\"file\":\"=a \\\"q\\\"\\\\\\n\\u0001é😀\",\"score\":\"7\","
                   "\"paths\":[\"/x\"]},\n{\"file\":null,\"score\":null,\"paths\":null}\n]\n");
    EXPECT_EQ(read(out).size(), 2);
    EXPECT_EQ(read(out)[0].toObject()[u"file"_s].toString(), u"=a \"q\"\\\n\u0001é😀"_s);
}

} // namespace
} // namespace korvale

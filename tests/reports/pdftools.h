#pragma once

#include <QString>

namespace tv::test {

// The text of a PDF as `pdftotext -layout` reads it (empty when the tool fails).
QString pdfText(const QString& pdfPath);
// Number of pages (pdfinfo), -1 when unreadable.
int pdfPages(const QString& pdfPath);
// `pdffonts` output.
QString pdfFonts(const QString& pdfPath);
// Output of a command run to its end (stdout).
QString runTool(const QString& program, const QStringList& arguments, int* exitCode = nullptr);

} // namespace tv::test

#include <ostream>

// Readable QStrings in gtest failure messages.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

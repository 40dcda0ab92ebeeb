#include "pdftools.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStringList>

namespace tv::test {

QString runTool(const QString& program, const QStringList& arguments, int* exitCode)
{
    QProcess p;
    p.start(program, arguments);
    if (!p.waitForFinished(60000)) {
        if (exitCode)
            *exitCode = -1;
        return {};
    }
    if (exitCode)
        *exitCode = p.exitCode();
    return QString::fromUtf8(p.readAllStandardOutput());
}

QString pdfText(const QString& pdfPath)
{
    // The fi/fl ligatures of the font come back as single characters, and the
    // no-break spaces that keep "95 m²" together as themselves.
    return runTool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdfPath, QStringLiteral("-")})
        .replace(QChar(0xFB01), QLatin1String("fi"))
        .replace(QChar(0xFB02), QLatin1String("fl"))
        .replace(QChar(0x00A0), QLatin1Char(' '));
}

int pdfPages(const QString& pdfPath)
{
    const QString info = runTool(QStringLiteral("pdfinfo"), {pdfPath});
    const auto m = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(info);
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QString pdfFonts(const QString& pdfPath)
{
    return runTool(QStringLiteral("pdffonts"), {pdfPath});
}

} // namespace tv::test

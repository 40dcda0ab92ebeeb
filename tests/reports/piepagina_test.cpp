// The page furniture of a printed report: a long agency line in the footer
// (or in the running header) gives way to the page number (or the title)
// instead of being printed over it, both in the layout and in the PDF.
#include "dm.h"
#include "documentrenderer.h"
#include "pdftools.h"
#include "report.h"

#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

using namespace tv::reports;

namespace {

// An agency that writes everything it has in its footer.
const QString kPieLargo = QStringLiteral(
    "Inmobiliaria Costa del Sol de Benalmádena y Torremolinos, Sociedad Limitada Unipersonal · "
    "Avenida de Antonio Machado, 123, local 4, Edificio Las Palmeras · 29630 Benalmádena (Málaga) · "
    "Tel. 952 123 456 · Móvil 600 123 456 · info@inmobiliariacostadelsoldebenalmadena.es · "
    "Horario de lunes a viernes de 9:30 a 14:00 y de 17:00 a 20:30, sábados de 10:00 a 13:30");

struct Word {
    QString text;
    QRectF box;
};

QString unescape(QString s)
{
    return s.replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&apos;"), QLatin1String("'"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

// Each page's words with their boxes (points, top-left origin), as
// `pdftotext -bbox` reads them.
QList<QList<Word>> pdfWords(const QString& pdf)
{
    const QString out =
        tv::test::runTool(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
    static const QRegularExpression word(QStringLiteral(
        "<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">(.*?)</word>"));
    QList<QList<Word>> pages;
    for (const QString& page : out.split(QStringLiteral("<page "), Qt::SkipEmptyParts).mid(1)) {
        QList<Word> words;
        auto it = word.globalMatch(page);
        while (it.hasNext()) {
            const auto m = it.next();
            words.append({unescape(m.captured(5)),
                          QRectF(QPointF(m.captured(1).toDouble(), m.captured(2).toDouble()),
                                 QPointF(m.captured(3).toDouble(), m.captured(4).toDouble()))});
        }
        pages.append(words);
    }
    return pages;
}

// Index of the first of `sequence`'s words in `words`, -1 when absent.
qsizetype findSequence(const QList<Word>& words, const QStringList& sequence)
{
    for (qsizetype i = 0; i + sequence.size() <= words.size(); ++i) {
        bool all = true;
        for (qsizetype k = 0; k < sequence.size() && all; ++k)
            all = words.at(i + k).text == sequence.at(k);
        if (all)
            return i;
    }
    return -1;
}

QRectF unite(const QList<Word>& words, qsizetype from, qsizetype count)
{
    QRectF r;
    for (qsizetype k = from; k < from + count; ++k)
        r = r.united(words.at(k).box);
    return r;
}

// Strictly overlapping boxes; touching edges do not count.
bool overlaps(const QRectF& a, const QRectF& b)
{
    return a.left() < b.right() - 0.01 && b.left() < a.right() - 0.01 && a.top() < b.bottom() - 0.01 &&
           b.top() < a.bottom() - 0.01;
}

class PiePagina : public ::testing::Test {
protected:
    void SetUp() override
    {
        tv::dm = nullptr;
        ASSERT_TRUE(mDir.isValid());
    }

    // A one-page (or, with `filas`, longer) report whose footer is the agency's.
    QString pdf(const QString& pie, int filas = 0, const QString& cabecera = QStringLiteral("Agencia"))
    {
        const QString path = mDir.filePath(QStringLiteral("in_pie.html"));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("<html><head><title>Listado de inmuebles en cartera</title>"
                "<meta name=\"pie\" content=\"{{empresa.pie}}\"></head><body><h1>Listado</h1>"
                "{{#filas}}<p>Fila {{.}}</p>{{/filas}}</body></html>");
        f.close();
        QStringList numeros;
        for (int i = 1; i <= filas; ++i)
            numeros.append(QString::number(i));
        const QVariantMap data{{"filas", numeros}, {"empresa", QVariantMap{{"nombre", cabecera}, {"pie", pie}}}};
        const QString out = mDir.filePath(QStringLiteral("pie.pdf"));
        exportPdf(path, data, out);
        return out;
    }

    QTemporaryDir mDir;
};

} // namespace

TEST_F(PiePagina, ALongAgencyLineLeavesThePageNumberWholeAndApart)
{
    const QString file = pdf(kPieLargo);
    ASSERT_EQ(tv::test::pdfPages(file), 1);
    EXPECT_TRUE(tv::test::pdfText(file).contains(QStringLiteral("Página 1 de 1")));

    const QList<QList<Word>> pages = pdfWords(file);
    ASSERT_EQ(pages.size(), 1);
    const QList<Word>& words = pages.first();
    const qsizetype at = findSequence(words, {"Página", "1", "de", "1"});
    ASSERT_GE(at, 0) << "no \"Página 1 de 1\" among the words";
    const QRectF number = unite(words, at, 4);
    // One line, at the right margin (16 mm of an A4 page of 595 pt), at the foot.
    EXPECT_LT(number.height(), 12.0);
    EXPECT_NEAR(number.right(), 595.3 - 16 * 72 / 25.4, 3.0);
    EXPECT_GT(number.top(), 842.0 - 12.5 * 72 / 25.4);

    QList<Word> footer;
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (i >= at && i < at + 4)
            continue;
        EXPECT_FALSE(overlaps(words.at(i).box, number))
            << "\"" << words.at(i).text.toStdString() << "\" is printed over the page number";
        if (words.at(i).box.top() > 842.0 - 12.5 * 72 / 25.4)
            footer.append(words.at(i));
    }
    // The agency line is there from its start, on two lines under the rule,
    // inside the paper, and cut with an ellipsis where it no longer fits.
    ASSERT_GE(footer.size(), 20);
    EXPECT_EQ(footer.first().text, "Inmobiliaria");
    QList<double> lineTops;
    for (const Word& w : footer) {
        EXPECT_LT(w.box.bottom(), 842.0 - 5 * 72 / 25.4) << w.text.toStdString();
        EXPECT_LT(w.box.right(), number.left()) << w.text.toStdString();
        bool known = false;
        for (double t : lineTops)
            known = known || qAbs(t - w.box.top()) < 2;
        if (!known)
            lineTops.append(w.box.top());
    }
    EXPECT_EQ(lineTops.size(), 2);
    EXPECT_TRUE(footer.last().text.endsWith(QChar(0x2026))) << footer.last().text.toStdString();
}

TEST_F(PiePagina, AShortAgencyLineStaysWholeOnTheLineOfThePageNumber)
{
    const QString corto = QStringLiteral("Agencia Sol · Tel. 952 000 000");
    const QList<QList<Word>> pages = pdfWords(pdf(corto));
    ASSERT_EQ(pages.size(), 1);
    const QList<Word>& words = pages.first();
    const qsizetype at = findSequence(words, {"Página", "1", "de", "1"});
    const qsizetype start = findSequence(words, corto.split(' '));
    ASSERT_GE(at, 0);
    ASSERT_GE(start, 0) << "the short footer was cut";
    const QRectF text = unite(words, start, corto.split(' ').size());
    const QRectF number = unite(words, at, 4);
    EXPECT_NEAR(text.bottom(), number.bottom(), 1.5);
    EXPECT_NEAR(text.left(), 16 * 72 / 25.4, 3.0);
    EXPECT_LT(text.right(), number.left());
}

TEST_F(PiePagina, EveryPageOfALongReportKeepsItsNumberAndTheTitleKeepsItsPlaceInTheHeader)
{
    const QString agencia = QStringLiteral(
        "Inmobiliaria Costa del Sol de Benalmádena y Torremolinos Sociedad Limitada Unipersonal con oficinas "
        "en Benalmádena Torremolinos Fuengirola Mijas Marbella Estepona y Nerja");
    const QString file = pdf(kPieLargo, 120, agencia);
    const QList<QList<Word>> pages = pdfWords(file);
    ASSERT_GE(pages.size(), 2);
    for (qsizetype p = 0; p < pages.size(); ++p) {
        const QList<Word>& words = pages.at(p);
        const QString n = QString::number(pages.size());
        const qsizetype at = findSequence(words, {"Página", QString::number(p + 1), "de", n});
        ASSERT_GE(at, 0) << "page " << p + 1;
        const QRectF number = unite(words, at, 4);
        for (qsizetype i = 0; i < words.size(); ++i) {
            if (i >= at && i < at + 4)
                continue;
            EXPECT_FALSE(overlaps(words.at(i).box, number))
                << "page " << p + 1 << ": " << words.at(i).text.toStdString();
        }
    }
    // From the second page on the agency heads the page, cut before the title.
    const QList<Word>& second = pages.at(1);
    const qsizetype title = findSequence(second, {"Listado", "de", "inmuebles", "en", "cartera"});
    ASSERT_GE(title, 0);
    const QRectF titleBox = unite(second, title, 5);
    EXPECT_LT(titleBox.top(), 12 * 72 / 25.4);
    const qsizetype head = findSequence(second, {"Inmobiliaria", "Costa", "del", "Sol"});
    ASSERT_GE(head, 0);
    for (qsizetype i = 0; i < second.size(); ++i) {
        if (i >= title && i < title + 5)
            continue;
        EXPECT_FALSE(overlaps(second.at(i).box, titleBox)) << second.at(i).text.toStdString();
    }
}

// The layout alone, on a screen-like device: rectangles that never meet.
struct CasoPie {
    const char* nombre;
    QString pie;
    int lineas;
    bool recortado;
};

void PrintTo(const CasoPie& c, std::ostream* os)
{
    *os << c.nombre;
}

class LayoutPie : public ::testing::TestWithParam<CasoPie> {};

TEST_P(LayoutPie, TextAndPageNumberNeverMeet)
{
    const CasoPie& caso = GetParam();
    QImage device(10, 10, QImage::Format_RGB32);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(10);
    QFont bold = font;
    bold.setBold(true);
    const QFontMetricsF fm(font, &device);
    const QFontMetricsF fmBold(bold, &device);
    const QRectF area(40, 700, 500, 2.2 * fm.lineSpacing());
    const QString number = QStringLiteral("Página 12 de 345");

    const FooterLayout l = layoutFooter(caso.pie, number, fm, fmBold, area, 12);
    ASSERT_EQ(l.lines.size(), caso.lineas);
    ASSERT_EQ(l.lineRects.size(), l.lines.size());
    EXPECT_DOUBLE_EQ(l.pageNumber.right(), area.right());
    EXPECT_GE(l.pageNumber.width(), fmBold.horizontalAdvance(number));
    EXPECT_TRUE(area.contains(l.pageNumber)) << "number outside the footer";
    for (qsizetype i = 0; i < l.lines.size(); ++i) {
        const QRectF& r = l.lineRects.at(i);
        EXPECT_LE(r.right() + 12, l.pageNumber.left() + 1e-9) << i;
        EXPECT_LE(fm.horizontalAdvance(l.lines.at(i)), r.width() + 1e-9) << i;
        EXPECT_TRUE(area.contains(r)) << i;
        if (i > 0) {
            EXPECT_GE(r.top(), l.lineRects.at(i - 1).bottom() - 1e-9) << i;
        }
    }
    if (!l.lines.isEmpty()) {
        // The page number sits on the last line's baseline.
        EXPECT_NEAR(l.pageNumber.top() + fmBold.ascent(), l.lineRects.last().top() + fm.ascent(), 1e-6);
        EXPECT_EQ(l.lines.last().endsWith(QChar(0x2026)), caso.recortado);
        // Nothing of the text is lost or reordered before the cut.
        QString joined = l.lines.join(' ');
        if (caso.recortado)
            joined.chop(1);
        EXPECT_TRUE(caso.pie.simplified().startsWith(joined.trimmed())) << joined.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pies, LayoutPie,
    ::testing::Values(CasoPie{"vacio", QString(), 0, false},
                      CasoPie{"corto", QStringLiteral("Agencia Sol · Tel. 952 000 000"), 1, false},
                      CasoPie{"dos_lineas", kPieLargo.left(100), 2, false},
                      CasoPie{"largo", kPieLargo, 2, true},
                      CasoPie{"una_palabra_enorme", QString(400, QLatin1Char('x')), 1, true}),
    [](const ::testing::TestParamInfo<CasoPie>& caso) { return std::string(caso.param.nombre); });

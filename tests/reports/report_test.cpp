#include "documentrenderer.h"
#include "dm.h"
#include "pdftools.h"
#include "report.h"

#include <QDir>
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPrinter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tv::reports;

namespace {

// Report tests on their own templates, without a database.
class ReportService : public ::testing::Test {
protected:
    void SetUp() override
    {
        // No data module: the agency comes from the data given.
        tv::dm = nullptr;
        ASSERT_TRUE(mDir.isValid());
    }

    QString write(const QString& name, const QString& text)
    {
        const QString path = mDir.filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text.toUtf8());
        return path;
    }

    QTemporaryDir mDir;
};

QString messageOf(const std::function<void()>& f)
{
    try {
        f();
    } catch (const ReportError& e) {
        return e.message();
    }
    return {};
}

} // namespace

TEST_F(ReportService, TemplatesLiveInTheApplicationFolder)
{
    // ctest points TEJAVISTA_APP_DIR at the source tree.
    const QString app = applicationFolder();
    EXPECT_TRUE(QFileInfo::exists(app + "/informes/in_ficha_piso.html")) << app.toStdString();
    EXPECT_EQ(templatePath("in_ofertas"), app + "/informes/in_ofertas.html");
    EXPECT_EQ(templatePath("informes\\in_ofertas"), app + "/informes/in_ofertas.html");
    EXPECT_EQ(templatePath("in_ofertas.html"), app + "/informes/in_ofertas.html");
    EXPECT_EQ(templatePath("/tmp/mia.html"), "/tmp/mia.html");

    const QByteArray saved = qgetenv("TEJAVISTA_APP_DIR");
    qputenv("TEJAVISTA_APP_DIR", mDir.path().toUtf8());
    EXPECT_EQ(applicationFolder(), mDir.path());
    EXPECT_EQ(templatePath("in_cliente"), mDir.path() + "/informes/in_cliente.html");
    qputenv("TEJAVISTA_APP_DIR", saved);
}

TEST_F(ReportService, AMissingTemplateIsNamedInTheMessage)
{
    const QString missing = mDir.filePath("in_no_existe.html");
    EXPECT_EQ(messageOf([&] { renderHtml(missing, {}); }),
              "No se encuentra la plantilla del informe: " + missing);
    EXPECT_EQ(messageOf([&] { exportPdf(missing, {}, mDir.filePath("x.pdf")); }),
              "No se encuentra la plantilla del informe: " + missing);
    EXPECT_FALSE(QFileInfo::exists(mDir.filePath("x.pdf")));
    const QString fromApp = messageOf([] { renderHtml("in_plantilla_que_no_existe", {}); });
    EXPECT_EQ(fromApp, "No se encuentra la plantilla del informe: " + applicationFolder() +
                           "/informes/in_plantilla_que_no_existe.html");
}

TEST_F(ReportService, ABrokenTemplateIsNamedWithTheParserMessage)
{
    const QString path = write("in_roto.html", "<html><body>{{#filas}}<p>{{c}}</p></body></html>");
    const QString m = messageOf([&] { renderHtml(path, {}); });
    EXPECT_TRUE(m.startsWith("La plantilla del informe " + path + " tiene un error: ")) << m.toStdString();
    EXPECT_TRUE(m.contains("filas")) << m.toStdString();

    const QString empty = write("in_vacio.html", "  \n");
    EXPECT_EQ(messageOf([&] { renderHtml(empty, {}); }), "La plantilla del informe está vacía: " + empty);

    const QString partial = write("in_parte.html", "<html>{{> _no_esta}}</html>");
    EXPECT_EQ(messageOf([&] { renderHtml(partial, {}); }),
              "No se encuentra la plantilla del informe: " + mDir.filePath("_no_esta.html"));
}

TEST_F(ReportService, AnEditedTemplateShowsAtTheNextCall)
{
    const QString path = write("in_editable.html", "<p>Versión 1 de {{empresa.nombre}}</p>");
    const QVariantMap data{{"empresa", QVariantMap{{"nombre", "Agencia"}}}};
    EXPECT_TRUE(renderHtml(path, data).contains("Versión 1 de Agencia"));
    write("in_editable.html", "<p>Versión 2 de {{empresa.nombre}}</p>");
    EXPECT_TRUE(renderHtml(path, data).contains("Versión 2 de Agencia"));
}

TEST_F(ReportService, PdfHasPageNumbersRunningHeaderAndEmbeddedFonts)
{
    QString rows;
    const QString path = write("in_largo.html",
                               "<html><head><title>Listado largo</title>"
                               "<meta name=\"pie\" content=\"Número de filas: {{n}}\"></head><body>"
                               "<h1>Listado largo</h1><table width=\"100%\"><thead><tr><th>Fila</th></tr></thead>"
                               "{{#filas}}<tr><td>Fila número {{.}}</td></tr>{{/filas}}</table></body></html>");
    QStringList filas;
    for (int i = 1; i <= 150; ++i)
        filas.append(QString::number(i));
    const QVariantMap data{{"filas", filas}, {"n", 150}, {"empresa", QVariantMap{{"nombre", "Agencia Sol"}}}};
    const QString pdf = mDir.filePath("largo.pdf");
    exportPdf(path, data, pdf);

    const int pages = tv::test::pdfPages(pdf);
    ASSERT_GE(pages, 2);
    const QString text = tv::test::pdfText(pdf);
    const QStringList perPage = text.split(QChar('\f'), Qt::SkipEmptyParts);
    ASSERT_GE(perPage.size(), pages);
    for (int p = 1; p <= pages; ++p) {
        EXPECT_TRUE(perPage.at(p - 1).contains(QString("Página %1 de %2").arg(p).arg(pages))) << p;
        EXPECT_TRUE(perPage.at(p - 1).contains("Número de filas: 150")) << p;
    }
    // From the second page on, the agency and the title head the page.
    EXPECT_FALSE(perPage.at(0).contains("Agencia Sol"));
    EXPECT_TRUE(perPage.at(1).contains("Agencia Sol"));
    EXPECT_TRUE(perPage.at(1).contains("Listado largo"));
    EXPECT_TRUE(text.contains("Fila número 1\n") || text.contains("Fila número 1 "));
    EXPECT_TRUE(text.contains("Fila número 150"));

    const QString fonts = tv::test::pdfFonts(pdf);
    EXPECT_TRUE(fonts.contains("DejaVuSans")) << fonts.toStdString();
    for (const QString& line : fonts.split('\n').mid(2, -1)) {
        if (line.trimmed().isEmpty())
            continue;
        EXPECT_TRUE(line.contains(" yes ")) << "font not embedded: " << line.toStdString();
    }
}

TEST_F(ReportService, PdfToAFolderThatDoesNotExistIsRefused)
{
    const QString path = write("in_corto.html", "<p>Hola</p>");
    const QString target = mDir.filePath("no/existe/salida.pdf");
    EXPECT_EQ(messageOf([&] { exportPdf(path, {}, target); }),
              "No existe la carpeta donde guardar el fichero: " + target);
}

TEST_F(ReportService, RendererTakesTitleMetaAndImages)
{
    QImage img(40, 30, QImage::Format_RGB32);
    img.fill(Qt::red);
    QByteArray png;
    {
        QBuffer b(&png);
        b.open(QIODevice::WriteOnly);
        img.save(&b, "PNG");
    }
    const QString uri = "data:image/png;base64," + QString::fromLatin1(png.toBase64());
    const QString html = "<html><head><title>Mi &amp; título</title>"
                         "<meta name=\"cabecera\" content=\"Cabecera propia\">"
                         "<meta name=\"orientacion\" content=\"horizontal\"></head>"
                         "<body><img src=\"" + uri + "\" width=\"40\"><img src=\"" + uri + "\"></body></html>";
    DocumentRenderer r(html);
    r.setDefaults("Agencia", "Pie por defecto");
    EXPECT_EQ(r.title(), "Mi & título");
    EXPECT_EQ(r.headerText(), "Cabecera propia");
    EXPECT_EQ(r.footerText(), "Pie por defecto");
    EXPECT_TRUE(r.landscape());
    EXPECT_EQ(r.imageCount(), 2);

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(mDir.filePath("r.pdf"));
    r.preparePrinter(printer);
    EXPECT_EQ(printer.pageLayout().pageSize().id(), QPageSize::A4);
    EXPECT_EQ(r.print(printer), 1);
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(tv::test::pdfPages(mDir.filePath("r.pdf")), 1);
}

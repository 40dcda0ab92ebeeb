#include "report.h"

#include "documentrenderer.h"
#include "dm.h"
#include "reportformat.h"
#include "templateengine.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace tv::reports {

namespace {

QString joinNonEmpty(const QStringList& parts, const QString& sep)
{
    QStringList kept;
    for (const QString& p : parts)
        if (!p.trimmed().isEmpty())
            kept.append(p.trimmed());
    return kept.join(sep);
}

// The data as the template sees it: the agency under "empresa" (from the
// process's data module when the caller gave none) and today's date.
QVariantMap completeData(const QVariantMap& data)
{
    QVariantMap full = data;
    if (!full.contains(QStringLiteral("empresa")) && tv::dm && tv::dm->datos.isOpen())
        full.insert(QStringLiteral("empresa"), agencyData(*tv::dm));
    if (!full.contains(QStringLiteral("hoy")))
        full.insert(QStringLiteral("hoy"), QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy")));
    return full;
}

DocumentRenderer makeRenderer(const QString& templateName, const QVariantMap& data)
{
    const QVariantMap full = completeData(data);
    DocumentRenderer renderer(renderHtml(templateName, full), QFileInfo(templatePath(templateName)).absolutePath());
    const QVariantMap empresa = full.value(QStringLiteral("empresa")).toMap();
    renderer.setDefaults(empresa.value(QStringLiteral("nombre")).toString(),
                         empresa.value(QStringLiteral("pie")).toString());
    return renderer;
}

} // namespace

QString applicationFolder()
{
    const QString fromEnv = qEnvironmentVariable("TEJAVISTA_APP_DIR");
    if (!fromEnv.isEmpty())
        return QDir(fromEnv).absolutePath();
    const QString installed = QStringLiteral("/usr/share/tejavista");
    if (QFileInfo(installed + QStringLiteral("/informes")).isDir())
        return installed;
#ifdef TEJAVISTA_SOURCE_DIR
    return QStringLiteral(TEJAVISTA_SOURCE_DIR);
#else
    return QDir::currentPath();
#endif
}

QString templatePath(const QString& name)
{
    // Accepts "in_ficha_piso", "in_ficha_piso.html", "informes\\in_ficha_piso"
    // and a full path to a template file.
    QString n = name.trimmed();
    n.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (QFileInfo(n).isAbsolute())
        return n;
    if (n.startsWith(QLatin1String("informes/"), Qt::CaseInsensitive))
        n = n.mid(9);
    if (!n.endsWith(QLatin1String(".html"), Qt::CaseInsensitive))
        n += QStringLiteral(".html");
    return applicationFolder() + QStringLiteral("/informes/") + n;
}

QString renderHtml(const QString& templateName, const QVariantMap& data)
{
    const QString path = templatePath(templateName);
    QFile file(path);
    if (!file.exists())
        throw ReportError(QStringLiteral("No se encuentra la plantilla del informe: %1").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw ReportError(QStringLiteral("No se puede leer la plantilla del informe: %1 (%2)")
                              .arg(path, file.errorString()));
    const QString text = QString::fromUtf8(file.readAll());
    if (text.trimmed().isEmpty())
        throw ReportError(QStringLiteral("La plantilla del informe está vacía: %1").arg(path));
    const QString folder = QFileInfo(path).absolutePath();
    auto partial = [&folder](const QString& name) {
        const QString partPath = folder + QLatin1Char('/') + name + QStringLiteral(".html");
        QFile part(partPath);
        if (!part.open(QIODevice::ReadOnly))
            throw ReportError(QStringLiteral("No se encuentra la plantilla del informe: %1").arg(partPath));
        return QString::fromUtf8(part.readAll());
    };
    QString html;
    QString error;
    if (!renderTemplateText(text, completeData(data), &html, &error, partial))
        throw ReportError(QStringLiteral("La plantilla del informe %1 tiene un error: %2").arg(path, error));
    return html;
}

int printTo(const QString& templateName, const QVariantMap& data, QPrinter& printer)
{
    const DocumentRenderer renderer = makeRenderer(templateName, data);
    const int pages = renderer.print(printer);
    if (pages < 0) {
        const QString target = printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
        throw ReportError(QStringLiteral("No se ha podido imprimir el informe en %1.").arg(target));
    }
    return pages;
}

void exportPdf(const QString& templateName, const QVariantMap& data, const QString& pdfPath)
{
    const DocumentRenderer renderer = makeRenderer(templateName, data);
    const QFileInfo info(pdfPath);
    if (!info.absoluteDir().exists())
        throw ReportError(QStringLiteral("No existe la carpeta donde guardar el fichero: %1").arg(pdfPath));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdfPath);
    renderer.preparePrinter(printer);
    if (renderer.print(printer) < 0 || !QFileInfo::exists(pdfPath))
        throw ReportError(QStringLiteral("No se ha podido escribir el fichero %1").arg(pdfPath));
}

void preview(const QString& templateName, const QVariantMap& data, QWidget* parent)
{
    // The template is read and filled before the window opens, so its
    // errors reach the caller instead of a blank preview.
    const DocumentRenderer renderer = makeRenderer(templateName, data);
    QPrinter printer(QPrinter::HighResolution);
    renderer.preparePrinter(printer);
    QPrintPreviewDialog dialog(&printer, parent);
    dialog.setWindowTitle(renderer.title().isEmpty() ? QStringLiteral("Vista previa")
                                                     : QStringLiteral("Vista previa: ") + renderer.title());
    dialog.resize(900, 1000);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&renderer](QPrinter* p) { renderer.print(*p); });
    dialog.exec();
}

bool print(const QString& templateName, const QVariantMap& data, QWidget* parent)
{
    const DocumentRenderer renderer = makeRenderer(templateName, data);
    QPrinter printer(QPrinter::HighResolution);
    renderer.preparePrinter(printer);
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Imprimir"));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    if (renderer.print(printer) < 0)
        throw ReportError(QStringLiteral("No se ha podido imprimir en %1.").arg(printer.printerName()));
    return true;
}

QVariantMap agencyData(Tdm& data)
{
    QVariantMap e;
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT FIRST 1 * FROM EMPRESA ORDER BY CODIGO"));
    q.open();
    if (q.eof())
        return e;
    auto text = [&q](const char* column) { return texto(q.fieldByName(QLatin1String(column)).value()); };
    e.insert(QStringLiteral("nombre"), text("NOMBRE"));
    e.insert(QStringLiteral("direccion"), text("DIRECCION"));
    e.insert(QStringLiteral("cp"), text("CODPOSTAL"));
    e.insert(QStringLiteral("poblacion"), text("MUNICIPIO"));
    e.insert(QStringLiteral("provincia"), text("PROVINCIA"));
    e.insert(QStringLiteral("pais"), text("PAIS"));
    e.insert(QStringLiteral("telefono"), text("TELEFONO"));
    e.insert(QStringLiteral("fax"), text("FAX"));
    e.insert(QStringLiteral("email"), text("MAIL"));
    e.insert(QStringLiteral("cif"), text("CIF"));
    const Field logo = q.fieldByName(QStringLiteral("LOGO"));
    e.insert(QStringLiteral("logo"), logo.isNull() ? QString() : logoDataUri(logo.asBytes(), 600, 240));

    QString localidad = joinNonEmpty({text("CODPOSTAL"), text("MUNICIPIO")}, QStringLiteral(" "));
    const QString provincia = text("PROVINCIA");
    if (!provincia.isEmpty())
        localidad = joinNonEmpty({localidad, QStringLiteral("(%1)").arg(provincia)}, QStringLiteral(" "));
    e.insert(QStringLiteral("localidad"), localidad);
    const QString telefono = text("TELEFONO").isEmpty() ? QString() : QStringLiteral("Tel. ") + text("TELEFONO");
    e.insert(QStringLiteral("contacto"), joinNonEmpty({telefono, text("MAIL")}, QStringLiteral(" · ")));
    e.insert(QStringLiteral("pie"), joinNonEmpty({text("NOMBRE"), text("DIRECCION"), localidad, telefono, text("MAIL")},
                                                 QStringLiteral(" · ")));
    q.close();
    return e;
}

} // namespace tv::reports

#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <stdexcept>

class QAbstractItemModel;
class QPrinter;
class QUrl;
class QWidget;

namespace tv {
class Tdm;
}

namespace tv::reports {

// A missing or broken template, or an output that cannot be written; the
// message is Spanish and names the file.
class ReportError : public std::runtime_error {
public:
    explicit ReportError(const QString& m) : std::runtime_error(m.toStdString()), mMessage(m) {}
    QString message() const { return mMessage; }

private:
    QString mMessage;
};

// The application folder holding informes/, manual/, fondos/ (the installed
// share folder, TEJAVISTA_APP_DIR, or the source tree when run from a build).
QString applicationFolder();
// Path of a report template: applicationFolder()/informes/<name>.html
QString templatePath(const QString& name);

// A report is a Mustache HTML template in informes/ filled with data (maps,
// lists and plain values); the agency header is added under "empresa" by
// agencyData(). Templates are read at every call, so an edited template
// shows at the next print.
QString renderHtml(const QString& templateName, const QVariantMap& data);
// Writes an A4 PDF (fonts embedded, page numbers).
void exportPdf(const QString& templateName, const QVariantMap& data, const QString& pdfPath);
// Preview window with print button (modal).
void preview(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr);
// Printer dialog, then print; false when the user cancelled.
bool print(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr);
// All four throw ReportError for a missing or broken template or an output
// that cannot be written; a screen shows e.message() through Dialogs.

// Paints a report on a printer already set up (a preview's, a PDF printer),
// keeping its paper size and orientation, and returns the number of pages.
int printTo(const QString& templateName, const QVariantMap& data, QPrinter& printer);

// The agency header from EMPRESA: nombre, direccion, cp, poblacion,
// provincia, telefono, email, logo (a data: URI or empty).
QVariantMap agencyData(Tdm& data);

// A table written to an .xlsx (titles, typed numbers and dates, widths).
// Cells: numbers (int, double) are written as numbers, QDate/QDateTime as
// dates (dd/mm/yyyy, with the time when there is one), bool as Sí/No,
// anything else as text; NULLs stay empty.
struct Sheet {
    QStringList titles;
    QVector<QVector<QVariant>> rows;
    QString name; // worksheet name; "Datos" when empty
};
// Throws ReportError when the file cannot be written.
void writeSpreadsheet(const Sheet& sheet, const QString& xlsxPath);
// Writes to a temporary file and opens it with the desktop's program; on
// failure shows "No se ha podido iniciar, debe tener instalado Microsoft Excel."
void exportToSpreadsheet(const Sheet& sheet, QWidget* parent = nullptr);
// Every column and row of a grid's model, fetched to the end (EditRole values, so
// numbers and dates keep their types; header titles from DisplayRole).
Sheet sheetFromModel(const QAbstractItemModel& model);
// Writes the sheet as a new file in the temporary folder and returns its path.
QString writeTemporarySpreadsheet(const Sheet& sheet);

// The desktop's "open" verb for documents, folders, mailto: and URLs; false
// (after a clear message through Dialogs) when nothing could open it.
bool openWithDesktop(const QString& target, QWidget* parent = nullptr);
// The desktop's calculator.
bool openCalculator(QWidget* parent = nullptr);
// The calculators tried, in order.
QStringList calculatorPrograms();

// How URLs and programs are started: QDesktopServices::openUrl and
// QProcess::startDetached unless replaced (tests record instead of launching).
// An empty function restores the default.
using UrlOpener = std::function<bool(const QUrl&)>;
using ProgramStarter = std::function<bool(const QString& program, const QStringList& arguments)>;
void setUrlOpener(UrlOpener opener);
void setProgramStarter(ProgramStarter starter);

} // namespace tv::reports

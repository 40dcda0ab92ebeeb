#include "reportservices.h"

#include "dberror.h"
#include "dialogs.h"
#include "report.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QFileDialog>

namespace tv::reports {

QString ReportServices::chooseOpenFile(const QString& title, const QString& folder, const QString& filter,
                                       QWidget* parent)
{
    return QFileDialog::getOpenFileName(parent, title, folder, filter);
}

QStringList ReportServices::chooseOpenFiles(const QString& title, const QString& folder, const QString& filter,
                                           QWidget* parent)
{
    return QFileDialog::getOpenFileNames(parent, title, folder, filter);
}

QString ReportServices::chooseSaveFile(const QString& title, const QString& suggested, const QString& filter,
                                       QWidget* parent)
{
    return QFileDialog::getSaveFileName(parent, title, suggested, filter);
}

QString ReportServices::chooseFolder(const QString& title, const QString& folder, QWidget* parent)
{
    return QFileDialog::getExistingDirectory(parent, title, folder);
}

void ReportServices::exportGrid(const QAbstractItemModel& model, const QString& sheetName, QWidget* parent)
{
    Sheet sheet;
    // Fetching every row of a lazy grid reads the database; the user waits.
    QApplication::setOverrideCursor(Qt::WaitCursor);
    try {
        sheet = sheetFromModel(model);
    } catch (const DatabaseError& e) {
        QApplication::restoreOverrideCursor();
        ui::dialogs().error(e.message(), parent);
        return;
    }
    QApplication::restoreOverrideCursor();
    sheet.name = sheetName;
    exportToSpreadsheet(sheet, parent);
}

void ReportServices::preview(const QString& templateName, const QVariantMap& data, QWidget* parent)
{
    try {
        reports::preview(templateName, data, parent);
    } catch (const ReportError& e) {
        ui::dialogs().error(e.message(), parent);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), parent);
    }
}

bool ReportServices::print(const QString& templateName, const QVariantMap& data, QWidget* parent)
{
    try {
        return reports::print(templateName, data, parent);
    } catch (const ReportError& e) {
        ui::dialogs().error(e.message(), parent);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), parent);
    }
    return false;
}

void installReportServices()
{
    static ReportServices services;
    ui::Services::install(&services);
}

} // namespace tv::reports

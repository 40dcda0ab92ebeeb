#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

class QAbstractItemModel;
class QWidget;

namespace tv::ui {

// What a screen asks of the desktop besides messages: choosing files and
// folders, printing and previewing reports, exporting a grid to a
// spreadsheet. The program installs the report service's implementation at
// start-up; tests install a scripted one, so no screen opens a real file
// dialog or printer under test.
class Services {
public:
    virtual ~Services() = default;
    // Empty when the user cancelled.
    virtual QString chooseOpenFile(const QString& title, const QString& folder, const QString& filter,
                                   QWidget* parent = nullptr) = 0;
    // Several files at once; empty when the user cancelled.
    virtual QStringList chooseOpenFiles(const QString& title, const QString& folder, const QString& filter,
                                        QWidget* parent = nullptr)
    {
        const QString one = chooseOpenFile(title, folder, filter, parent);
        return one.isEmpty() ? QStringList() : QStringList{one};
    }
    virtual QString chooseSaveFile(const QString& title, const QString& suggested, const QString& filter,
                                   QWidget* parent = nullptr) = 0;
    virtual QString chooseFolder(const QString& title, const QString& folder, QWidget* parent = nullptr) = 0;
    // Every row and column of a grid's model to an .xlsx opened with the
    // desktop's program; failures are told through Dialogs.
    virtual void exportGrid(const QAbstractItemModel& model, const QString& sheetName, QWidget* parent = nullptr) = 0;
    // A report template of informes/ filled with data; failures are told through Dialogs.
    virtual void preview(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr) = 0;
    // False when the user cancelled the printer dialog or printing failed.
    virtual bool print(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr) = 0;

    // The service in use (plain file dialogs, no printing, until one is installed).
    static Services& instance();
    // Installs s (not owned); nullptr restores the plain one.
    static void install(Services* s);
};

inline Services& services()
{
    return Services::instance();
}

} // namespace tv::ui

#pragma once

#include "services.h"

namespace tv::reports {

// The desktop services as the program offers them: file dialogs, report
// templates previewed and printed through Qt's print dialogs, and grids
// exported to an .xlsx opened with the desktop's program. Every failure is
// told once, through Dialogs, with the report's own Spanish message.
// Lives on the interface thread.
class ReportServices : public ui::Services {
public:
    QStringList chooseOpenFiles(const QString& title, const QString& folder, const QString& filter,
                                QWidget* parent = nullptr) override;
    QString chooseOpenFile(const QString& title, const QString& folder, const QString& filter,
                           QWidget* parent = nullptr) override;
    QString chooseSaveFile(const QString& title, const QString& suggested, const QString& filter,
                           QWidget* parent = nullptr) override;
    QString chooseFolder(const QString& title, const QString& folder, QWidget* parent = nullptr) override;
    void exportGrid(const QAbstractItemModel& model, const QString& sheetName, QWidget* parent = nullptr) override;
    void preview(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr) override;
    bool print(const QString& templateName, const QVariantMap& data, QWidget* parent = nullptr) override;
};

// Makes ReportServices the program's ui::services(); called once at start-up.
void installReportServices();

} // namespace tv::reports

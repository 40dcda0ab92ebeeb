#include "services.h"

#include "dialogs.h"

#include <QFileDialog>

namespace tv::ui {

namespace {

// What a build without the report library can still do: choose files. The
// program always installs the report service at start-up, so reaching the
// printing methods here means it was not installed; say so instead of
// failing silently.
class PlainServices : public Services {
public:
    QString chooseOpenFile(const QString& title, const QString& folder, const QString& filter,
                           QWidget* parent) override
    {
        return QFileDialog::getOpenFileName(parent, title, folder, filter);
    }
    QStringList chooseOpenFiles(const QString& title, const QString& folder, const QString& filter,
                                QWidget* parent) override
    {
        return QFileDialog::getOpenFileNames(parent, title, folder, filter);
    }
    QString chooseSaveFile(const QString& title, const QString& suggested, const QString& filter,
                           QWidget* parent) override
    {
        return QFileDialog::getSaveFileName(parent, title, suggested, filter);
    }
    QString chooseFolder(const QString& title, const QString& folder, QWidget* parent) override
    {
        return QFileDialog::getExistingDirectory(parent, title, folder);
    }
    void exportGrid(const QAbstractItemModel&, const QString&, QWidget* parent) override
    {
        dialogs().error(QStringLiteral("La exportación a Excel no está disponible: el servicio de informes no "
                                       "está instalado."),
                        parent);
    }
    void preview(const QString&, const QVariantMap&, QWidget* parent) override { notAvailable(parent); }
    bool print(const QString&, const QVariantMap&, QWidget* parent) override
    {
        notAvailable(parent);
        return false;
    }

private:
    static void notAvailable(QWidget* parent)
    {
        dialogs().error(QStringLiteral("La impresión no está disponible: el servicio de informes no está instalado."),
                        parent);
    }
};

Services* gInstalled = nullptr;

} // namespace

Services& Services::instance()
{
    static PlainServices plain;
    return gInstalled ? *gInstalled : plain;
}

void Services::install(Services* s)
{
    gInstalled = s;
}

} // namespace tv::ui

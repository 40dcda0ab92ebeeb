#include "frmdocumentos.h"

#include "dialogs.h"
#include "report.h"
#include "services.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace tv::registro {

TfrmDocumentos::TfrmDocumentos(const QString& carpeta, const QString& titulo, QWidget* parent)
    : QDialog(parent), mCarpeta(carpeta)
{
    setObjectName(QStringLiteral("TfrmDocumentos"));
    setWindowTitle(titulo);
    if (!QDir().mkpath(mCarpeta))
        ui::dialogs().error(QStringLiteral("No se ha podido crear la carpeta %1.").arg(mCarpeta), parent);

    mModelo = new QFileSystemModel(this);
    mModelo->setFilter(QDir::Files | QDir::NoDotAndDotDot);
    mModelo->setRootPath(mCarpeta);
    mLista = new QListView(this);
    mLista->setObjectName(QStringLiteral("documentos"));
    mLista->setModel(mModelo);
    mLista->setRootIndex(mModelo->index(mCarpeta));
    mLista->setViewMode(QListView::ListMode);
    mLista->setUniformItemSizes(true);
    connect(mLista, &QListView::doubleClicked, this, &TfrmDocumentos::abrir);

    auto* v = new QVBoxLayout(this);
    v->addWidget(mLista, 1);
    auto* botones = new QHBoxLayout;
    auto boton = [this, botones](const QString& texto, const QString& nombre, auto slot) {
        auto* b = new QPushButton(texto, this);
        b->setObjectName(nombre);
        connect(b, &QPushButton::clicked, this, slot);
        botones->addWidget(b);
        return b;
    };
    boton(QStringLiteral("Añadir…"), QStringLiteral("btnAnadir"), &TfrmDocumentos::anadir);
    boton(QStringLiteral("Abrir"), QStringLiteral("btnAbrir"), &TfrmDocumentos::abrir);
    boton(QStringLiteral("Abrir la carpeta"), QStringLiteral("btnCarpeta"), &TfrmDocumentos::abrirCarpeta);
    botones->addStretch();
    boton(QStringLiteral("Cerrar"), QStringLiteral("btnCerrar"), &QDialog::accept);
    v->addLayout(botones);
    resize(560, 380);
}

QStringList TfrmDocumentos::archivos() const
{
    return QDir(mCarpeta).entryList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
}

bool TfrmDocumentos::anadir()
{
    const QString origen = ui::services().chooseOpenFile(QStringLiteral("Añadir un documento"), QDir::homePath(),
                                                         QStringLiteral("Todos los archivos (*)"), this);
    if (origen.isEmpty())
        return false;
    const QString destino = QDir(mCarpeta).filePath(QFileInfo(origen).fileName());
    if (QFileInfo(origen).canonicalFilePath() == QFileInfo(destino).canonicalFilePath()) {
        ui::dialogs().information(QStringLiteral("El documento %1 ya está en la carpeta.").arg(QFileInfo(origen).fileName()),
                                  this);
        return false;
    }
    const bool existe = QFileInfo::exists(destino);
    if (existe &&
        !ui::dialogs().confirmation(
            QStringLiteral("Ya existe un documento llamado %1. ¿Desea sustituirlo?").arg(QFileInfo(origen).fileName()),
            this))
        return false;
    // Copied beside it first: the old document goes only once the new one is there.
    const QString temporal = destino + QStringLiteral(".nuevo");
    QFile::remove(temporal);
    if (!QFile::copy(origen, temporal)) {
        QFile::remove(temporal);
        ui::dialogs().error(QStringLiteral("No se ha podido copiar el documento %1.").arg(origen), this);
        return false;
    }
    if (existe && !QFile::remove(destino)) {
        QFile::remove(temporal);
        ui::dialogs().error(QStringLiteral("No se ha podido sustituir el documento %1.").arg(destino), this);
        return false;
    }
    if (!QFile::rename(temporal, destino)) {
        ui::dialogs().error(QStringLiteral("No se ha podido copiar el documento %1.").arg(origen), this);
        return false;
    }
    return true;
}

void TfrmDocumentos::abrir()
{
    const QModelIndex i = mLista->currentIndex();
    if (!i.isValid()) {
        abrirCarpeta();
        return;
    }
    reports::openWithDesktop(mModelo->filePath(i), this);
}

void TfrmDocumentos::abrirCarpeta()
{
    reports::openWithDesktop(mCarpeta, this);
}

} // namespace tv::registro

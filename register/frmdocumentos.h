#pragma once

#include <QDialog>

class QFileSystemModel;
class QListView;

namespace tv::registro {

// The documents attached to a record: the files of its folder under
// ARCHIVOS/, opened with the desktop's program; files are added by copying
// them in. The folder is made when first needed.
class TfrmDocumentos : public QDialog {
    Q_OBJECT
public:
    TfrmDocumentos(const QString& carpeta, const QString& titulo, QWidget* parent = nullptr);

    QString carpeta() const { return mCarpeta; }
    QListView* lista() const { return mLista; }
    // The names of the files there, sorted.
    QStringList archivos() const;

public Q_SLOTS:
    // Copies a file chosen by the user into the folder; false when cancelled or failed.
    bool anadir();
    // Opens the selected file (or the folder when none is selected).
    void abrir();
    void abrirCarpeta();

private:
    QString mCarpeta;
    QFileSystemModel* mModelo;
    QListView* mLista;
};

} // namespace tv::registro

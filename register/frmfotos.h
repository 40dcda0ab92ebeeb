#pragma once

#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QLabel;
class QListWidget;
class QPushButton;

namespace tv {
class Tdm;
}

namespace tv::registro {

class ListaFotos;

// "Fotografías del inmueble <code>": the photographs of one property as
// thumbnails in their order (the first is the main one). Dragging a
// thumbnail reorders; files dropped from the desktop are added; the buttons
// add, make main, rotate, remove and show one large. Every change is stored
// and committed at once (fotos.h); the dialog then shows the database again.
// fotosCambiadas() tells the property screen to read its row again (the
// photo flags changed there). Works on the shared transaction; lives on the
// interface thread.
class TfrmFotos : public QDialog {
    Q_OBJECT
public:
    TfrmFotos(Tdm& datos, const QString& codigoInmueble, QWidget* parent = nullptr);

    // Runs the manager modally over a property; true when its photos changed.
    static bool editar(Tdm& datos, const QString& codigoInmueble, QWidget* parent = nullptr);

    QString codigo() const { return mCodigo; }
    // Some change was stored since the dialog opened.
    bool cambiado() const { return mCambiado; }
    // The photographs' IDs in the order shown.
    QList<int> ids() const;
    // The selected photograph's ID, 0 when none.
    int idSeleccionado() const;
    void seleccionar(int id);
    // Only looking (an agent who may not change the property): no changes.
    void setSoloLectura(bool soloLectura);

    QListWidget* lista() const;
    QLabel* lblEstado() const { return mEstado; }
    QPushButton* btnAnadir() const { return mAnadir; }
    QPushButton* btnPrincipal() const { return mPrincipal; }
    QPushButton* btnGirarIzquierda() const { return mGirarIzquierda; }
    QPushButton* btnGirarDerecha() const { return mGirarDerecha; }
    QPushButton* btnEliminar() const { return mEliminar; }
    QPushButton* btnVer() const { return mVer; }
    QPushButton* btnCerrar() const { return mCerrar; }

    // How this dialog and its viewer run modally: exec() unless replaced
    // (tests drive them without blocking). An empty function restores exec().
    using ModalRunner = std::function<int(QDialog&)>;
    static void setModalRunner(ModalRunner runner);
    static int runModal(QDialog& dialog);

    static const QString kPreguntaEliminar;
    static const QString kFiltroImagenes;

public Q_SLOTS:
    // Reads the photographs again, keeping the selection when it is still there.
    void recargar();
    // "Añadir fotos…": the files the user chooses.
    void anadirFotos();
    // Files chosen or dropped; all or none are added.
    bool anadirArchivos(const QStringList& rutas);
    bool hacerPrincipal();
    bool girarIzquierda();
    bool girarDerecha();
    // Asks first; true when the photograph was removed.
    bool eliminar();
    // A photograph dragged from one place of the list to another.
    bool moverFoto(int desde, int hasta);
    // The selected photograph large, in a viewer.
    void ver();

Q_SIGNALS:
    void fotosCambiadas(const QString& codigoInmueble);

private:
    // Runs one change; a failure is told and the list shows the database again.
    bool cambiar(const std::function<int()>& cambio);
    bool girar(bool derecha);
    void actualizarBotones();
    QString carpetaInicial() const;

    Tdm& mData;
    QString mCodigo;
    bool mCambiado = false;
    bool mSoloLectura = false;
    ListaFotos* mLista = nullptr;
    QLabel* mEstado = nullptr;
    QPushButton* mAnadir = nullptr;
    QPushButton* mPrincipal = nullptr;
    QPushButton* mGirarIzquierda = nullptr;
    QPushButton* mGirarDerecha = nullptr;
    QPushButton* mEliminar = nullptr;
    QPushButton* mVer = nullptr;
    QPushButton* mCerrar = nullptr;
};

} // namespace tv::registro

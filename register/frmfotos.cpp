#include "frmfotos.h"

#include "dialogs.h"
#include "dm.h"
#include "fotoprincipal.h"
#include "fotos.h"
#include "icons.h"
#include "services.h"

#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDrag>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMimeData>
#include <QPixmap>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>
#include <QVBoxLayout>

namespace tv::registro {

namespace {

TfrmFotos::ModalRunner& modalRunner()
{
    static TfrmFotos::ModalRunner runner;
    return runner;
}

// Where the user last chose photographs, for the rest of the session.
QString& ultimaCarpeta()
{
    static QString carpeta;
    return carpeta;
}

QPushButton* boton(const char* icono, const QString& texto, const char* nombre, QWidget* parent)
{
    auto* b = new QPushButton(ui::themeIcon(QLatin1String(icono)), texto, parent);
    b->setObjectName(QLatin1String(nombre));
    b->setAutoDefault(false);
    return b;
}

QStringList archivosLocales(const QMimeData* mime)
{
    QStringList rutas;
    if (!mime || !mime->hasUrls())
        return rutas;
    for (const QUrl& url : mime->urls())
        if (url.isLocalFile())
            rutas.append(url.toLocalFile());
    return rutas;
}

// Waits with the busy cursor while big pictures are read and stored.
class CursorEspera {
public:
    CursorEspera() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CursorEspera() { QApplication::restoreOverrideCursor(); }
    CursorEspera(const CursorEspera&) = delete;
    CursorEspera& operator=(const CursorEspera&) = delete;
};

// One photograph large, with the others of the property a key away.
class VisorFotos : public QDialog {
public:
    VisorFotos(Tdm& datos, const QString& codigo, QList<int> ids, int indice, QWidget* parent)
        : QDialog(parent), mData(datos), mCodigo(codigo), mIds(std::move(ids)), mIndice(indice)
    {
        setObjectName(QStringLiteral("VisorFotos"));
        resize(1000, 760);
        auto* layout = new QVBoxLayout(this);
        mFoto = new FotoPrincipal(this);
        mFoto->setObjectName(QStringLiteral("lblFoto"));
        mFoto->setFrameShape(QFrame::NoFrame);
        layout->addWidget(mFoto, 1);
        auto* fila = new QHBoxLayout;
        mAnterior = boton("go-previous", QStringLiteral("Anterior"), "btnAnterior", this);
        mSiguiente = boton("go-next", QStringLiteral("Siguiente"), "btnSiguiente", this);
        auto* cerrar = boton("window-close", QStringLiteral("Cerrar"), "btnCerrar", this);
        cerrar->setDefault(true);
        fila->addWidget(mAnterior);
        fila->addWidget(mSiguiente);
        fila->addStretch(1);
        fila->addWidget(cerrar);
        layout->addLayout(fila);
        connect(mAnterior, &QPushButton::clicked, this, [this] { mostrar(mIndice - 1); });
        connect(mSiguiente, &QPushButton::clicked, this, [this] { mostrar(mIndice + 1); });
        connect(cerrar, &QPushButton::clicked, this, &QDialog::accept);
        new QShortcut(QKeySequence(Qt::Key_Left), this, [this] { mostrar(mIndice - 1); });
        new QShortcut(QKeySequence(Qt::Key_Right), this, [this] { mostrar(mIndice + 1); });
        mostrar(mIndice);
    }

private:
    void mostrar(int indice)
    {
        if (indice < 0 || indice >= mIds.size())
            return;
        mIndice = indice;
        try {
            mFoto->mostrarImagen(leerFoto(mData, mIds.at(indice)));
        } catch (const DatabaseError& e) {
            mFoto->limpiar();
            ui::dialogs().error(e.message(), this);
        }
        setWindowTitle(QStringLiteral("Fotografía %1 de %2 del inmueble %3")
                           .arg(indice + 1)
                           .arg(mIds.size())
                           .arg(mCodigo));
        mAnterior->setEnabled(indice > 0);
        mSiguiente->setEnabled(indice + 1 < mIds.size());
    }

    Tdm& mData;
    QString mCodigo;
    QList<int> mIds;
    int mIndice;
    FotoPrincipal* mFoto = nullptr;
    QPushButton* mAnterior = nullptr;
    QPushButton* mSiguiente = nullptr;
};

} // namespace

// The thumbnails. A drag inside the list tells which photograph goes where
// and lets the dialog store it; the list itself moves nothing (it is read
// again from the database). Files dropped from outside are handed over.
class ListaFotos : public QListWidget {
public:
    explicit ListaFotos(QWidget* parent) : QListWidget(parent)
    {
        setObjectName(QStringLiteral("lstFotos"));
        setViewMode(QListView::IconMode);
        // Static: the icon view must not place items freely on a drop.
        setMovement(QListView::Static);
        setResizeMode(QListView::Adjust);
        setWrapping(true);
        setUniformItemSizes(true);
        setIconSize(QSize(kLadoMiniatura, kLadoMiniatura));
        setGridSize(QSize(kLadoMiniatura + 24, kLadoMiniatura + 40));
        setSelectionMode(QAbstractItemView::SingleSelection);
        setDragEnabled(true);
        setAcceptDrops(true);
        viewport()->setAcceptDrops(true);
        setDropIndicatorShown(true);
        setDragDropMode(QAbstractItemView::DragDrop);
        setMinimumSize(3 * (kLadoMiniatura + 24) + 30, kLadoMiniatura + 70);
    }

    std::function<void(int desde, int hasta)> alMover;
    std::function<void(const QStringList& rutas)> alSoltarArchivos;
    bool soloLectura = false;

protected:
    void startDrag(Qt::DropActions) override
    {
        QListWidgetItem* item = currentItem();
        if (!item || soloLectura)
            return;
        mArrastrada = row(item);
        auto* drag = new QDrag(this);
        drag->setMimeData(mimeData({item}));
        drag->setPixmap(item->icon().pixmap(iconSize() / 2));
        drag->exec(Qt::MoveAction);
        mArrastrada = -1;
    }

    void dragEnterEvent(QDragEnterEvent* e) override
    {
        if (aceptable(e))
            e->acceptProposedAction();
        else
            e->ignore();
    }

    void dragMoveEvent(QDragMoveEvent* e) override
    {
        if (e->source() == this && mArrastrada >= 0) {
            // The base view draws where the photograph would land.
            QListWidget::dragMoveEvent(e);
            e->setDropAction(Qt::MoveAction);
            e->accept();
        } else if (aceptable(e)) {
            e->acceptProposedAction();
        } else {
            e->ignore();
        }
    }

    void dropEvent(QDropEvent* e) override
    {
        stopAutoScroll();
        setState(NoState);
        viewport()->update();
        if (e->source() == this && mArrastrada >= 0) {
            const QModelIndex destino = indexAt(e->position().toPoint());
            const int hasta = destino.isValid() ? destino.row() : count() - 1;
            // Taken as done: the base class would remove the dragged item.
            e->setDropAction(Qt::CopyAction);
            e->accept();
            if (hasta != mArrastrada && alMover)
                alMover(mArrastrada, hasta);
            return;
        }
        const QStringList rutas = archivosLocales(e->mimeData());
        if (rutas.isEmpty() || soloLectura) {
            e->ignore();
            return;
        }
        e->acceptProposedAction();
        if (alSoltarArchivos)
            alSoltarArchivos(rutas);
    }

private:
    bool aceptable(QDropEvent* e) const
    {
        if (soloLectura)
            return false;
        return (e->source() == this && mArrastrada >= 0) || !archivosLocales(e->mimeData()).isEmpty();
    }

    int mArrastrada = -1;
};

const QString TfrmFotos::kPreguntaEliminar = QStringLiteral("¿Está seguro de eliminar la fotografía seleccionada?");
const QString TfrmFotos::kFiltroImagenes =
    QStringLiteral("Imágenes (*.jpg *.jpeg *.png *.bmp *.gif *.tif *.tiff *.webp);;Todos los archivos (*)");

void TfrmFotos::setModalRunner(ModalRunner runner)
{
    modalRunner() = std::move(runner);
}

int TfrmFotos::runModal(QDialog& dialog)
{
    return modalRunner() ? modalRunner()(dialog) : dialog.exec();
}

bool TfrmFotos::editar(Tdm& datos, const QString& codigoInmueble, QWidget* parent)
{
    TfrmFotos dialogo(datos, codigoInmueble, parent);
    runModal(dialogo);
    return dialogo.cambiado();
}

TfrmFotos::TfrmFotos(Tdm& datos, const QString& codigoInmueble, QWidget* parent)
    : QDialog(parent), mData(datos), mCodigo(codigoInmueble.trimmed())
{
    setObjectName(QStringLiteral("TfrmFotos"));
    setWindowTitle(QStringLiteral("Fotografías del inmueble ") + mCodigo);
    resize(1020, 640);

    mLista = new ListaFotos(this);
    mAnadir = boton("list-add", QStringLiteral("Añadir fotos…"), "btnAnadir", this);
    mPrincipal = boton("go-first", QStringLiteral("Principal"), "btnPrincipal", this);
    mPrincipal->setToolTip(QStringLiteral("Pone la fotografía seleccionada la primera: la que ven los portales"));
    mGirarIzquierda = boton("object-rotate-left", QStringLiteral("Girar a la izquierda"), "btnGirarIzquierda", this);
    mGirarDerecha = boton("object-rotate-right", QStringLiteral("Girar a la derecha"), "btnGirarDerecha", this);
    mEliminar = boton("edit-delete", QStringLiteral("Eliminar"), "btnEliminar", this);
    mVer = boton("zoom-in", QStringLiteral("Ver"), "btnVer", this);
    mCerrar = boton("window-close", QStringLiteral("Cerrar"), "btnCerrar", this);
    mCerrar->setDefault(true);
    mEstado = new QLabel(this);
    mEstado->setObjectName(QStringLiteral("lblEstado"));

    auto* layout = new QVBoxLayout(this);
    auto* centro = new QHBoxLayout;
    centro->addWidget(mLista, 1);
    auto* botones = new QVBoxLayout;
    for (QPushButton* b : {mAnadir, mPrincipal, mGirarIzquierda, mGirarDerecha, mEliminar, mVer})
        botones->addWidget(b);
    botones->addStretch(1);
    botones->addWidget(mCerrar);
    centro->addLayout(botones);
    layout->addLayout(centro, 1);
    layout->addWidget(mEstado);

    connect(mAnadir, &QPushButton::clicked, this, &TfrmFotos::anadirFotos);
    connect(mPrincipal, &QPushButton::clicked, this, &TfrmFotos::hacerPrincipal);
    connect(mGirarIzquierda, &QPushButton::clicked, this, &TfrmFotos::girarIzquierda);
    connect(mGirarDerecha, &QPushButton::clicked, this, &TfrmFotos::girarDerecha);
    connect(mEliminar, &QPushButton::clicked, this, &TfrmFotos::eliminar);
    connect(mVer, &QPushButton::clicked, this, &TfrmFotos::ver);
    connect(mCerrar, &QPushButton::clicked, this, &QDialog::accept);
    connect(mLista, &QListWidget::itemDoubleClicked, this, &TfrmFotos::ver);
    connect(mLista, &QListWidget::currentRowChanged, this, &TfrmFotos::actualizarBotones);
    auto* suprimir = new QShortcut(QKeySequence::Delete, mLista, [this] { eliminar(); });
    suprimir->setContext(Qt::WidgetWithChildrenShortcut);
    mLista->alMover = [this](int desde, int hasta) { moverFoto(desde, hasta); };
    mLista->alSoltarArchivos = [this](const QStringList& rutas) { anadirArchivos(rutas); };

    recargar();
}

QListWidget* TfrmFotos::lista() const
{
    return mLista;
}

QList<int> TfrmFotos::ids() const
{
    QList<int> out;
    for (int i = 0; i < mLista->count(); ++i)
        out.append(mLista->item(i)->data(Qt::UserRole).toInt());
    return out;
}

int TfrmFotos::idSeleccionado() const
{
    const QListWidgetItem* item = mLista->currentItem();
    return item && item->isSelected() ? item->data(Qt::UserRole).toInt() : 0;
}

void TfrmFotos::seleccionar(int id)
{
    const int fila = int(ids().indexOf(id));
    if (fila >= 0)
        mLista->setCurrentRow(fila);
    actualizarBotones();
}

void TfrmFotos::setSoloLectura(bool soloLectura)
{
    mSoloLectura = soloLectura;
    mLista->soloLectura = soloLectura;
    actualizarBotones();
}

void TfrmFotos::recargar()
{
    const int seleccionada = idSeleccionado();
    QList<Foto> fotos;
    try {
        fotos = listarFotos(mData, mCodigo);
    } catch (const FotosError& e) {
        ui::dialogs().error(e.mensaje(), this);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    }
    mLista->clear();
    for (qsizetype i = 0; i < fotos.size(); ++i) {
        const Foto& f = fotos.at(i);
        auto* item = new QListWidgetItem(i == 0 ? QStringLiteral("1 · Principal") : QString::number(i + 1));
        item->setData(Qt::UserRole, f.id);
        item->setIcon(QIcon(QPixmap::fromImage(decodificarFoto(f.miniatura))));
        item->setToolTip(QStringLiteral("Añadida el %1 (%2)")
                             .arg(QLocale(QLocale::Spanish).toString(f.fecha, QStringLiteral("dd/MM/yyyy HH:mm")),
                                  f.clase));
        mLista->addItem(item);
    }
    const qsizetype n = fotos.size();
    if (n == 0)
        mEstado->setText(QStringLiteral("Sin fotografías. Añádalas con el botón o arrastrándolas aquí desde una carpeta."));
    else if (n == 1)
        mEstado->setText(QStringLiteral("1 fotografía."));
    else
        mEstado->setText(QStringLiteral("%1 fotografías. La primera es la principal; arrástrelas para cambiar el orden.")
                             .arg(n));
    if (seleccionada)
        seleccionar(seleccionada);
    actualizarBotones();
}

void TfrmFotos::actualizarBotones()
{
    const int fila = idSeleccionado() ? mLista->currentRow() : -1;
    const bool hay = fila >= 0;
    const bool cambia = !mSoloLectura;
    mAnadir->setEnabled(cambia);
    mPrincipal->setEnabled(cambia && fila > 0);
    mGirarIzquierda->setEnabled(cambia && hay);
    mGirarDerecha->setEnabled(cambia && hay);
    mEliminar->setEnabled(cambia && hay);
    mVer->setEnabled(hay);
}

bool TfrmFotos::cambiar(const std::function<int()>& cambio)
{
    if (mSoloLectura)
        return false;
    int seleccion = 0;
    try {
        CursorEspera espera;
        seleccion = cambio();
    } catch (const FotosError& e) {
        ui::dialogs().error(e.mensaje(), this);
        recargar();
        return false;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        recargar();
        return false;
    }
    mCambiado = true;
    recargar();
    if (seleccion)
        seleccionar(seleccion);
    Q_EMIT fotosCambiadas(mCodigo);
    return true;
}

QString TfrmFotos::carpetaInicial() const
{
    if (!ultimaCarpeta().isEmpty() && QDir(ultimaCarpeta()).exists())
        return ultimaCarpeta();
    try {
        const QString carpeta = carpetaFotos(mData);
        if (!carpeta.isEmpty() && QDir(carpeta).exists())
            return carpeta;
    } catch (const DatabaseError&) {
        // Without the setting the user starts at home.
    }
    return QDir::homePath();
}

void TfrmFotos::anadirFotos()
{
    if (mSoloLectura)
        return;
    const QStringList rutas = ui::services().chooseOpenFiles(
        QStringLiteral("Añadir fotografías al inmueble ") + mCodigo, carpetaInicial(), kFiltroImagenes, this);
    if (rutas.isEmpty())
        return;
    ultimaCarpeta() = QFileInfo(rutas.first()).absolutePath();
    anadirArchivos(rutas);
}

bool TfrmFotos::anadirArchivos(const QStringList& rutas)
{
    if (rutas.isEmpty())
        return false;
    return cambiar([&] {
        const QList<int> nuevos = registro::anadirFotos(mData, mCodigo, rutas);
        return nuevos.isEmpty() ? 0 : nuevos.last();
    });
}

bool TfrmFotos::hacerPrincipal()
{
    const int id = idSeleccionado();
    if (!id || mLista->currentRow() == 0)
        return false;
    return cambiar([&] { return registro::hacerPrincipal(mData, mCodigo, id); });
}

bool TfrmFotos::girarIzquierda()
{
    return girar(false);
}

bool TfrmFotos::girarDerecha()
{
    return girar(true);
}

bool TfrmFotos::girar(bool derecha)
{
    const int id = idSeleccionado();
    if (!id)
        return false;
    return cambiar([&] {
        girarFoto(mData, mCodigo, id, derecha ? Giro::Derecha : Giro::Izquierda);
        return id;
    });
}

bool TfrmFotos::eliminar()
{
    const int id = idSeleccionado();
    if (!id || mSoloLectura)
        return false;
    if (!ui::dialogs().confirmation(kPreguntaEliminar, this))
        return false;
    // The neighbour that takes its place stays selected.
    QList<int> resto = ids();
    const int fila = int(resto.indexOf(id));
    resto.removeAll(id);
    return cambiar([&] {
        eliminarFoto(mData, mCodigo, id);
        return resto.isEmpty() ? 0 : resto.at(std::min(fila, int(resto.size()) - 1));
    });
}

bool TfrmFotos::moverFoto(int desde, int hasta)
{
    const QList<int> actuales = ids();
    if (desde < 0 || desde >= actuales.size() || desde == hasta)
        return false;
    return cambiar([&] { return registro::moverFoto(mData, mCodigo, actuales.at(desde), hasta); });
}

void TfrmFotos::ver()
{
    const int fila = idSeleccionado() ? mLista->currentRow() : -1;
    if (fila < 0)
        return;
    VisorFotos visor(mData, mCodigo, ids(), fila, this);
    runModal(visor);
}

} // namespace tv::registro

// The photo manager's dialog through its slots and buttons, with scripted
// messages and file choices, and the property screen's main-photo box.
#include "fotoprincipal.h"
#include "fotosapoyo.h"
#include "frmfotos.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QUrl>

#include <memory>

using namespace tv;
using namespace tv::registro;
using test::FotosTest;
using test::dibujo;
using test::parecido;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

class FrmFotosTest : public FotosTest {
protected:
    void SetUp() override
    {
        FotosTest::SetUp();
        ids = cuatro();
        portalesAlDia();
        frm = std::make_unique<TfrmFotos>(d(), kCodigo);
    }
    void TearDown() override { TfrmFotos::setModalRunner({}); }

    void elegir(int fila)
    {
        frm->lista()->setCurrentRow(fila);
        ASSERT_EQ(frm->idSeleccionado(), frm->ids().at(fila));
    }

    QList<int> ids;
    std::unique_ptr<TfrmFotos> frm;
};

} // namespace

TEST_F(FrmFotosTest, ShowsThePhotosInTheirOrder)
{
    EXPECT_EQ(frm->windowTitle(), QStringLiteral("Fotografías del inmueble 00012"));
    EXPECT_EQ(frm->ids(), ids);
    ASSERT_EQ(frm->lista()->count(), 4);
    EXPECT_EQ(frm->lista()->item(0)->text(), QStringLiteral("1 · Principal"));
    EXPECT_EQ(frm->lista()->item(3)->text(), QStringLiteral("4"));
    EXPECT_FALSE(frm->lista()->item(2)->icon().isNull());
    EXPECT_TRUE(frm->lblEstado()->text().startsWith(QStringLiteral("4 fotografías.")));
    EXPECT_EQ(frm->lista()->viewMode(), QListView::IconMode);
    EXPECT_EQ(frm->lista()->dragDropMode(), QAbstractItemView::DragDrop);
    for (QPushButton* b : {frm->btnAnadir(), frm->btnPrincipal(), frm->btnGirarIzquierda(), frm->btnGirarDerecha(),
                           frm->btnEliminar(), frm->btnVer(), frm->btnCerrar()})
        ASSERT_NE(b, nullptr);
    EXPECT_EQ(frm->btnAnadir()->text(), QStringLiteral("Añadir fotos…"));
    EXPECT_EQ(frm->btnPrincipal()->text(), QStringLiteral("Principal"));
    EXPECT_EQ(frm->btnGirarIzquierda()->text(), QStringLiteral("Girar a la izquierda"));
    EXPECT_EQ(frm->btnGirarDerecha()->text(), QStringLiteral("Girar a la derecha"));
    EXPECT_EQ(frm->btnEliminar()->text(), QStringLiteral("Eliminar"));
    EXPECT_EQ(frm->btnVer()->text(), QStringLiteral("Ver"));
    EXPECT_EQ(frm->btnCerrar()->text(), QStringLiteral("Cerrar"));

    // Nothing selected: only adding and closing.
    frm->lista()->clearSelection();
    frm->lista()->setCurrentRow(-1);
    EXPECT_TRUE(frm->btnAnadir()->isEnabled());
    EXPECT_FALSE(frm->btnEliminar()->isEnabled());
    EXPECT_FALSE(frm->btnVer()->isEnabled());
    // The main photo cannot be made main again.
    elegir(0);
    EXPECT_FALSE(frm->btnPrincipal()->isEnabled());
    EXPECT_TRUE(frm->btnEliminar()->isEnabled());
    elegir(2);
    EXPECT_TRUE(frm->btnPrincipal()->isEnabled());
}

TEST_F(FrmFotosTest, PrincipalMovesTheSelectedPhotoFirst)
{
    QSignalSpy cambios(frm.get(), &TfrmFotos::fotosCambiadas);
    elegir(2);
    frm->btnPrincipal()->click();
    EXPECT_EQ(anchosEnOrden(), (QList<int>{103, 101, 102, 104}));
    EXPECT_EQ(frm->ids(), ids);
    // The photo stays selected where it went.
    EXPECT_EQ(frm->idSeleccionado(), ids.at(0));
    EXPECT_EQ(frm->lista()->currentRow(), 0);
    EXPECT_EQ(banderas(), todasS());
    ASSERT_EQ(cambios.count(), 1);
    EXPECT_EQ(cambios.at(0).at(0).toString(), kCodigo);
    EXPECT_TRUE(frm->cambiado());
}

TEST_F(FrmFotosTest, DraggingOnePhotoToAnotherPlaceStoresTheOrder)
{
    EXPECT_TRUE(frm->moverFoto(0, 3));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{102, 103, 104, 101}));
    EXPECT_EQ(frm->idSeleccionado(), ids.at(3));
    EXPECT_EQ(banderas(), todasS());
    EXPECT_FALSE(frm->moverFoto(2, 2));
    EXPECT_FALSE(frm->moverFoto(7, 0));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{102, 103, 104, 101}));
}

TEST_F(FrmFotosTest, RemovingAsksFirstAndNoKeepsThePhoto)
{
    test::ScriptedDialogs dialogs;
    elegir(1);
    dialogs.answer(false);
    frm->btnEliminar()->click();
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Confirmation);
    EXPECT_EQ(dialogs.log().at(0).text, QStringLiteral("¿Está seguro de eliminar la fotografía seleccionada?"));
    EXPECT_EQ(contarFotos(d(), kCodigo), 4);
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
    EXPECT_FALSE(frm->cambiado());

    dialogs.clear();
    dialogs.answer(true);
    EXPECT_TRUE(frm->eliminar());
    EXPECT_EQ(dialogs.texts(), QStringList{TfrmFotos::kPreguntaEliminar});
    EXPECT_EQ(idsFotos(d(), kCodigo), (QList<int>{ids.at(0), ids.at(2), ids.at(3)}));
    EXPECT_EQ(frm->ids(), idsFotos(d(), kCodigo));
    // Its neighbour takes the selection.
    EXPECT_EQ(frm->idSeleccionado(), ids.at(2));
    EXPECT_TRUE(frm->lblEstado()->text().startsWith(QStringLiteral("3 fotografías.")));
    EXPECT_EQ(banderas(), todasS());
    EXPECT_TRUE(frm->cambiado());
}

TEST_F(FrmFotosTest, TurningButtonsRewriteTheSelectedPhoto)
{
    elegir(3);
    frm->btnGirarDerecha()->click();
    EXPECT_EQ(guardada(ids.at(3)).size(), QSize(60, 104));
    EXPECT_TRUE(parecido(guardada(ids.at(3)).pixelColor(30, 5), Qt::red));
    EXPECT_EQ(frm->idSeleccionado(), ids.at(3));
    EXPECT_EQ(banderas(), todasS());
    frm->btnGirarIzquierda()->click();
    frm->btnGirarIzquierda()->click();
    EXPECT_EQ(guardada(ids.at(3)).size(), QSize(60, 104));
    EXPECT_TRUE(parecido(guardada(ids.at(3)).pixelColor(30, 5), Qt::blue));
    EXPECT_EQ(guardada(ids.at(0)).size(), QSize(101, 60));
}

TEST_F(FrmFotosTest, AddingAsksForFilesAndAppendsThemInTheirOrder)
{
    test::ScriptedServices services;
    const QString ruta = archivo(QStringLiteral("nueva.jpg"), QSize(180, 90), "jpeg");
    const QString otra = archivo(QStringLiteral("otra.jpg"), QSize(190, 90), "jpeg");
    services.fileAnswer(ruta + QLatin1Char('\n') + otra);
    frm->btnAnadir()->click();
    ASSERT_EQ(services.calls().size(), 1);
    EXPECT_EQ(services.calls().at(0).kind, test::ScriptedServices::Kind::OpenFile);
    EXPECT_EQ(services.calls().at(0).name, QStringLiteral("Añadir fotografías al inmueble 00012"));
    EXPECT_TRUE(services.calls().at(0).detail.endsWith(TfrmFotos::kFiltroImagenes));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 102, 103, 104, 180, 190}));
    EXPECT_EQ(frm->ids().size(), 6);
    EXPECT_EQ(frm->lista()->currentRow(), 5);
    EXPECT_EQ(banderas(), todasS());

    // The next choice starts where the last one was made; cancelling adds nothing.
    services.fileAnswer(QString());
    frm->anadirFotos();
    ASSERT_EQ(services.calls().size(), 2);
    EXPECT_TRUE(services.calls().at(1).detail.startsWith(carpeta() + QLatin1Char('|')));
    EXPECT_EQ(contarFotos(d(), kCodigo), 6);
}

TEST_F(FrmFotosTest, AFileThatIsNoPictureIsNamedAndNothingChanges)
{
    test::ScriptedDialogs dialogs;
    const QString mala = mCarpeta.filePath(QStringLiteral("contrato.pdf"));
    {
        QFile f(mala);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("%PDF-1.4 no es una imagen");
    }
    const QString buena = archivo(QStringLiteral("buena.png"), QSize(70, 70));
    EXPECT_FALSE(frm->anadirArchivos({buena, mala}));
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Error);
    EXPECT_TRUE(dialogs.log().at(0).text.startsWith(QStringLiteral("No se puede leer la fotografía «%1»").arg(mala)));
    EXPECT_EQ(contarFotos(d(), kCodigo), 4);
    EXPECT_EQ(frm->ids(), ids);
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
    EXPECT_FALSE(frm->cambiado());
}

TEST_F(FrmFotosTest, FilesDroppedFromTheDesktopAreAdded)
{
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(archivo(QStringLiteral("d1.png"), QSize(111, 50))),
                  QUrl::fromLocalFile(archivo(QStringLiteral("d2.jpg"), QSize(112, 50), "jpeg"))});
    QDragEnterEvent entra(QPoint(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frm->lista()->viewport(), &entra);
    EXPECT_TRUE(entra.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frm->lista()->viewport(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 102, 103, 104, 111, 112}));
    EXPECT_EQ(frm->ids().size(), 6);
    EXPECT_EQ(banderas(), todasS());

    // Text is not a file: ignored.
    QMimeData texto;
    texto.setText(QStringLiteral("hola"));
    QDragEnterEvent entraTexto(QPoint(20, 20), Qt::CopyAction, &texto, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frm->lista()->viewport(), &entraTexto);
    EXPECT_FALSE(entraTexto.isAccepted());
    QDropEvent otro(QPointF(20, 20), Qt::CopyAction, &texto, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frm->lista()->viewport(), &otro);
    EXPECT_EQ(contarFotos(d(), kCodigo), 6);
}

TEST_F(FrmFotosTest, ViewShowsTheWholePictureAndBrowsesTheOthers)
{
    // A big one, to see the viewer reads the picture and not the thumbnail.
    registro::anadirFotos(d(), kCodigo, {archivo(QStringLiteral("grande.png"), QSize(900, 450))});
    frm->recargar();
    elegir(3);
    int vistas = 0;
    TfrmFotos::setModalRunner([&](QDialog& dlg) {
        ++vistas;
        auto* foto = dlg.findChild<FotoPrincipal*>(QStringLiteral("lblFoto"));
        EXPECT_NE(foto, nullptr);
        if (!foto)
            return 0;
        EXPECT_EQ(dlg.windowTitle(), QStringLiteral("Fotografía 4 de 5 del inmueble 00012"));
        EXPECT_EQ(foto->imagen().size(), QSize(104, 60));
        auto* siguiente = dlg.findChild<QPushButton*>(QStringLiteral("btnSiguiente"));
        EXPECT_NE(siguiente, nullptr);
        if (siguiente)
            siguiente->click();
        EXPECT_EQ(foto->imagen().size(), QSize(900, 450));
        EXPECT_EQ(dlg.windowTitle(), QStringLiteral("Fotografía 5 de 5 del inmueble 00012"));
        EXPECT_FALSE(siguiente && siguiente->isEnabled());
        return 1;
    });
    frm->btnVer()->click();
    EXPECT_EQ(vistas, 1);
    // Double-click does the same.
    TfrmFotos::setModalRunner([&](QDialog&) { return ++vistas; });
    Q_EMIT frm->lista()->itemDoubleClicked(frm->lista()->item(0));
    EXPECT_EQ(vistas, 2);
}

TEST_F(FrmFotosTest, OnlyLookingChangesNothing)
{
    frm->setSoloLectura(true);
    elegir(2);
    for (QPushButton* b : {frm->btnAnadir(), frm->btnPrincipal(), frm->btnGirarIzquierda(), frm->btnGirarDerecha(),
                           frm->btnEliminar()})
        EXPECT_FALSE(b->isEnabled()) << b->text().toStdString();
    EXPECT_TRUE(frm->btnVer()->isEnabled());
    EXPECT_FALSE(frm->eliminar());
    EXPECT_FALSE(frm->hacerPrincipal());
    EXPECT_FALSE(frm->moverFoto(2, 0));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 102, 103, 104}));
}

TEST_F(FrmFotosTest, EditarTellsTheCallerWhetherPhotosChanged)
{
    TfrmFotos::setModalRunner([](QDialog& dlg) {
        auto* f = qobject_cast<TfrmFotos*>(&dlg);
        EXPECT_NE(f, nullptr);
        return 0;
    });
    EXPECT_FALSE(TfrmFotos::editar(d(), kCodigo));
    TfrmFotos::setModalRunner([](QDialog& dlg) {
        auto* f = qobject_cast<TfrmFotos*>(&dlg);
        if (f)
            f->moverFoto(1, 0);
        return 0;
    });
    EXPECT_TRUE(TfrmFotos::editar(d(), kCodigo));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{102, 101, 103, 104}));
}

TEST_F(FotosTest, MainPhotoBoxHidesWithoutAPhoto)
{
    QWidget pantalla;
    auto* caja = new FotoPrincipal(&pantalla);
    caja->resize(320, 240);
    pantalla.show();

    caja->mostrar(d(), kCodigo);
    EXPECT_TRUE(caja->isHidden());
    EXPECT_FALSE(caja->tieneFoto());

    const QList<int> ids = registro::anadirFotos(d(), kCodigo, {archivo(QStringLiteral("a.png"), QSize(400, 200)),
                                                                archivo(QStringLiteral("b.png"), QSize(300, 300))});
    caja->mostrar(d(), kCodigo);
    EXPECT_FALSE(caja->isHidden());
    EXPECT_EQ(caja->imagen().size(), QSize(400, 200));
    // Scaled to fit the box, keeping its shape.
    const QSize dibujada = caja->pixmap().size();
    EXPECT_LE(dibujada.width(), caja->contentsRect().width());
    EXPECT_LE(dibujada.height(), caja->contentsRect().height());
    EXPECT_EQ(dibujada.width(), 2 * dibujada.height());

    registro::hacerPrincipal(d(), kCodigo, ids.at(1));
    caja->mostrar(d(), kCodigo);
    EXPECT_EQ(caja->imagen().size(), QSize(300, 300));

    caja->mostrar(d(), kOtro);
    EXPECT_TRUE(caja->isHidden());
    caja->mostrarImagen(QByteArray("no es una imagen"));
    EXPECT_TRUE(caja->isHidden());
    caja->mostrar(d(), kCodigo);
    EXPECT_FALSE(caja->isHidden());
    for (int id : registro::idsFotos(d(), kCodigo))
        registro::eliminarFoto(d(), kCodigo, id);
    caja->mostrar(d(), kCodigo);
    EXPECT_TRUE(caja->isHidden());
}

// The property register's side bar and printing: what hangs from a property.
#include "frminmuebles.h"

#include "appstate.h"
#include "carteles.h"
#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "enlaces.h"
#include "frmbuscarinmueble.h"
#include "frmdocumentos.h"
#include "frmfotos.h"
#include "frmmunicipio.h"
#include "icons.h"
#include "fotoprincipal.h"
#include "mapa.h"
#include "modal.h"
#include "ownership.h"
#include "report.h"
#include "reportdata.h"
#include "services.h"
#include "sqltext.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QProgressDialog>
#include <QStandardPaths>
#include <QFrame>
#include <QToolBar>
#include <QVBoxLayout>
#include <QToolButton>

namespace tv::registro {

QAction* TfrmInmuebles::nuevaAccion(const QString& nombre, const QString& icono, void (TfrmInmuebles::*slot)())
{
    auto* a = new QAction(ui::themeIcon(icono), nombre, this);
    a->setObjectName(nombre);
    auto* b = new QToolButton(mLateral);
    b->setDefaultAction(a);
    b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    b->setAutoRaise(true);
    b->setIconSize(QSize(18, 18));
    mLateralLayout->addWidget(b, 0, Qt::AlignLeft);
    a->setProperty("necesitaFila", true);
    connect(a, &QAction::triggered, this, slot);
    mAcciones.insert(nombre, a);
    return a;
}

void TfrmInmuebles::separadorLateral()
{
    auto* linea = new QFrame(mLateral);
    linea->setFrameShape(QFrame::HLine);
    linea->setFrameShadow(QFrame::Sunken);
    mLateralLayout->addWidget(linea);
}

void TfrmInmuebles::construirBarraLateral()
{
    mLateral = new QWidget(body());
    mLateral->setObjectName(QStringLiteral("barraLateral"));
    mLateralLayout = new QVBoxLayout(mLateral);
    mLateralLayout->setContentsMargins(0, 0, 4, 0);
    mLateralLayout->setSpacing(1);

    QAction* localiza = nuevaAccion(QStringLiteral("Localiza un Inmueble"), QStringLiteral("system-search"),
                                    &TfrmInmuebles::btnBuscarClick);
    localiza->setProperty("necesitaFila", false);
    QAction* quita = nuevaAccion(QStringLiteral("Elimina filtro de Busqueda"), QStringLiteral("edit-clear"),
                                 &TfrmInmuebles::eliminarFiltro);
    quita->setProperty("necesitaFila", false);
    separadorLateral();
    nuevaAccion(QStringLiteral("Propietario"), QStringLiteral("avatar-default"), &TfrmInmuebles::btnpropietarioClick);
    nuevaAccion(QStringLiteral("Segundo propietario"), QStringLiteral("avatar-default"),
                &TfrmInmuebles::btnPropietario2Click);
    nuevaAccion(QStringLiteral("Fotografías"), QStringLiteral("image-x-generic"), &TfrmInmuebles::verFotos);
    nuevaAccion(QStringLiteral("Mapa"), QStringLiteral("mark-location"), &TfrmInmuebles::verMapa);
    nuevaAccion(QStringLiteral("Video"), QStringLiteral("video-x-generic"), &TfrmInmuebles::verVideo);
    nuevaAccion(QStringLiteral("Documentos"), QStringLiteral("folder-documents"), &TfrmInmuebles::verDocumentos);
    separadorLateral();
    nuevaAccion(QStringLiteral("Casación"), QStringLiteral("media-playlist-shuffle"), &TfrmInmuebles::bCasacionClick);
    nuevaAccion(QStringLiteral("Descartes"), QStringLiteral("edit-delete"), &TfrmInmuebles::verDescartes);
    nuevaAccion(QStringLiteral("Gestiones"), QStringLiteral("document-edit"), &TfrmInmuebles::verGestiones);
    nuevaAccion(QStringLiteral("Gastos"), QStringLiteral("tv-euro"), &TfrmInmuebles::verGastos);
    separadorLateral();
    nuevaAccion(QStringLiteral("Copiar inmueble"), QStringLiteral("edit-copy"), &TfrmInmuebles::FlaTcxButton222Click);
    nuevaAccion(QStringLiteral("Generar cartel"), QStringLiteral("format-text-bold"), &TfrmInmuebles::generarCartel);
    QAction* cartera = nuevaAccion(QStringLiteral("Carteles de toda la cartera"), QStringLiteral("format-justify-fill"),
                                   &TfrmInmuebles::generarCartelesCartera);
    cartera->setProperty("necesitaFila", false);
    nuevaAccion(QStringLiteral("Publicar en mi web"), QStringLiteral("web-browser"), &TfrmInmuebles::publicarEnWeb);
    nuevaAccion(QStringLiteral("Quitar de mi web"), QStringLiteral("list-remove"), &TfrmInmuebles::quitarDeWeb);
    mLateralLayout->addStretch(1);

    // Imprimir offers the property's sheet, the list and the follow-ups.
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("menuImprimir"));
    auto opcion = [this, menu](const QString& t, void (TfrmInmuebles::*slot)()) {
        QAction* a = menu->addAction(t);
        a->setObjectName(t);
        connect(a, &QAction::triggered, this, slot);
        mAcciones.insert(t, a);
    };
    opcion(QStringLiteral("Ficha del inmueble"), &TfrmInmuebles::imprimirFicha);
    opcion(QStringLiteral("Ficha del inmueble en PDF…"), &TfrmInmuebles::exportarFichaPdf);
    opcion(QStringLiteral("Cartera de inmuebles"), &TfrmInmuebles::imprimirCartera);
    opcion(QStringLiteral("Gestiones del inmueble"), &TfrmInmuebles::imprimirGestiones);
    if (QAction* imprimir = action(Action::Imprimir)) {
        imprimir->setMenu(menu);
        if (auto* b = qobject_cast<QToolButton*>(toolBar()->widgetForAction(imprimir)))
            b->setPopupMode(QToolButton::InstantPopup);
    }
}

void TfrmInmuebles::onImprimir()
{
    imprimirFicha();
}

void TfrmInmuebles::onBuscar()
{
    btnBuscarClick();
}

// ------------------------------------------------------------------ search

void TfrmInmuebles::btnBuscarClick()
{
    TfrmBuscarInmueble dlg(mData, this);
    if (ejecutarModal(dlg) != QDialog::Accepted)
        return;
    aplicarFiltro(dlg.filtro());
}

void TfrmInmuebles::aplicarFiltro(const FiltroInmuebles& filtro)
{
    reabrir(consultaInmuebles(condicionBusqueda(filtro)), QString());
    mFiltrado = true;
}

void TfrmInmuebles::eliminarFiltro()
{
    reabrir(consultaInmuebles(), codigoActual());
    mFiltrado = false;
}

void TfrmInmuebles::reabrir(const QString& sqlText, const QString& codigo)
{
    if (mDs->isEditing() || mDs->updatesPending()) {
        ui::dialogs().warning(QStringLiteral("Debe grabar o cancelar los cambios antes de cambiar la lista."), this);
        return;
    }
    mDs->close();
    mDs->setSelectSQL(sqlText);
    mDs->open();
    if (!codigo.isEmpty() && !mDs->locate(QStringLiteral("CODIGO"), codigo))
        mDs->first();
    seguirRegistro();
    updateActions();
}

void TfrmInmuebles::releerRegistro()
{
    if (hayRegistro() && mDs->state() == DataSet::State::Browse && !mDs->updatesPending())
        mDs->refreshRecord();
    seguirRegistro();
}

// ------------------------------------------------------------------ linked records

void TfrmInmuebles::abrirPropietario(const QVariant& codigo)
{
    if (codigo.isNull() || codigo.toInt() <= 0) {
        ui::dialogs().information(QStringLiteral("El inmueble no tiene asignado este propietario."), this);
        return;
    }
    abrirEnlace(QStringLiteral("propietario"), this, codigo);
}

bool TfrmInmuebles::puedoModificar()
{
    if (ui::mayChange(*mDs, ui::Ownership::inmuebles()))
        return true;
    ui::dialogs().information(ui::Ownership::inmuebles().editRefused, this);
    return false;
}

bool TfrmInmuebles::sinCambiosPendientes()
{
    if (!mDs->isEditing() && !mDs->updatesPending())
        return true;
    ui::dialogs().warning(QStringLiteral("Debe grabar o cancelar los cambios antes de continuar."), this);
    return false;
}

void TfrmInmuebles::elegirPoblacion()
{
    if (!mDs->isEditing() && !puedoModificar())
        return;
    QString provincia, municipio, pais;
    if (!lookups::elegirLugar(this, &provincia, &municipio, &pais))
        return;
    if (!mDs->isEditing()) {
        try {
            mDs->edit();
        } catch (const Abort&) {
            return;
        }
    }
    const QString antes = mDs->fieldByName(QStringLiteral("MUNICIPIO")).asString().trimmed();
    mDs->fieldByName(QStringLiteral("PROVINCIA")).setValue(provincia);
    mDs->fieldByName(QStringLiteral("MUNICIPIO")).setValue(municipio);
    // A zone belongs to its town.
    if (antes != municipio)
        mDs->fieldByName(QStringLiteral("CODTIPOZONA")).clear();
    updateActions();
}

void TfrmInmuebles::btnpropietarioClick()
{
    abrirPropietario(mDs->fieldByName(QStringLiteral("CODPROPIETARIO")).value());
}

void TfrmInmuebles::btnPropietario2Click()
{
    abrirPropietario(mDs->fieldByName(QStringLiteral("CODPROPIETARIO2")).value());
}

bool TfrmInmuebles::ejecutarPendiente(const QString& enlace, const QString& titulo)
{
    if (abrirEnlace(enlace, this, codigoActual()))
        return true;
    ui::dialogs().information(textoPendiente(titulo), this);
    return false;
}

void TfrmInmuebles::bCasacionClick()
{
    // The interested clients are of the property as stored now.
    if (!sinCambiosPendientes())
        return;
    const QString codigo = codigoActual();
    reabrir(mDs->selectSQL(), codigo);
    ejecutarPendiente(QStringLiteral("interesados"), QStringLiteral("Casación"));
}

void TfrmInmuebles::verDescartes()
{
    ejecutarPendiente(QStringLiteral("descartes-inmueble"), QStringLiteral("Descartes"));
}

void TfrmInmuebles::verGestiones()
{
    ejecutarPendiente(QStringLiteral("gestiones-inmueble"), QStringLiteral("Gestiones"));
}

void TfrmInmuebles::verGastos()
{
    ejecutarPendiente(QStringLiteral("gastos-inmueble"), QStringLiteral("Gastos"));
}

void TfrmInmuebles::verFotos()
{
    // The manager writes the row's photo flags: the row must be as stored.
    if (!sinCambiosPendientes())
        return;
    // Another agent's property: its photographs are shown, not changed.
    TfrmFotos dlg(mData, codigoActual(), this);
    dlg.setSoloLectura(!ui::mayChange(*mDs, ui::Ownership::inmuebles()));
    TfrmFotos::runModal(dlg);
    if (dlg.cambiado())
        releerRegistro();
}

void TfrmInmuebles::verMapa()
{
    const bool manual = sql::isSet(mDs->fieldByName(QStringLiteral("GOOGLE_MAPS_MANUAL")).value());
    const QVariant lat = mDs->fieldByName(QStringLiteral("LATITUDE")).value();
    const QVariant lon = mDs->fieldByName(QStringLiteral("LONGITUDE")).value();
    std::optional<Posicion> posicion = posicionGuardada(lat, lon);
    if (manual && !mDs->isEditing() && !puedoModificar())
        return;
    if (!TfrmMapa::elegir(posicion, manual, this) || !manual || !posicion)
        return;
    try {
        mDs->edit();
    } catch (const Abort&) {
        return;
    }
    mDs->fieldByName(QStringLiteral("LATITUDE")).setValue(posicion->latitud);
    mDs->fieldByName(QStringLiteral("LONGITUDE")).setValue(posicion->longitud);
    updateActions();
}

// ------------------------------------------------------------------ copy, posters, web

void TfrmInmuebles::FlaTcxButton222Click()
{
    if (!sinCambiosPendientes())
        return;
    if (!ui::dialogs().confirmation(QString::fromUtf8(kPreguntaCopiar), this))
        return;
    QString nuevo;
    try {
        nuevo = copiarInmueble(mData, codigoActual(), mData.agente.codigo);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    reabrir(mDs->selectSQL(), nuevo);
    if (codigoActual() != nuevo) {
        // Outside the search in force: the whole stock shows the copy.
        reabrir(consultaInmuebles(), nuevo);
        mFiltrado = false;
    }
    ui::dialogs().information(QString::fromUtf8(kInmuebleCopiado), this);
}

void TfrmInmuebles::generarCartel()
{
    if (!sinCambiosPendientes() || !puedoModificar())
        return;
    try {
        registro::generarCartel(mData, codigoActual());
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    releerRegistro();
}

void TfrmInmuebles::generarCartelesCartera()
{
    if (!ui::dialogs().confirmation(QString::fromUtf8(kPreguntaCartelesCartera), this))
        return;
    if (mDs->isEditing() || mDs->updatesPending()) {
        ui::dialogs().warning(QStringLiteral("Debe grabar o cancelar los cambios antes de generar los carteles."), this);
        return;
    }
    QProgressDialog progreso(QStringLiteral("Generando la información de la publicidad…"), QString(), 0, 100, this);
    progreso.setWindowTitle(QStringLiteral("Espere..."));
    progreso.setWindowModality(Qt::WindowModal);
    progreso.setMinimumDuration(300);
    int n = 0;
    try {
        n = registro::generarCarteles(mData, [&progreso](int hechos, int total) {
            progreso.setMaximum(total);
            progreso.setValue(hechos);
            return true;
        });
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    progreso.reset();
    // Every row read before holds the old texts: read the list again.
    reabrir(mDs->selectSQL(), codigoActual());
    ui::dialogs().information(QStringLiteral("Información de la publicidad generada en %1 inmuebles.").arg(n), this);
}

void TfrmInmuebles::verVideo()
{
    const QString enlace = mDs->fieldByName(QStringLiteral("YOUTUBE")).asString().trimmed();
    if (enlace.isEmpty()) {
        ui::dialogs().information(QString::fromUtf8(kSinVideo), this);
        return;
    }
    // Written where the user may write (the program's folder may be read-only).
    const QString carpeta = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(carpeta);
    const QString pagina = QDir(carpeta).filePath(QStringLiteral("youtube.html"));
    QFile f(pagina);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        ui::dialogs().error(QStringLiteral("No se ha podido escribir el archivo %1.").arg(pagina), this);
        return;
    }
    f.write(paginaVideo(enlace).toUtf8());
    f.close();
    Q_EMIT videoMostrado(pagina);
    reports::openWithDesktop(pagina, this);
}

void TfrmInmuebles::publicarEnWeb()
{
    if (mDs->isEditing() || mDs->updatesPending()) {
        ui::dialogs().warning(QString::fromUtf8(kGrabarAntesDeWeb), this);
        return;
    }
    if (!puedoModificar())
        return;
    try {
        marcarWeb(mData, codigoActual(), true);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    releerRegistro();
    ui::dialogs().information(QStringLiteral("El inmueble se publicará en su web en el próximo envío."), this);
}

void TfrmInmuebles::quitarDeWeb()
{
    if (mDs->isEditing() || mDs->updatesPending()) {
        ui::dialogs().warning(QString::fromUtf8(kGrabarAntesDeWeb), this);
        return;
    }
    if (!puedoModificar())
        return;
    if (!ui::dialogs().confirmation(QString::fromUtf8(kPreguntaQuitarWeb), this))
        return;
    try {
        marcarWeb(mData, codigoActual(), false);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    releerRegistro();
}

void TfrmInmuebles::verDocumentos()
{
    const QString codigo = codigoActual();
    TfrmDocumentos dlg(carpetaDocumentos(ui::appState().documentsFolder, codigo),
                       QStringLiteral("Documentación adjunta al Inmueble ") + codigo, this);
    ejecutarModal(dlg);
}

// ------------------------------------------------------------------ printing

void TfrmInmuebles::imprimirFicha()
{
    if (!hayRegistro())
        return;
    try {
        const QString codigo = codigoActual();
        ui::services().preview(reports::plantillaFicha(mData, codigo), reports::datosFichaInmueble(mData, codigo), this);
    } catch (const reports::ReportError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const std::exception& e) {
        ui::dialogs().error(QString::fromUtf8(e.what()), this);
    }
}

void TfrmInmuebles::exportarFichaPdf()
{
    if (!hayRegistro())
        return;
    const QString codigo = codigoActual();
    QString destino = ui::services().chooseSaveFile(QStringLiteral("Exportar la ficha a PDF"),
                                                    QStringLiteral("ficha_%1.pdf").arg(codigo),
                                                    QStringLiteral("Documentos PDF (*.pdf)"), this);
    if (destino.isEmpty())
        return;
    if (!destino.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
        destino += QStringLiteral(".pdf");
    try {
        reports::exportPdf(reports::plantillaFicha(mData, codigo), reports::datosFichaInmueble(mData, codigo), destino);
    } catch (const reports::ReportError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const std::exception& e) {
        ui::dialogs().error(QString::fromUtf8(e.what()), this);
    }
}

void TfrmInmuebles::imprimirCartera()
{
    try {
        ui::services().preview(QStringLiteral("in_ofertas"), reports::datosOfertas(mData, mDs->selectSQL()), this);
    } catch (const reports::ReportError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const std::exception& e) {
        ui::dialogs().error(QString::fromUtf8(e.what()), this);
    }
}

void TfrmInmuebles::imprimirGestiones()
{
    if (!hayRegistro())
        return;
    try {
        ui::services().preview(QStringLiteral("in_inmuebleGestion"), reports::datosInmuebleGestion(mData, codigoActual()),
                               this);
    } catch (const reports::ReportError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    } catch (const std::exception& e) {
        ui::dialogs().error(QString::fromUtf8(e.what()), this);
    }
}

} // namespace tv::registro

#include "frmmain.h"

#include "alarmwatcher.h"
#include "appstate.h"
#include "datapath.h"
#include "dataset.h"
#include "desktop.h"
#include "comandos.h"
#include "report.h"
#include "dialogs.h"
#include "dm.h"
#include "fondomdiarea.h"
#include "frmfondo.h"
#include "icons.h"
#include "migration.h"
#include "pendientes.h"
#include "ribbon.h"
#include "settings.h"
#include "startup.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QMdiSubWindow>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QSysInfo>
#include <QTimer>
#include <QVBoxLayout>

namespace tv::shell {

TfrmMain::TfrmMain(Tdm& dataModule, QWidget* parent)
    : QMainWindow(parent),
      mData(dataModule),
      mConfiguracion(std::make_unique<DataSet>(dataModule.datos, dataModule.Transacion)),
      mEmpresa(std::make_unique<DataSet>(dataModule.datos, dataModule.Transacion))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("tejavista"));
    setWindowIcon(ui::tintedIcon(QStringLiteral("tejavista"), QColor(0x1f, 0x4e, 0x79), 64));
    mConfiguracion->setTable(QStringLiteral("CONFIGURACION"));
    mEmpresa->setTable(QStringLiteral("EMPRESA"), {QStringLiteral("CODIGO")});

    mRibbon = new Ribbon(this);
    setMenuWidget(mRibbon);
    mMdi = new FondoMdiArea(this);
    setCentralWidget(mMdi);
    mAgente = new QLabel(this);
    mDatos = new QLabel(this);
    statusBar()->addWidget(mAgente);
    statusBar()->addPermanentWidget(mDatos);
    resize(1200, 800);

    {
        const QSignalBlocker block(mRibbon->languageBox());
        mRibbon->languageBox()->setCurrentIndex(settings::idioma());
    }
    connect(mRibbon->languageBox(), &QComboBox::currentIndexChanged, this, &TfrmMain::cbIdiomaChange);
    connect(mRibbon, &Ribbon::commandTriggered, this, &TfrmMain::ejecutar);

    registrarComandosDeLasPantallas();
    registrarComando(QStringLiteral("salir"), [this] { salirDelPrograma(); });
    registrarComando(QStringLiteral("calculadora"), [this] { abrirCalculadora(this); });
    registrarComando(QStringLiteral("manual"), [this] { abrirManual(this); });
    registrarComando(QStringLiteral("fondo"), [this] { elegirFondo(); });
    registrarComando(QStringLiteral("nombre-ordenador"), [this] { nombreDelOrdenador(); });

    const QString fondo = settings::fondo();
    mMdi->setPicture(fondo.isEmpty() ? QString() : carpetaAplicacion() + QStringLiteral("/fondos/") + fondo);
}

TfrmMain::~TfrmMain() = default;

void TfrmMain::registrarComando(const QString& command, Handler handler)
{
    mHandlers.insert(command, std::move(handler));
}

void TfrmMain::ejecutar(const QString& command)
{
    const auto it = mHandlers.constFind(command);
    if (it != mHandlers.constEnd() || ui::commands().contains(command)) {
        // The last stop for a failure no screen handled: an exception must not
        // reach the event loop, which would end the program.
        try {
            if (it != mHandlers.constEnd())
                it.value()();
            else
                ui::commands().run(command, *this);
        } catch (const Abort&) {
        } catch (const DatabaseError& e) {
            ui::dialogs().error(e.message(), this);
        } catch (const reports::ReportError& e) {
            ui::dialogs().error(e.message(), this);
        } catch (const std::exception& e) {
            ui::dialogs().error(QString::fromUtf8(e.what()), this);
        }
        return;
    }
    if (esPendiente(command)) {
        ui::dialogs().information(mensajePendiente(command), this);
        return;
    }
    qWarning("tejavista: command without handler: %s", qPrintable(command));
}

QMdiSubWindow* TfrmMain::abrirVentana(QWidget* screen)
{
    screen->setAttribute(Qt::WA_DeleteOnClose);
    QMdiSubWindow* sub = mMdi->addSubWindow(screen);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    // A screen that closes itself (Salir, Escape) takes its frame with it.
    connect(screen, &QObject::destroyed, sub, &QWidget::close, Qt::QueuedConnection);
    sub->show();
    return sub;
}

void TfrmMain::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (mAutoStart && !mStartRequested) {
        mStartRequested = true;
        // After the window has painted, so the user sees where the program is.
        QTimer::singleShot(0, this, &TfrmMain::arrancar);
    }
}

bool TfrmMain::arrancar()
{
    if (mStartRan)
        return true;
    mStartRan = true;
    ui::AppState& state = ui::appState();
    state.idioma = mRibbon->languageBox()->currentIndex();
    try {
        if (!mData.datos.isOpen())
            mData.abrirConexiones();

        mConfiguracion->open();
        const QString docuRed = mConfiguracion->isEmpty()
                                    ? QString()
                                    : mConfiguracion->fieldByName(QStringLiteral("DOCU_RED")).asString();
        QString network = currentDataPaths().networkPath;
        if (network.isEmpty())
            network = networkPathOf(mData.dataPath());
        state.documentsFolder = startup::carpetaDocumentos(docuRed, mData.dataFolder(), network);

        if (!migration::hecha(*mConfiguracion)) {
            migration::migrarObservaciones(mData);
            mConfiguracion->close();
            mConfiguracion->open();
        }

        state.templatesFolder = startup::carpetaPlantillas(carpetaAplicacion(), state.idioma);

        if (!TfrmEntrada::entrar(mData, this, mLoginRunner)) {
            showMinimized();
            close();
            return false;
        }

        setWindowTitle(startup::tituloVentana(state.agentUser));
        mostrarEstado();
        mRibbon->setCommandVisible(QStringLiteral("configurar-red"), !startup::modoLocal(mData.dataFolder()));

        alarms::arrancar(mData, this);
        // The firewall registration of the original platform has no
        // equal here: the administrator opens port 3050 on the server.

        leerEmpresa();
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        close();
        return false;
    }

    mMdi->show();
    QCoreApplication::processEvents();
    state.iniciado = 1;
    return true;
}

void TfrmMain::mostrarEstado()
{
    const ui::AppState& state = ui::appState();
    mAgente->setText(QStringLiteral("Agente: ") + state.agentUser);
    mDatos->setText(QStringLiteral("Datos: ") + QDir::toNativeSeparators(mData.dataPath()) +
                    (startup::modoLocal(mData.dataFolder()) ? QStringLiteral(" (modo local)") : QString()));
}

void TfrmMain::leerEmpresa()
{
    ui::AppState& state = ui::appState();
    mEmpresa->open();
    state.cif = mEmpresa->isEmpty() ? QString() : mEmpresa->fieldByName(QStringLiteral("CIF")).asString().trimmed();
    Query q(mData.datos, mData.Transacion, QStringLiteral("SELECT PAIS,MONEDA FROM EMPRESA"));
    q.open();
    state.pais = q.eof() ? QString() : q.fieldByName(QStringLiteral("PAIS")).asString().trimmed();
    state.moneda = q.eof() ? QString() : q.fieldByName(QStringLiteral("MONEDA")).asString().trimmed();
}

void TfrmMain::salirDelPrograma()
{
    if (ui::dialogs().confirmation(QStringLiteral("¿Está seguro de salir de la aplicación?"), this))
        close();
}

void TfrmMain::cbIdiomaChange(int index)
{
    settings::setIdioma(index);
    if (ui::appState().isStarted() && mData.datos.isOpen()) {
        ui::dialogs().information(QStringLiteral("La aplicación se cerrará para que el cambio se realice"), this);
        close();
    }
}

void TfrmMain::nombreDelOrdenador()
{
    ui::dialogs().information(QStringLiteral("El nombre de este ordenador es: ") + QSysInfo::machineHostName(), this);
}

void TfrmMain::elegirFondo()
{
    TfrmFondo dlg(carpetaAplicacion() + QStringLiteral("/fondos"), settings::fondo(), this);
    if (dlg.exec() == QDialog::Accepted)
        aplicarFondo(dlg.choice());
}

void TfrmMain::aplicarFondo(const QString& fileName)
{
    settings::setFondo(fileName);
    mMdi->setPicture(fileName.isEmpty() ? QString() : carpetaAplicacion() + QStringLiteral("/fondos/") + fileName);
}

bool TfrmMain::cerrarVentanasHijas()
{
    // In the order they were opened; a window that refuses (unsaved
    // changes the user keeps) stops the close.
    const QList<QMdiSubWindow*> children = mMdi->subWindowList(QMdiArea::CreationOrder);
    for (QMdiSubWindow* w : children) {
        if (!w->close())
            return false;
    }
    return true;
}

void TfrmMain::cerrarConexiones()
{
    if (!mData.datos.isOpen())
        return;
    QDialog espera(this, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    espera.setObjectName(QStringLiteral("frmEspera"));
    espera.setWindowTitle(QStringLiteral("Espere..."));
    auto* layout = new QVBoxLayout(&espera);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addWidget(new QLabel(QStringLiteral("Cerrando Aplicación ..."), &espera));
    espera.show();
    QCoreApplication::processEvents();
    try {
        mData.cerrarConexiones();
        // datosrusos is left to close with the process; what remains of the
        // shared transaction is committed.
        mData.Transacion.commit();
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    }
    mEmpresa->close();
    mConfiguracion->close();
    espera.hide();
}

void TfrmMain::closeEvent(QCloseEvent* event)
{
    if (!cerrarVentanasHijas()) {
        event->ignore();
        return;
    }
    cerrarConexiones();
    event->accept();
}

} // namespace tv::shell

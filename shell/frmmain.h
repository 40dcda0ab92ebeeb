#pragma once

#include "commands.h"
#include "frmentrada.h"

#include <QHash>
#include <QMainWindow>

#include <functional>
#include <memory>

class QLabel;
class QMdiSubWindow;

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::shell {

class FondoMdiArea;
class Ribbon;

// The main window: the command ribbon over a container of child windows.
// When first shown it runs the rest of the start-up (connections,
// settings, the one-time migration, login, the reminder watcher, the
// agency's data); on close it closes the child windows, then the
// connections, committing the shared transaction.
class TfrmMain : public QMainWindow, public ui::CommandHost {
    Q_OBJECT
public:
    explicit TfrmMain(Tdm& dataModule, QWidget* parent = nullptr);
    ~TfrmMain() override;

    Ribbon* ribbon() const { return mRibbon; }
    FondoMdiArea* mdiArea() const { return mMdi; }
    DataSet& tbconfiguracion() { return *mConfiguracion; }
    DataSet& tbEmpresa() { return *mEmpresa; }

    // The shell's own commands; the screens' commands come from the command
    // table the libraries fill (ui/commands.h). A command that nobody answers
    // is told to be "not yet available".
    using Handler = std::function<void()>;
    void registrarComando(const QString& command, Handler handler);
    bool tieneComando(const QString& command) const { return mHandlers.contains(command); }

    // Opens a screen as a child window (the window owns it from then on).
    QMdiSubWindow* abrirVentana(QWidget* screen);

    QWidget* hostWidget() override { return this; }
    void showChild(QWidget* screen) override { abrirVentana(screen); }

    // Start-up runs by itself on the first show; tests switch that off and
    // call arrancar() themselves, with their own way of answering the login.
    void setAutoStart(bool on) { mAutoStart = on; }
    void setLoginRunner(TfrmEntrada::Runner runner) { mLoginRunner = std::move(runner); }

public Q_SLOTS:
    // Steps after the first show; false when the program must end (no
    // database, login cancelled).
    bool arrancar();
    void ejecutar(const QString& command);
    // "Salir del programa": asks, and closes only on Yes.
    void salirDelPrograma();
    void cbIdiomaChange(int index);
    void nombreDelOrdenador();
    void elegirFondo();
    // Shows a picture of fondos/ (a file name; empty for none) and keeps the choice.
    void aplicarFondo(const QString& fileName);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    bool cerrarVentanasHijas();
    void cerrarConexiones();
    void leerEmpresa();
    void mostrarEstado();

    Tdm& mData;
    Ribbon* mRibbon;
    FondoMdiArea* mMdi;
    QLabel* mAgente;
    QLabel* mDatos;
    std::unique_ptr<DataSet> mConfiguracion;
    std::unique_ptr<DataSet> mEmpresa;
    QHash<QString, Handler> mHandlers;
    TfrmEntrada::Runner mLoginRunner;
    bool mAutoStart = true;
    bool mStartRequested = false;
    bool mStartRan = false;
};

} // namespace tv::shell

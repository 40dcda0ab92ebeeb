#pragma once

#include <QDialog>

#include <functional>

class QLineEdit;
class QPushButton;
class QTimer;

namespace tv {
class Tdm;
}

namespace tv::shell {

class PasswordEdit;

// The login dialog: user, password, Aceptar and Cancelar. Enter presses
// Aceptar; Cancelar ends without success.
class TfrmEntrada : public QDialog {
    Q_OBJECT
public:
    explicit TfrmEntrada(Tdm& dataModule, QWidget* parent = nullptr);

    QLineEdit* edUsuario() const { return mUsuario; }
    PasswordEdit* edContrasena() const { return mContrasena; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnCancelar() const { return mCancelar; }
    QString usuario() const;
    QString contrasena() const;

    // How the dialog is shown: modal by default; tests drive it instead.
    using Runner = std::function<int(TfrmEntrada&)>;

    // The whole login. With no agent holding a user name the dialog is
    // skipped and agent 0 logs in. Otherwise the dialog decides; on success
    // the agent's code is read (user and password as typed) and the current
    // agent is loaded into data.agente and the application state.
    // False when the user cancelled.
    static bool entrar(Tdm& data, QWidget* parent = nullptr, const Runner& run = {});

public Q_SLOTS:
    void btnAceptarClick();
    void btnCancelarClick();
    void Timer1Timer();

protected:
    void showEvent(QShowEvent* event) override;

private:
    Tdm& mData;
    QLineEdit* mUsuario;
    PasswordEdit* mContrasena;
    QPushButton* mAceptar;
    QPushButton* mCancelar;
    QTimer* mTimer;
};

} // namespace tv::shell

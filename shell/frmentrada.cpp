#include "frmentrada.h"

#include "appstate.h"
#include "dialogs.h"
#include "dm.h"
#include "icons.h"
#include "login.h"
#include "passwordedit.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace tv::shell {

TfrmEntrada::TfrmEntrada(Tdm& dataModule, QWidget* parent) : QDialog(parent), mData(dataModule)
{
    setObjectName(QStringLiteral("frmEntrada"));
    setWindowTitle(QStringLiteral("Acceso a tejavista"));
    setModal(true);

    auto* logo = new QLabel(this);
    logo->setPixmap(ui::tintedIcon(QStringLiteral("dialog-password"), QColor(0x1f, 0x4e, 0x79), 48).pixmap(48, 48));
    logo->setAlignment(Qt::AlignTop);
    auto* intro = new QLabel(QStringLiteral("Introduzca su usuario y su contraseña."), this);

    mUsuario = new QLineEdit(this);
    mUsuario->setObjectName(QStringLiteral("edUsuario"));
    mUsuario->setMaxLength(20);
    mContrasena = new PasswordEdit(this);
    mContrasena->setObjectName(QStringLiteral("edContrasena"));
    mContrasena->setMaxLength(20);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Usuario:"), mUsuario);
    form->addRow(QStringLiteral("&Contraseña:"), mContrasena);

    mAceptar = new QPushButton(QStringLiteral("Aceptar"), this);
    mAceptar->setObjectName(QStringLiteral("btnAceptar"));
    mAceptar->setDefault(true);
    mAceptar->setAutoDefault(true);
    mCancelar = new QPushButton(QStringLiteral("Cancelar"), this);
    mCancelar->setObjectName(QStringLiteral("btnCancelar"));
    mCancelar->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(mAceptar);
    buttons->addWidget(mCancelar);

    auto* right = new QVBoxLayout;
    right->addWidget(intro);
    right->addLayout(form);
    right->addSpacing(8);
    right->addLayout(buttons);
    auto* main = new QHBoxLayout(this);
    main->setContentsMargins(18, 18, 18, 14);
    main->setSpacing(16);
    main->addWidget(logo);
    main->addLayout(right, 1);
    setMinimumWidth(380);

    connect(mAceptar, &QPushButton::clicked, this, &TfrmEntrada::btnAceptarClick);
    connect(mCancelar, &QPushButton::clicked, this, &TfrmEntrada::btnCancelarClick);

    mTimer = new QTimer(this);
    mTimer->setInterval(300);
    connect(mTimer, &QTimer::timeout, this, &TfrmEntrada::Timer1Timer);
}

QString TfrmEntrada::usuario() const
{
    return mUsuario->text();
}

QString TfrmEntrada::contrasena() const
{
    return mContrasena->text();
}

void TfrmEntrada::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    mUsuario->setFocus(Qt::OtherFocusReason);
    mTimer->start();
}

void TfrmEntrada::Timer1Timer()
{
    // Window managers sometimes hand the focus elsewhere right after showing.
    mTimer->stop();
    mUsuario->setFocus(Qt::OtherFocusReason);
}

void TfrmEntrada::btnAceptarClick()
{
    if (usuario().isEmpty() || contrasena().isEmpty()) {
        ui::dialogs().warning(QStringLiteral("Debe indicar el usuario y la contraseña de acceso"), this);
        mUsuario->setFocus(Qt::OtherFocusReason);
        return;
    }
    try {
        if (login::coincidencias(mData, usuario(), contrasena()) < 1) {
            ui::dialogs().warning(QStringLiteral("Contraseña incorrecta"), this);
            return;
        }
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    accept();
}

void TfrmEntrada::btnCancelarClick()
{
    reject();
}

bool TfrmEntrada::entrar(Tdm& data, QWidget* parent, const Runner& run)
{
    int codigo = 0;
    if (login::cuantosUsuarios(data) >= 1) {
        TfrmEntrada dlg(data, parent);
        const int result = run ? run(dlg) : dlg.exec();
        if (result != QDialog::Accepted)
            return false;
        codigo = login::codigoAgente(data, dlg.usuario(), dlg.contrasena());
    }
    data.cargarAgente(codigo);
    ui::AppState& state = ui::appState();
    state.agentCode = data.agente.codigo;
    state.agentUser = data.agente.usuario;
    return true;
}

} // namespace tv::shell

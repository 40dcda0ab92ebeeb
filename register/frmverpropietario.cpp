#include "frmverpropietario.h"

#include "dm.h"
#include "plaintext.h"
#include "query.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tv::registro {

namespace {

struct Dato {
    const char* columna;
    const char* titulo;
};

const Dato kDatos[] = {
    {"CODIGO", "Código"},           {"APEYNOM", "Nombre"},          {"NIF", "NIF"},
    {"DIRSIGLA", "Tipo de vía"},    {"DIR", "Dirección"},           {"DIRNUM", "Número"},
    {"DIRPISO", "Piso"},            {"DIRLETRA", "Puerta"},         {"CP", "Código postal"},
    {"POB", "Población"},           {"PROVINCIA", "Provincia"},     {"PAIS", "País"},
    {"TEL", "Teléfono"},            {"TEL_MOVIL", "Móvil"},         {"TEL_TRABAJO", "Teléfono del trabajo"},
    {"FAX", "Fax"},                 {"MAIL", "Correo electrónico"},
};

} // namespace

TfrmVerPropietario::TfrmVerPropietario(Tdm& modulo, const QVariant& codigo, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("TfrmVerPropietario"));
    auto* v = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    v->addLayout(form);
    Query q(modulo.datos, modulo.Transacion, QStringLiteral("SELECT * FROM PROPIETARIOS WHERE CODIGO =:CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo.toLongLong());
    q.open();
    mEncontrado = !q.eof();
    for (const Dato& d : kDatos) {
        auto* e = new QLineEdit(this);
        e->setObjectName(QLatin1String(d.columna));
        e->setReadOnly(true);
        if (mEncontrado)
            e->setText(q.fieldByName(QLatin1String(d.columna)).asString().trimmed());
        form->addRow(QString::fromUtf8(d.titulo), e);
    }
    auto* notas = new QPlainTextEdit(this);
    notas->setObjectName(QStringLiteral("OBSERVACIONES"));
    notas->setReadOnly(true);
    if (mEncontrado)
        notas->setPlainText(ui::plainTextOf(q.fieldByName(QStringLiteral("OBSERVACIONES")).asString()));
    notas->setMaximumHeight(90);
    form->addRow(QStringLiteral("Observaciones"), notas);
    q.close();
    setWindowTitle(mEncontrado ? QStringLiteral("Propietario %1 - %2").arg(valor(QStringLiteral("CODIGO")),
                                                                         valor(QStringLiteral("APEYNOM")))
                               : QStringLiteral("Propietario"));
    auto* botones = new QDialogButtonBox(QDialogButtonBox::Close, this);
    botones->button(QDialogButtonBox::Close)->setText(QStringLiteral("Cerrar"));
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);
    v->addWidget(botones);
    resize(460, sizeHint().height());
}

QString TfrmVerPropietario::valor(const QString& columna) const
{
    if (auto* e = findChild<QLineEdit*>(columna))
        return e->text();
    if (auto* p = findChild<QPlainTextEdit*>(columna))
        return p->toPlainText();
    return {};
}

} // namespace tv::registro

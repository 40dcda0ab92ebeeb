#include "botonesdialogo.h"

#include "icons.h"

#include <QBoxLayout>
#include <QPushButton>

namespace tv::ui {

BotonesDialogo botonesAceptarCancelar(QWidget* dialog, QBoxLayout* layout, QPushButton* izquierda)
{
    auto* row = new QHBoxLayout;
    auto* aceptar = new QPushButton(themeIcon(QStringLiteral("dialog-ok")), QStringLiteral("Aceptar"), dialog);
    aceptar->setObjectName(QStringLiteral("btnAceptar"));
    auto* cancelar = new QPushButton(themeIcon(QStringLiteral("dialog-cancel")), QStringLiteral("Cancelar"), dialog);
    cancelar->setObjectName(QStringLiteral("btnCancelar"));
    cancelar->setAutoDefault(false);
    aceptar->setDefault(true);
    if (izquierda) {
        izquierda->setAutoDefault(false);
        row->addWidget(izquierda);
    }
    row->addStretch(1);
    row->addWidget(aceptar);
    row->addWidget(cancelar);
    layout->addLayout(row);
    return {row, aceptar, cancelar};
}

} // namespace tv::ui

#pragma once

class QBoxLayout;
class QPushButton;
class QWidget;

namespace tv::ui {

// The Aceptar / Cancelar row at the foot of a small dialog, right-aligned,
// Aceptar the default (Enter), Cancelar never taking Enter. Extra buttons
// the dialog adds to `row` before the stretch sit on the left.
struct BotonesDialogo {
    QBoxLayout* row;
    QPushButton* aceptar;  // objectName "btnAceptar"
    QPushButton* cancelar; // objectName "btnCancelar"
};

// Adds the row to layout; the buttons belong to dialog.
BotonesDialogo botonesAceptarCancelar(QWidget* dialog, QBoxLayout* layout, QPushButton* izquierda = nullptr);

} // namespace tv::ui

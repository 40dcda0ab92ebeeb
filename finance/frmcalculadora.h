#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;
class QSpinBox;

namespace tv::finance {

class CampoImporte;

// "Calculadora hipotecaria": the monthly instalment of one loan. The amount
// is built with the digit buttons (or typed), the term and the rate typed.
// Only one may be open at a time (see abrirCalculadoraHipotecaria).
class TfrmCalculadora : public QDialog {
    Q_OBJECT
public:
    explicit TfrmCalculadora(QWidget* parent = nullptr);
    ~TfrmCalculadora() override;

    // Whether a calculator window exists right now.
    static bool abierta();

    QLineEdit* edImporte() const { return mImporte; }
    QSpinBox* edAnos() const { return mAnos; }
    CampoImporte* edInteres() const { return mInteres; }
    QLineEdit* edCuota() const { return mCuota; }
    QPushButton* botonDigito(int digito) const { return mDigitos[digito]; }

public Q_SLOTS:
    void btnDigitoClick(int digito);
    void btnBorrarClick();
    void btnCalcularClick();
    void btnSalirClick();

private:
    void limpiarCuota();

    QLineEdit* mImporte = nullptr;
    QSpinBox* mAnos = nullptr;
    CampoImporte* mInteres = nullptr;
    QLineEdit* mCuota = nullptr;
    QPushButton* mDigitos[10] = {};

    static int sAbiertas;
};

} // namespace tv::finance

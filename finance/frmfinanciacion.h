#pragma once

#include "cuadrofinanciacion.h"

#include <QDialog>

class QLineEdit;
class QSpinBox;

namespace tv::finance {

class CampoImporte;

// "Cuadro de financiación": price plus purchase costs, less the down
// payment, gives the loan; its instalment is shown for the chosen rate and
// term and for five rates by seven terms. Every change recalculates.
// Printing goes through ui::services(), which tells its own failures.
class TfrmFinanciacion : public QDialog {
    Q_OBJECT
public:
    explicit TfrmFinanciacion(QWidget* parent = nullptr);

    const CuadroFinanciacion& cuadro() const { return mCuadro; }

    CampoImporte* edImporteInmueble() const { return mImporteInmueble; }
    CampoImporte* edVariable() const { return mVariable; }
    CampoImporte* edImporteFijo() const { return mImporteFijo; }
    CampoImporte* edImporteEntrada() const { return mImporteEntrada; }
    QSpinBox* edAnos() const { return mAnos; }
    CampoImporte* edIntereses() const { return mIntereses; }
    QLineEdit* edImporteVariable() const { return mImporteVariable; }
    QLineEdit* edTotalOperacion() const { return mTotalOperacion; }
    QLineEdit* edImporteHipoteca() const { return mImporteHipoteca; }
    QLineEdit* edCuota() const { return mCuota; }
    // fila 1..5, columna 1..7, as in the names c11 ... c57 and edInteres1 ... edInteres5.
    QLineEdit* celda(int fila, int columna) const { return mCeldas[fila - 1][columna - 1]; }
    QLineEdit* edInteres(int fila) const { return mInteres[fila - 1]; }

public Q_SLOTS:
    void recalcular();
    void btnImprimirClick();
    void btnSalirClick();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* salida(const QString& nombre, bool destacada = false);

    CuadroFinanciacion mCuadro;
    bool mRecalculando = false;

    CampoImporte* mImporteInmueble = nullptr;
    CampoImporte* mVariable = nullptr;
    CampoImporte* mImporteFijo = nullptr;
    CampoImporte* mImporteEntrada = nullptr;
    QSpinBox* mAnos = nullptr;
    CampoImporte* mIntereses = nullptr;
    QLineEdit* mImporteVariable = nullptr;
    QLineEdit* mTotalOperacion = nullptr;
    QLineEdit* mImporteHipoteca = nullptr;
    QLineEdit* mCuota = nullptr;
    QLineEdit* mInteres[CuadroFinanciacion::kFilas] = {};
    QLineEdit* mCeldas[CuadroFinanciacion::kFilas][CuadroFinanciacion::kColumnas] = {};
};

} // namespace tv::finance

#pragma once

#include "cuadrofinanciacion.h"

#include <QDialog>
#include <QVariantMap>

#include <functional>

class QLineEdit;
class QSpinBox;

namespace tv::finance {

class CampoImporte;

// "Cuadro de financiación": price plus purchase costs, less the down
// payment, gives the loan; its instalment is shown for the chosen rate and
// term and for five rates by seven terms. Every change recalculates.
class TfrmFinanciacion : public QDialog {
    Q_OBJECT
public:
    // Prints a template with its data after a printer dialog; false when cancelled.
    using Impresora = std::function<bool(const QString& plantilla, const QVariantMap& datos, QWidget* parent)>;

    explicit TfrmFinanciacion(QWidget* parent = nullptr);

    // The report service by default.
    void setImpresora(Impresora impresora) { mImpresora = std::move(impresora); }

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
    Impresora mImpresora;
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

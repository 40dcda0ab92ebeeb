#pragma once

#include "buscarsql.h"
#include "column.h"

#include <QDialog>
#include <QHash>
#include <QList>
#include <QVariantMap>

#include <array>

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

namespace tv {
class Database;
class DataSet;
class Transaction;
}

namespace tv::ui {

class DataSetModel;

// One searchable column of the search dialog: its name as the select knows
// it (qualified when the select joins) and the caption the user picks it by.
struct CampoBusqueda {
    QString campo;
    QString titulo;
};

// The process-wide table of searchable columns the caller fills, from the
// first entry on, between creating the search dialog and showing it.
// Interface thread only.
std::array<CampoBusqueda, 8>& camposBusqueda();
// Fills the table with up to eight entries and clears the rest.
void llenarCamposBusqueda(const QList<CampoBusqueda>& campos);
// The searchable columns of a screen's description, in order, at most eight;
// pictures (never matched as text) and columns without a caption are left out.
QList<CampoBusqueda> camposBusquedaDe(const Columns& columnas);

// The generic search dialog ("Busqueda"): the user picks a column, types
// part of its value, and chooses one row of the caller's select. The caller
// creates it (which clears the captions of the table), fills the table, sets
// the select and shows it; on result 1 the data set stands on the chosen row.
//
// The query is reopened with a LIKE condition on every change of the text;
// texts match anywhere, other columns by their start (dialect 1 compares a
// number or a date as its text form: "28079", "05-MAR-2024 17:30:00.0000").
class TTfrmBuscar : public QDialog {
    Q_OBJECT
public:
    TTfrmBuscar(Database& db, Transaction& tr, QWidget* parent = nullptr);
    ~TTfrmBuscar() override;

    // The select the user searches in; its rows are never changed here.
    DataSet* qrybuscar() const { return mQry; }
    // Replaces the select (closing the query).
    void setSql(const QString& sql);

    // The table entry chosen in the field box (empty when none).
    CampoBusqueda campoElegido() const;
    // The chosen column's declared size: characters for a text, 0 otherwise.
    int tamanoCampo() const;
    bool campoEntero() const;

public Q_SLOTS:
    // "&Seleccionar": result 1 and close, unless the query holds no row.
    void seleccionar();
    // "&Cancelar": result 0 and close.
    void cancelar();

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void prepararCampos();
    void cambiarCampo();
    void buscarTexto();
    bool abrir();
    int indiceCampo(const QString& campo) const;
    void ajustarRejilla();
    void seguirFilaActual();
    void elegirFilaDeRejilla(int row);

    DataSet* mQry;
    DataSetModel* mModel;
    QComboBox* mCampos;
    QLineEdit* mTexto;
    QTableView* mGrid;
    QPushButton* mSeleccionar;
    QPushButton* mCancelar;

    SentenciaPartida mPartes;
    // The table as it stood when the dialog was shown: another search dialog
    // may refill the process-wide one while this stays open.
    QList<CampoBusqueda> mCamposMostrados;
    // Grid widths by field, kept across reopenings (the grid resets with them).
    QHash<QString, int> mAnchos;
    bool mAjustando = false;
    bool mSiguiendo = false;
};

// The values of the data set's current row by field name.
QVariantMap filaActual(DataSet& ds);

// Runs the search dialog over sql with these columns (modal). True when the
// user chose a row; its values go to *fila.
bool buscar(QWidget* parent, Database& db, Transaction& tr, const QString& sql,
            const QList<CampoBusqueda>& campos, QVariantMap* fila = nullptr);

} // namespace tv::ui

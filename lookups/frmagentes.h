#pragma once

#include "column.h"
#include "recordscreen.h"

#include <QStringList>

#include <memory>

class QCloseEvent;
class QLineEdit;

namespace tv {
class Database;
class Tdm;
class Transaction;
}

namespace tv::ui {
class DataGrid;
}

namespace tv::lookups {

// The agents' columns, each described once: its group on the form (page),
// whether the list shows it (inGrid) and its check on saving (required).
const ui::Columns& columnasAgentes();
// The six restriction flags, in the order the screen shows them; an
// administrator carries none of them.
const QStringList& restriccionesAgente();

// The modification password of an agent (CLAVE_PERSONALES): an agent
// without one always passes; otherwise the stored and the typed text,
// each trimmed and upper-cased, must be equal, or "La contraseña para
// modificar los datos no es correcta, ..." is shown to parent and the
// answer is false.
bool validarContrasena(Database& db, Transaction& tr, int codigoAgente, const QString& tecleado, QWidget* parent);

// True when another agent than codigoAgente already logs in as usuario
// (compared trimmed and case-insensitively; an empty name is never taken).
bool usuarioEnUso(Database& db, Transaction& tr, const QString& usuario, int codigoAgente);

// The rights check of the agents screen: administrators, or anyone while
// the agency has no administrator (so a fresh installation can name one).
bool puedeAbrirAgentes(Tdm& data, QWidget* parent);

// Adds the "agentes" command (modal, behind puedeAbrirAgentes).
void registrarAgentes();

// The agents screen: the list of agents beside the selected agent's record,
// in groups (personal data, access, department and commissions, rights).
//
// - Opens on the last agent; new agents take their code from CODAGENTE.
// - Ticking "Agente Administrador" clears the six restrictions to "N" and
//   disables their boxes; the boxes follow the record's flag when moving.
// - A non-administrator changes and deletes only his own record and adds
//   none (ui::Ownership::agentes()); to save changes to a record that has
//   a modification password he types it in uClaveModificacion first.
// - On leaving the NIF box the agency's NIF rule rewrites what was typed.
// - When the screen closes, the current agent is loaded again, so rights
//   changed here apply at once.
// Works on the data module's shared transaction; lives on the interface thread.
class TfrmAgentes : public ui::RecordScreen {
    Q_OBJECT
public:
    explicit TfrmAgentes(Tdm& modulo, QWidget* parent = nullptr);
    ~TfrmAgentes() override;

    ui::DataGrid* rejilla() const { return mGrid; }
    // The box where the agent on screen's modification password is typed.
    QLineEdit* claveModificacion() const { return mClaveModificacion; }

    // validarContrasena for the agent on screen.
    bool ValidarContrasena(const QString& tecleado);

public Q_SLOTS:
    // What leaving the NIF box does: the column's normaliser rewrites the
    // typed NIF while the record is being edited.
    void edNifExit();

protected:
    bool validar() override;
    QWidget* primerCampo() const override;
    void closeEvent(QCloseEvent* event) override;

private:
    void construirFormulario(QWidget* form);
    void nuevoRegistro(DataSet& ds);
    void seguirAdministrador();
    void recargarAgenteActual();

    Tdm& mData;
    std::unique_ptr<DataSet> mDs;
    ui::DataGrid* mGrid = nullptr;
    QLineEdit* mClaveModificacion = nullptr;
};

} // namespace tv::lookups

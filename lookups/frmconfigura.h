#pragma once

#include "column.h"
#include "recordscreen.h"

#include <memory>

class QPushButton;
class QTabWidget;

namespace tv {
class Tdm;
}

namespace tv::lookups {

// "Configurar aplicacion": the program's settings, the one row of
// CONFIGURACION, on four pages. The table has no key: the row is found again
// by all its columns as read, and an empty table gets its row (with the
// settings of a new data folder) when the user first types. The markers
// OBSERVACIONES_MIGRADAS and EJECUTADO belong to the start-up and are never
// shown. Works on the shared transaction; lives on the interface thread.
class TfrmConfigura : public ui::RecordScreen {
    Q_OBJECT
public:
    explicit TfrmConfigura(Tdm& datos, QWidget* parent = nullptr);
    ~TfrmConfigura() override;

    // Every column the screen shows, by page.
    static const ui::Columns& columnas();
    // The page captions, in order.
    static QStringList paginasDeLaPantalla();

    QTabWidget* paginas() const { return mPaginas; }
    QPushButton* botonCarpetaFotos() const { return mBotonCarpeta; }

public Q_SLOTS:
    // The "…" beside the photo folder: a folder chosen on disk.
    bool elegirCarpetaFotos();

protected:
    Actions supportedActions() const override;
    bool validar() override;

private:
    QWidget* pagina(const QString& titulo);
    void valoresIniciales(DataSet& ds);

    std::unique_ptr<DataSet> mDs;
    QTabWidget* mPaginas = nullptr;
    QPushButton* mBotonCarpeta = nullptr;
};

// Adds "configurar-aplicacion" to the command table.
void registrarConfiguracion();

} // namespace tv::lookups

#pragma once

#include <QString>

namespace tv::ui {

// The process-wide facts the shell settles at start-up and every screen may
// read: who logged in, the agency's country, currency and tax code, the
// language, where documents and templates live, and whether start-up has
// finished. Written by the shell only; lives on the interface thread.
// (It sits in ui/ because every screen layer links ui/, while shell/ sits
// above them all.)
class AppState {
public:
    static AppState& instance();

    int agentCode = 0;                           // 0 when no login took place
    QString agentUser = QStringLiteral("TODOS"); // shown in the window title
    QString pais;                                // EMPRESA.PAIS
    QString moneda;                              // EMPRESA.MONEDA
    QString cif;                                 // EMPRESA.CIF
    int idioma = 0;                              // 0 Castellano, 1 Catalán
    int iniciado = 0;                            // 1 once start-up has finished
    QString documentsFolder;                     // local data folder or its network form
    QString templatesFolder;                     // document templates ("/cat" for Catalan)

    bool isStarted() const { return iniciado == 1; }
    bool isCatalan() const { return idioma == 1; }
    // Back to a process that has not started (tests start several times).
    void reset() { *this = AppState(); }
};

inline AppState& appState()
{
    return AppState::instance();
}

} // namespace tv::ui

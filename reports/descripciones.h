#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

namespace tv {
class Tdm;
}

namespace tv::reports {

// Descriptions of lookup codes (property types, zones, agents, ...) read
// once per table while a report gathers its rows, so a list of a thousand
// rows runs one query per lookup table instead of one per row.
class Descripciones {
public:
    explicit Descripciones(Tdm& data) : mData(data) {}

    // The text of `column` for the row of `table` whose CODIGO is `code`;
    // empty for NULL, 0 or an unknown code.
    QString of(const QString& table, const QVariant& code, const QString& column = QStringLiteral("DESCRIPCION"));

    QString tipoInmueble(const QVariant& code);
    // Lookup captions kept in capitals ("VENTA") read better on paper as "Venta".
    QString tipoOperacion(const QVariant& code) { return legible(of(QStringLiteral("TIPOOPERACION"), code)); }
    QString zona(const QVariant& code) { return of(QStringLiteral("ZONAS"), code); }
    QString estado(const QVariant& code) { return legible(of(QStringLiteral("ESTADO"), code)); }
    QString origen(const QVariant& code) { return legible(of(QStringLiteral("ORIGENES"), code)); }
    QString tipoGestion(const QVariant& code) { return legible(of(QStringLiteral("TIPOGESTIONES"), code)); }
    QString perfil(const QVariant& code) { return legible(of(QStringLiteral("PERFILES"), code)); }

    // An all-capitals caption of more than three letters in sentence case;
    // anything else (mixed case, acronyms) unchanged.
    static QString legible(const QString& text);
    QString agente(const QVariant& code) { return of(QStringLiteral("AGENTES"), code, QStringLiteral("APEYNOM")); }
    QString cliente(const QVariant& code) { return of(QStringLiteral("CLIENTES"), code, QStringLiteral("APEYNOM")); }
    QString propietario(const QVariant& code)
    {
        return of(QStringLiteral("PROPIETARIOS"), code, QStringLiteral("APEYNOM"));
    }

private:
    Tdm& mData;
    QHash<QString, QHash<qlonglong, QString>> mCache;
};

} // namespace tv::reports

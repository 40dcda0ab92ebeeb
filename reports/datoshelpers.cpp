#include "datoshelpers.h"

#include "dm.h"
#include "plaintext.h"
#include "report.h"

#include "query.h"
#include "reportformat.h"
#include "rowbuffer.h"

#include <QDate>

namespace tv::reports {

QVariantMap camposFila(const Query& q)
{
    QVariantMap m;
    for (int i = 0; i < q.fieldCount(); ++i) {
        const Field f = q.field(i);
        const QVariant v = f.value();
        QString s;
        if (f.isNull())
            s = QString();
        else if (v.typeId() == QMetaType::QDateTime)
            s = fechaHora(v);
        else if (v.typeId() == QMetaType::Double)
            s = numero(v.toDouble(), 2);
        else if (v.typeId() == QMetaType::QByteArray)
            s = QString();
        else
            s = f.asString().trimmed();
        m.insert(f.name(), s);
    }
    return m;
}

QString unir(const QStringList& parts, const QString& separator)
{
    QStringList kept;
    for (const QString& p : parts) {
        const QString t = p.trimmed();
        if (!t.isEmpty())
            kept.append(t);
    }
    return kept.join(separator);
}

namespace {

QString col(const Query& q, const char* name)
{
    const int i = q.fieldIndex(QLatin1String(name));
    return i < 0 ? QString() : q.field(i).asString().trimmed();
}

} // namespace

QString direccionInmueble(const Query& q)
{
    return unir({col(q, "TIPOVIA"), col(q, "NOMBREVIA"), col(q, "NUMERO"), col(q, "BLOQUE"), col(q, "ESCALERA"),
                 col(q, "PLANTA"), col(q, "PUERTA")});
}

QString direccionPersona(const Query& q)
{
    return unir({col(q, "DIRSIGLA"), col(q, "DIR"), col(q, "DIRNUM"), col(q, "DIRPISO"), col(q, "DIRLETRA")});
}

QString textoPlano(const QString& text)
{
    // Remarks may be RTF (older records), HTML or plain: one converter for
    // the whole program.
    return ui::plainTextOf(text).trimmed();
}

void marcarFilas(QVariantList& rows)
{
    for (int i = 0; i < rows.size(); ++i) {
        QVariantMap m = rows.at(i).toMap();
        m.insert(QStringLiteral("par"), i % 2 == 1);
        m.insert(QStringLiteral("numero_fila"), i + 1);
        rows[i] = m;
    }
}

QDate leerFecha(const QString& text)
{
    return dateTimeFromText(text).date();
}

QString siNo(const QVariant& flag)
{
    return flag.toString().trimmed() == QLatin1String("S") ? QStringLiteral("Sí") : QStringLiteral("No");
}

} // namespace tv::reports

namespace tv::reports {

QString normalizarCodigo(const QString& codigo)
{
    const QString t = codigo.trimmed();
    return t.size() >= 5 ? t.left(5) : t.rightJustified(5, QLatin1Char('0'));
}

QVariantList enFilas(const QVariantList& items, int columnas)
{
    QVariantList filas;
    for (int i = 0; i < items.size(); i += columnas) {
        QVariantList celdas = items.mid(i, columnas);
        while (celdas.size() < columnas)
            celdas.append(QVariantMap{{QStringLiteral("vacia"), true}});
        filas.append(QVariantMap{{QStringLiteral("celdas"), celdas}});
    }
    return filas;
}

void abrirInmueble(Query& q, Tdm& data, const QString& codigo)
{
    q.setDatabase(data.datos);
    q.setTransaction(data.Transacion);
    q.setSQL(QStringLiteral("SELECT * FROM INMUEBLES WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe el inmueble %1.").arg(codigo));
}

} // namespace tv::reports

#include "enlaces.h"

#include <QHash>

namespace tv::registro {

namespace {

QHash<QString, AbrirEnlace>& tabla()
{
    static QHash<QString, AbrirEnlace> t;
    return t;
}

} // namespace

void registrarEnlace(const QString& id, AbrirEnlace abrir)
{
    tabla().insert(id, std::move(abrir));
}

bool hayEnlace(const QString& id)
{
    return tabla().contains(id);
}

bool abrirEnlace(const QString& id, QWidget* parent, const QVariant& clave)
{
    const auto it = tabla().constFind(id);
    if (it == tabla().constEnd() || !*it)
        return false;
    (*it)(parent, clave);
    return true;
}

QString textoPendiente(const QString& titulo)
{
    return QStringLiteral("La función «%1» todavía no está disponible en esta versión.").arg(titulo);
}

} // namespace tv::registro

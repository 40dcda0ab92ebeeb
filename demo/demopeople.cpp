// Agents, departments, owners and clients of the demo agency.
#include "demointernal.h"

namespace tv::demogen {

namespace {

// Check digit of a Spanish bank account (CCC) part.
int cccDigit(const QString& ten)
{
    static const int weights[] = {1, 2, 4, 8, 5, 10, 9, 7, 3, 6};
    int sum = 0;
    for (int i = 0; i < 10; ++i)
        sum += ten.at(i).digitValue() * weights[i];
    int dc = 11 - sum % 11;
    if (dc == 11) dc = 0;
    if (dc == 10) dc = 1;
    return dc;
}

} // namespace

void Demo::agentes()
{
    baseDep = maxOf("DEPARTAMENTOS", "CODIGO");
    lastDep = baseDep;
    Inserter dep(d.datos, d.Transacion, "DEPARTAMENTOS");
    for (const QString& name : w.departamentos) {
        dep.set("CODIGO", ++lastDep);
        dep.set("DESCRIPCION", name);
        dep.exec();
    }

    baseAgente = maxOf("AGENTES", "CODIGO");
    QSet<QString> usados;
    {
        Query q(d.datos, d.Transacion, QStringLiteral("SELECT USUARIO FROM AGENTES"));
        for (q.open(); !q.eof(); q.next())
            usados.insert(q.field(0).asString().trimmed());
    }
    const bool adminTaken = usados.contains(QStringLiteral("admin"));
    Inserter ins(d.datos, d.Transacion, "AGENTES");
    const int n = std::max(1, s.agentes);
    for (int k = 0; k < n; ++k) {
        const bool mujer = r.chance(50);
        const QString nombre = mujer ? r.pick(w.mujeres) : r.pick(w.hombres);
        const QString ap1 = r.pick(w.apellidos);
        const QString ap2 = r.pick(w.apellidos);
        const QString apeynom = nombre + QLatin1Char(' ') + ap1 + QLatin1Char(' ') + ap2;
        QString usuario;
        QString clave;
        if (k == 0 && !adminTaken) {
            usuario = QStringLiteral("admin");
            clave = QStringLiteral("admin");
        } else {
            usuario = ascii(nombre).left(12);
            if (usados.contains(usuario)) usuario += ascii(ap1).left(1);
            const QString stem = usuario;
            for (int extra = 2; usados.contains(usuario); ++extra)
                usuario = stem + QString::number(extra);
            const int pin = r.range(1000, 9999);
            clave = usuario + QString::number(pin);
        }
        usados.insert(usuario);
        bool ocEco = false, soloGest = false, soloAgenda = false, ocInternos = false, ocCli = false,
             ocProp = false;
        switch (k % 5) {
        case 2:
            soloAgenda = soloGest = true;
            break;
        case 3:
            ocEco = ocInternos = true;
            break;
        case 4:
            ocCli = ocProp = true;
            break;
        case 0:
            if (k > 0) {
                ocEco = r.chance(30);
                soloGest = r.chance(30);
                soloAgenda = soloGest;
                ocCli = r.chance(20);
                ocProp = ocCli;
            }
            break;
        default:
            break;
        }
        const int town = r.chance(60) ? 0 : 8;
        const int codigo = baseAgente + k + 1;
        mAgentes.push_back({codigo, usuario, apeynom});
        ins.set("CODIGO", codigo);
        ins.set("APEYNOM", apeynom);
        ins.set("NIF", nif());
        ins.set("USUARIO", usuario);
        ins.set("CONTRASENA", clave);
        ins.set("CODDEPARTAMENTO", k == 0 ? baseDep + 3 : baseDep + 1 + k % 2);
        ins.set("FECHAALTA", hoy.addYears(-3).addDays(-r.range(0, 700)));
        ins.set("DIRSIGLA", r.pick(w.siglas));
        ins.set("DIR", r.pick(w.calles));
        ins.set("DIRNUM", QString::number(r.range(1, 120)));
        ins.set("DIRPISO", QString::number(r.range(1, 9)));
        ins.set("DIRLETRA", QString(QChar(QLatin1Char('A').unicode() + r.range(0, 3))));
        ins.set("POB", townName(town));
        ins.set("CP", cp(town));
        ins.set("PROVINCIA", province(town));
        ins.set("PAIS", u8("España"));
        ins.set("TEL", mTelefonoAgencia);
        ins.set("TEL_MOVIL", movil());
        ins.set("PORCENTAJE_CAPTACION", double(r.range(10, 25)));
        ins.set("PORCENTAJE_OPERACIONES", double(r.range(20, 40)));
        ins.set("ADMINISTRADOR", sn(k == 0));
        ins.set("OCULTARCLIENTES", sn(ocCli));
        ins.set("OCULTARDATOSECONOMICOS", sn(ocEco));
        ins.set("OCULTARDATOSINTERNOS", sn(ocInternos));
        ins.set("OCULTASPROPIETARIOS", sn(ocProp));
        ins.set("VERSOLOSUAGENDA", sn(soloAgenda));
        ins.set("VERSOLOSUSGESTIONES", sn(soloGest));
        ins.set("OBSERVACIONES", k == 0 ? u8("Dirección de la agencia.") : u8("Agente comercial."));
        ins.exec();
    }
    for (const Agente& a : mAgentes)
        mUsuarioDe.insert(a.codigo, a.usuario);
}

void Demo::personas(bool clientes)
{
    const int n = std::max(0, clientes ? s.clientes : s.propietarios);
    const int base = maxOf(clientes ? "CLIENTES" : "PROPIETARIOS", "CODIGO");
    (clientes ? baseCli : baseProp) = base;
    std::vector<QDate> primera(clientes ? 0 : size_t(n));
    if (!clientes)
        for (const Inmueble& m : mInm)
            if (m.propietario >= 0 && (!primera[m.propietario].isValid() || m.alta < primera[m.propietario]))
                primera[m.propietario] = m.alta;

    static const int origWeights[] = {18, 22, 8, 3, 10, 12, 10, 9, 5, 2, 1};
    Inserter ins(d.datos, d.Transacion, clientes ? "CLIENTES" : "PROPIETARIOS");
    std::vector<Persona>& out = clientes ? mCli : mProp;
    out.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        Persona p;
        p.codigo = base + i + 1;
        const bool extranjero = clientes && r.chance(6);
        bool mujer = false;
        QString nombre;
        QString ap1;
        QString documento;
        QString nota;
        if (extranjero) {
            const demo::Extranjero& e = w.extranjeros[size_t(r.range(0, int(w.extranjeros.size()) - 1))];
            p.apeynom = e.nombre;
            mujer = e.mujer;
            nombre = p.apeynom.section(QLatin1Char(' '), 0, 0);
            ap1 = p.apeynom.section(QLatin1Char(' '), -1);
            static const char letters[] = "TRWAGMYFPDXBNJZSQVHLCKE";
            const int y = r.range(0, 1);
            const int num = r.range(0, 9999999);
            documento =
                QLatin1Char(y ? 'Y' : 'X') + pad(num, 7) + QLatin1Char(letters[(y * 10000000 + num) % 23]);
            nota = u8("Cliente extranjero (%1); habla inglés.").arg(e.pais);
        } else {
            mujer = r.chance(50);
            nombre = mujer ? r.pick(w.mujeres) : r.pick(w.hombres);
            ap1 = r.pick(w.apellidos);
            const QString ap2 = r.pick(w.apellidos);
            p.apeynom = nombre + QLatin1Char(' ') + ap1 + QLatin1Char(' ') + ap2;
            documento = nif();
        }
        const int trato = r.range(0, 1);
        p.town = randomTown();
        if (clientes || !primera[i].isValid())
            p.alta = hoy.addDays(-r.range(0, 3 * 365));
        else
            p.alta = primera[i].addDays(-r.range(0, 30));
        p.agente = mAgentes[r.range(0, int(mAgentes.size()) - 1)].codigo;
        p.origen = r.weighted(origWeights) + 1;
        if (r.chance(55)) p.tel = fijo();
        p.movil = movil();
        const int sit = r.range(0, 99);
        p.situacion = sit < 90   ? QStringLiteral("Activo")
                      : sit < 96 ? QStringLiteral("Paralizado")
                                 : QStringLiteral("Eliminado");
        const QString correo = r.chance(75) ? mail(nombre, ap1) : QString();
        const QString trabajo = r.chance(20) ? fijo() : QString();

        ins.set("CODIGO", p.codigo);
        ins.set(clientes ? "FECHAALTA" : "FECHA_ALTA", p.alta);
        ins.set("TRATO", mujer ? (trato ? u8("Dª") : u8("Sra.")) : (trato ? u8("Dº") : u8("Sr.")));
        ins.set("APEYNOM", p.apeynom);
        ins.set("NIF", documento);
        ins.set("DIRSIGLA", r.pick(w.siglas));
        ins.set("DIR", r.pick(w.calles));
        ins.set("DIRNUM", QString::number(r.range(1, 150)));
        ins.set("DIRPISO", QString::number(r.range(1, 12)));
        ins.set("DIRLETRA", QString::number(r.range(1, 16)));
        ins.set("POB", townName(p.town));
        ins.set("CP", cp(p.town));
        ins.set("PROVINCIA", province(p.town));
        ins.set("PAIS", u8("España"));
        ins.set("TEL", orNull(p.tel));
        ins.set("TEL_TRABAJO", orNull(trabajo));
        ins.set("TEL_MOVIL", p.movil);
        ins.set("MAIL", orNull(correo));
        if (r.chance(clientes ? 25 : 60)) {
            const QString banco = r.pick(w.bancos);
            const QString sucursal = pad(r.range(1, 9999), 4);
            const QString cuenta = pad(r.range(0, 99999), 5) + pad(r.range(0, 99999), 5);
            const QString dc = QString::number(cccDigit(QStringLiteral("00") + banco + sucursal)) +
                               QString::number(cccDigit(cuenta));
            ins.set("TITULAR", p.apeynom);
            ins.set("BANCO", banco);
            ins.set("SUCURSAL", sucursal);
            ins.set("DC", dc);
            ins.set("CUENTA", cuenta);
        } else {
            for (const char* c : {"TITULAR", "BANCO", "SUCURSAL", "DC", "CUENTA"})
                ins.set(c, QVariant());
        }
        const int edad = r.range(25, 80);
        ins.set("SEXO", mujer ? QStringLiteral("M") : QStringLiteral("H"));
        ins.set("FECHA_NACIMIENTO", hoy.addYears(-edad).addDays(-r.range(0, 364)));
        QString civil = r.pick(w.estadosCiviles);
        if (mujer) civil.replace(civil.size() - 1, 1, QLatin1Char('a'));
        ins.set("ESTADO_CIVIL", civil);
        ins.set("NIVEL_ESTUDIOS", r.pick(w.estudios));
        ins.set("SITUACION_LABORAL", edad > 67 ? u8("Jubilación") : r.pick(w.situacionesLaborales));
        ins.set("CODAGENTE", p.agente);
        ins.set("CODPROCEDENCIA", p.origen);
        ins.set("SITUACION", p.situacion);
        if (nota.isEmpty() && r.chance(clientes ? 35 : 30))
            nota = r.pick(clientes ? w.notasCliente : w.notasPropietario);
        ins.set("OBSERVACIONES", orNull(nota));
        ins.exec();
        out.push_back(p);
    }
}

} // namespace tv::demogen
